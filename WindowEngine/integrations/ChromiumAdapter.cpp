#include "WindowEngine/integrations/ChromiumAdapter.hpp"

#include <algorithm>
#include <map>
#include <utility>

#include "WindowEngine/integrations/BrowserRestorePlan.hpp"
#include "WindowEngine/integrations/BrowserScripts.hpp"
#include "WindowEngine/integrations/TabReopening.hpp"
#include "WindowEngine/records/ChromiumURLCodec.hpp"

namespace quillo {
namespace {

/// Names in scripts, by bundle identifier.
const std::map<std::string, std::string, std::less<>>& apps() {
    static const std::map<std::string, std::string, std::less<>> names{
        {"com.google.Chrome", "Google Chrome"},
        {"com.brave.Browser", "Brave Browser"},
        {"com.microsoft.edgemac", "Microsoft Edge"},
        {"company.thebrowser.Browser", "Arc"},
    };
    return names;
}

constexpr std::string_view unsupported = "Unsupported Chromium browser.";
constexpr std::string_view couldNotReopen = "Browser could not reopen saved tabs.";

bool isPrivate(const std::vector<std::string>& row) {
    return row.size() == 1 && row.front() == ChromiumAdapter::privateMarker;
}

/// Every window of the browser, `report` being what the script says of one that is not private.
std::string listScript(std::string_view application, std::string_view report) {
    return AppleScript::lines({
        AppleScript::joinList(),
        BrowserScripts::tell(application),
        R"(    set out to {})",
        R"(    repeat with w in windows)",
        R"(        try)",
        R"(            if mode of w is "incognito" then)",
        R"(                set end of out to ")" + std::string(ChromiumAdapter::privateMarker) + R"(")",
        R"(            else)",
        R"(                set end of out to )" + std::string(report),
        R"(            end if)",
        R"(        on error)",
        R"(            set end of out to "")",
        R"(        end try)",
        R"(    end repeat)",
        R"(end tell)",
        R"(return my joinList(out, linefeed))",
    });
}

/// A window that tabs may be opened in.
struct OpenWindow {
    std::string identifier;
    ContextWindow context;
};

/// As the family spells it; some run several together.
bool isNewTab(std::string_view field) {
    return field == "about:blank" || field == "missing value" || field.ends_with("://newtab/") ||
           field.ends_with("://new-tab-page/");
}

/// Not those that show only what is no web address (settings, a local file): they are not blank either.
std::vector<OpenWindow> openWindows(const AppleScript::Rows& rows) {
    std::vector<OpenWindow> windows;
    for (const auto& row : rows) {
        if (row.empty() || isPrivate(row)) continue;
        const auto fields = std::span(row).subspan(1);
        std::vector<Url> urls = ChromiumURLCodec::decode(fields);
        if (urls.empty() && !std::ranges::all_of(fields, isNewTab)) continue;
        OpenWindow& window = windows.emplace_back(OpenWindow{row.front(), {}});
        window.context.urls = std::move(urls);
    }
    return windows;
}

std::vector<ContextWindow> contexts(const std::vector<OpenWindow>& windows) {
    std::vector<ContextWindow> result;
    for (const OpenWindow& window : windows) result.push_back(window.context);
    return result;
}

/// A restore and the name the browser goes by in scripts.
struct Reopening {
    TabReopening tabs;
    const std::string& application;
};

Task<void> openTabs(Reopening& reopening, const std::string& window, std::span<const Url> urls,
                    bool intoActiveTab) {
    for (const auto portion : BrowserScripts::portions(urls)) {
        std::string script =
            ChromiumAdapter::tabsScript(reopening.application, window, portion, intoActiveTab);
        if (!co_await reopening.tabs.openTabs(std::move(script), portion.size())) co_return;
        intoActiveTab = false;
    }
}

Task<void> openWindow(Reopening& reopening, std::span<const Url> urls) {
    const auto window = co_await reopening.tabs.makeWindow(
        ChromiumAdapter::newWindowScript(reopening.application, urls.front()));
    if (!window || urls.size() == 1) co_return;
    if (window->empty()) {
        reopening.tabs.fail(couldNotReopen);
        co_return;
    }
    co_await openTabs(reopening, *window, urls.subspan(1), false);
}

Task<void> reopen(Reopening& reopening, const AppContext& saved) {
    const auto rows = co_await reopening.tabs.run(ChromiumAdapter::identifyScript(reopening.application));
    if (!rows) co_return;
    const std::vector<OpenWindow> open = openWindows(*rows);
    for (const auto& step : BrowserRestorePlan::make(saved.windows, contexts(open), true)) {
        if (reopening.tabs.givenUp) co_return;
        if (!step.index) {
            co_await openWindow(reopening, step.urls);
            continue;
        }
        const OpenWindow& window = open[static_cast<std::size_t>(*step.index)];
        co_await openTabs(reopening, window.identifier, step.urls, window.context.urls.empty());
    }
}

}  // namespace

std::set<std::string> ChromiumAdapter::bundleIdentifiers() const {
    std::set<std::string> identifiers;
    for (const auto& [identifier, name] : apps()) identifiers.insert(identifier);
    return identifiers;
}

std::string ChromiumAdapter::captureScript(std::string_view application) {
    return listScript(application, "my joinList(URL of every tab of w, ASCII character 9)");
}

std::string ChromiumAdapter::identifyScript(std::string_view application) {
    return listScript(application,
                      "((id of w) as text) & (ASCII character 9) & my joinList(URL of every tab of w, "
                      "ASCII character 9)");
}

std::string ChromiumAdapter::newWindowScript(std::string_view application, const Url& first) {
    return AppleScript::lines({
        BrowserScripts::tell(application),
        "    set targetWindow to make new window",
        "    set URL of active tab of targetWindow to " + AppleScript::quoted(first.string()),
        "    return (id of targetWindow) as text",
        "end tell",
    });
}

std::string ChromiumAdapter::tabsScript(std::string_view application, std::string_view window,
                                        std::span<const Url> urls, bool intoActiveTab) {
    std::vector<std::string> lines{
        BrowserScripts::tell(application),
        "    repeat with w in windows",
        "        if ((id of w) as text) is " + AppleScript::quoted(window) + " then",
        R"(            if mode of w is "incognito" then error "the window is private")",
    };
    if (intoActiveTab) {
        lines.push_back("            set URL of active tab of w to " +
                        AppleScript::quoted(urls.front().string()));
        urls = urls.subspan(1);
    }
    for (std::string& line : BrowserScripts::newTabs("            ", "w", urls))
        lines.push_back(std::move(line));
    lines.insert(lines.end(), {
                                  "            return",
                                  "        end if",
                                  "    end repeat",
                                  "end tell",
                                  R"(error "the window is gone")",
                              });
    return AppleScript::lines(lines);
}

AdapterCaptureResult ChromiumAdapter::captured(const AppleScript::Rows& rows) {
    AdapterCaptureResult result;
    result.context = AppContext{"chromium", {}};
    result.windowCount = rows.size();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const auto index = static_cast<std::int64_t>(i);
        if (isPrivate(rows[i])) {
            result.excludedWindowIndices.insert(index);
            continue;
        }
        std::vector<Url> urls = ChromiumURLCodec::decode(rows[i]);
        if (!urls.empty()) result.context->windows.push_back({index, std::move(urls), std::nullopt});
    }
    return result;
}

