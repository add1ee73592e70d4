#include "WindowEngine/integrations/FinderAdapter.hpp"

#include <utility>

namespace quillo {
namespace {

/// Folders by their path, so that one spelling of an address is as good as another.
std::set<std::string> pathsOf(const AppContext& context) {
    std::set<std::string> paths;
    for (const ContextWindow& window : context.windows) {
        for (const Url& url : window.urls) {
            if (const auto path = url.standardized().filePath()) paths.insert(*path);
        }
    }
    return paths;
}

Task<bool> open(DesktopAccess& desktop, std::optional<std::string> path) {
    if (!path) co_return false;
    Script script{std::string(FinderAdapter::finder), ScriptRequest::OpenFolder{*std::move(path)}};
    const auto opened =
        co_await AppleScript::run(desktop.platform.scripts, std::move(script), adapterScriptLimit);
    co_return opened.has_value();
}

/// One folder that fails, or takes too long on a volume that is slow, keeps no other from being opened.
Task<void> openAll(DesktopAccess& desktop, std::vector<AdapterStep> steps, AdapterRestoreResult& result) {
    for (const AdapterStep& step : steps) {
        if (co_await open(desktop, step.urls.front().standardized().filePath())) {
            ++result.opened;
            ++result.newWindows;
        } else {
            result.failures.emplace_back("Finder could not reopen a saved folder.");
        }
    }
}

}  // namespace

AppContext FinderAdapter::context(const AppleScript::Rows& rows) {
    AppContext context{"finder", {}};
    for (std::size_t i = 0; i < rows.size(); ++i) {
        ContextWindow& window = context.windows.emplace_back();
        window.sourceWindowIndex = static_cast<std::int64_t>(i);
        for (const std::string& path : rows[i]) {
            if (path.starts_with('/')) window.urls.push_back(Url::file(path, true));
        }
    }
    return context;
}

Task<AdapterCaptureResult> FinderAdapter::capture(DesktopAccess& desktop, std::string) const {
    Script script{std::string(finder), ScriptRequest::ListFolders{}};
    AdapterCaptureResult result;
    try {
        const auto rows =
            co_await AppleScript::run(desktop.platform.scripts, std::move(script), adapterScriptLimit);
        if (rows) {
            result.context = context(*rows);
        } else {
            result.failure = "Finder automation was unavailable.";
        }
    } catch (const Cancelled&) {
        result.failure = "Finder capture was cancelled.";
    }
    co_return result;
}

std::vector<AdapterStep> FinderAdapter::plan(const AppContext& saved, const AppContext& current) const {
    std::set<std::string> shown = pathsOf(current);
    std::vector<AdapterStep> steps;
    for (const ContextWindow& window : saved.windows) {
        for (const Url& url : window.urls) {
            const auto path = url.standardized().filePath();
            // An address that is no folder is kept: it is to be reported.
            if (!path || shown.insert(*path).second) steps.push_back({true, {url}});
        }
    }
    return steps;
}

Task<AdapterRestoreResult> FinderAdapter::restore(DesktopAccess& desktop, AppContext saved,
                                                  std::optional<AppContext> current, std::string) const {
    AdapterRestoreResult result;
    try {
        co_await openAll(desktop, plan(saved, current.value_or(AppContext{})), result);
    } catch (const Cancelled&) {
        result.failures.emplace_back("Finder restore was cancelled.");
    }
    co_return result;
}

}  // namespace quillo
