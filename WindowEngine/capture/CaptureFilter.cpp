#include "WindowEngine/capture/CaptureFilter.hpp"

#include <fmt/format.h>

#include <utility>
#include <vector>

#include "WindowEngine/records/ExcludedDomains.hpp"

namespace quillo::CaptureFilter {
namespace {

void removeWebDocument(std::optional<Url>& document, const ExcludedDomains& excluded) {
    if (document && document->isWeb() && excluded.contain(*document)) document.reset();
}

/// Context without its empty windows; absent when none is left.
std::optional<AppContext> withoutEmptyWindows(AppContext context) {
    std::erase_if(context.windows, [](const ContextWindow& window) { return window.urls.empty(); });
    if (context.windows.empty()) return std::nullopt;
    return context;
}

std::set<std::int64_t> removeWindows(ApplicationSnapshot& application,
                                     const std::set<std::string>& excluded) {
    std::set<std::int64_t> removed;
    std::erase_if(application.windows, [&](const WindowSnapshot& window) {
        if (!excluded.contains(windowKey(application.bundleIdentifier, window.index))) return false;
        removed.insert(window.index);
        return true;
    });
    return removed;
}

void removeURLs(ContextWindow& window, std::string_view bundleIdentifier, std::int64_t keyIndex,
                const std::set<std::string>& excluded) {
    std::vector<Url> kept;
    for (std::size_t i = 0; i < window.urls.size(); ++i) {
        const std::string key = contextURLKey(bundleIdentifier, keyIndex, static_cast<std::int64_t>(i));
        if (!excluded.contains(key)) kept.push_back(std::move(window.urls[i]));
    }
    window.urls = std::move(kept);
}

void filterContext(ApplicationSnapshot& application, const std::set<std::int64_t>& removedWindows,
                   const std::set<std::string>& excludedURLs) {
    if (!application.context) return;
    auto& windows = application.context->windows;
    std::erase_if(windows, [&](const ContextWindow& window) {
        return window.sourceWindowIndex && removedWindows.contains(*window.sourceWindowIndex);
    });
    for (std::size_t position = 0; position < windows.size(); ++position) {
        const auto keyIndex =
            windows[position].sourceWindowIndex.value_or(static_cast<std::int64_t>(position));
        removeURLs(windows[position], application.bundleIdentifier, keyIndex, excludedURLs);
    }
    application.context = withoutEmptyWindows(std::move(*application.context));
}

}  // namespace

std::string windowKey(std::string_view bundleIdentifier, std::int64_t index) {
    return fmt::format("{}#window#{}", bundleIdentifier, index);
}

std::string contextURLKey(std::string_view bundleIdentifier, std::int64_t windowIndex,
                          std::int64_t urlIndex) {
    return fmt::format("{}#context#{}#{}", bundleIdentifier, windowIndex, urlIndex);
}

WorkspaceSnapshot apply(WorkspaceSnapshot snapshot, const std::set<std::string>& excludedApps,
                        const std::set<std::string>& excludedWindows,
                        const std::set<std::string>& excludedContextURLs) {
    std::erase_if(snapshot.applications, [&](const ApplicationSnapshot& application) {
        return excludedApps.contains(application.bundleIdentifier);
    });
    for (ApplicationSnapshot& application : snapshot.applications) {
        const std::set<std::int64_t> removed = removeWindows(application, excludedWindows);
        filterContext(application, removed, excludedContextURLs);
    }
    return snapshot;
}

std::optional<AppContext> removingDomains(const std::set<std::string>& domains,
                                          std::optional<AppContext> context) {
    if (!context || context->adapter == "finder") return context;
    const ExcludedDomains excluded(domains);
    if (excluded.empty()) return context;
    for (ContextWindow& window : context->windows)
        std::erase_if(window.urls, [&](const Url& url) { return excluded.contain(url); });
    return withoutEmptyWindows(std::move(*context));
}

std::vector<WindowSnapshot> removingWebDocuments(const std::set<std::string>& domains,
                                                 std::vector<WindowSnapshot> windows) {
    const ExcludedDomains excluded(domains);
    for (WindowSnapshot& window : windows) {
        removeWebDocument(window.documentURL, excluded);
        if (!window.tabs) continue;
        for (TabSnapshot& tab : *window.tabs) removeWebDocument(tab.documentURL, excluded);
    }
    return windows;
}

}  // namespace quillo::CaptureFilter