Task<AdapterCaptureResult> ChromiumAdapter::capture(DesktopAccess& desktop,
                                                    std::string bundleIdentifier) const {
    AdapterCaptureResult result;
    const auto app = apps().find(bundleIdentifier);
    if (app == apps().end()) {
        result.failure = unsupported;
        co_return result;
    }
    try {
        const auto rows = co_await AppleScript::run(desktop.platform.scripts, captureScript(app->second),
                                                    adapterScriptLimit);
        if (rows) co_return captured(*rows);
        result.failure = "Browser automation was unavailable.";
    } catch (const Cancelled&) {
        result.failure = "Browser capture was cancelled.";
    }
    co_return result;
}

std::vector<AdapterStep> ChromiumAdapter::plan(const AppContext& saved, const AppContext& current) const {
    return BrowserRestorePlan::adapterSteps(saved, current);
}

Task<AdapterRestoreResult> ChromiumAdapter::restore(DesktopAccess& desktop, AppContext saved,
                                                    std::optional<AppContext> current,
                                                    std::string bundleIdentifier) const {
    AdapterRestoreResult result;
    const auto app = apps().find(bundleIdentifier);
    if (app == apps().end()) {
        result.failures.emplace_back(unsupported);
        co_return result;
    }
    // Where nobody knows what is open, opening anything might open it twice.
    if (!current || !BrowserScripts::allWeb(saved.windows)) result.failures.emplace_back(couldNotReopen);
    if (!current) co_return result;
    try {
        Reopening reopening{{desktop, result, couldNotReopen}, app->second};
        co_await reopen(reopening, saved);
    } catch (const Cancelled&) {
        result.failures.emplace_back("Browser restore was cancelled.");
    }
    co_return result;
}

}  // namespace quillo
