#include "WindowEngine/restore/MissingWindows.hpp"

#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

#include "WindowEngine/desktop/Log.hpp"
#include "WindowEngine/restore/ContextRestore.hpp"
#include "WindowEngine/restore/DocumentRestore.hpp"
#include "WindowEngine/restore/WindowMatcher.hpp"

namespace quillo::Restore {
namespace {

/// After the first window that was asked for: whether the application opens another one with it.
constexpr Duration secondLook = std::chrono::milliseconds(250);

std::size_t withoutDialogs(const auto& windows) {
    return static_cast<std::size_t>(std::ranges::count_if(
        windows, [](const auto& window) { return window.subrole != std::string(ax::dialog); }));
}

std::vector<const WindowSnapshot*> unmatched(const std::vector<WindowSnapshot>& saved,
                                             std::span<const LiveWindowInfo> live) {
    std::vector<const WindowSnapshot*> windows;
    for (const WindowSnapshot& window : saved) windows.push_back(&window);
    for (const WindowMatcher::Match& match : WindowMatcher::match(saved, live))
        windows[static_cast<std::size_t>(match.savedIndex)] = nullptr;
    std::erase_if(windows, [](const WindowSnapshot* window) {
        return !window || window->subrole == std::string(ax::dialog);
    });
    return windows;
}

std::set<std::string> shownDocuments(std::span<const LiveWindowInfo> live) {
    std::set<std::string> shown;
    for (const LiveWindowInfo& window : live) {
        if (window.documentURL) shown.insert(window.documentURL->standardized().string());
    }
    return shown;
}

Task<Result<void>> ask(const ApplicationRestore& restore, const WindowRequest& request) {
    Applications& applications = restore.desktop.platform.applications;
    const std::string& identifier = restore.application.bundleIdentifier;
    if (request) return applications.open(identifier, {*request});
    return applications.openWindow(identifier);
}

/// How many windows a request brought, of an application that had `before`.
Task<std::size_t> brought(const ApplicationRestore& restore, std::size_t before, ChangeWatch& changes,
                          bool looksTwice) {
    const TimePoint deadline =
        restore.now() + std::min(windowPatience, toDuration(restore.options.launchTimeout));
    const auto count = [](const ApplicationRestore& of) { return withoutDialogs(infosOf(of.live(false))); };
    while (count(restore) <= before) {
        if (restore.now() >= deadline) co_return 0;
        co_await changes.next(windowInterval);
    }
    if (looksTwice) co_await sleepFor(secondLook);
    const std::size_t now = count(restore);
    co_return now > before ? now - before : 0;
}

}  // namespace

std::vector<WindowRequest> missingWindows(const Platform& platform, const ApplicationSnapshot& application,
                                          const Options& options, std::span<const LiveWindowInfo> live) {
    const std::size_t wanted = withoutDialogs(application.windows), there = withoutDialogs(live);
    if (there >= wanted || !platform.applications.openingWindows(application.bundleIdentifier)) return {};
    const std::set<std::string> shown = shownDocuments(live);
    std::vector<WindowRequest> documents, bare;
    for (const WindowSnapshot* window : unmatched(application.windows, live)) {
        if (!SavedDocuments::isIn(*window)) {
            bare.push_back(std::nullopt);
        } else if (window->documentURL && shown.contains(window->documentURL->standardized().string())) {
            if (auto target = documentTarget(platform, application, options, *window->documentURL))
                documents.push_back(*std::move(target));
        }
    }
    const auto most = static_cast<std::size_t>(bareWindows(platform, application, options.enabledAdapters));
    bare.resize(std::min(bare.size(), most));
    std::ranges::move(bare, std::back_inserter(documents));
    documents.resize(std::min(documents.size(), wanted - there));
    return documents;
}

Task<bool> openMissingWindows(ApplicationRestore& restore, std::vector<LiveWindowInfo> live) {
    const Platform& platform = restore.desktop.platform;
    const std::string& identifier = restore.application.bundleIdentifier;
    std::vector<WindowRequest> missing = missingWindows(platform, restore.application, restore.options, live);
    // One that opened none yet has been asked already, by its launch or for a first window.
    if (missing.empty() || live.empty()) co_return false;
    restore.opensMore = true;
    Log::requestedMore(platform.log, identifier, missing.size());
    const auto changes = platform.windowServer.watch(std::nullopt);
    std::size_t atOnce = 1;  // the most windows that one request brought
    for (std::size_t asked = 0, most = missing.size(); asked < most && missing.size() >= atOnce; ++asked) {
        co_await checkpoint();
        if (const auto accepted = co_await ask(restore, missing.front()); !accepted) {
            restore.add(RestoreReport::failed{"couldn't open another window: " + accepted.error().text});
            break;
        }
        const std::size_t came = co_await brought(restore, withoutDialogs(live), *changes, asked == 0);
        if (came == 0) break;
        atOnce = std::max(atOnce, came);
        live = infosOf(restore.live(true));
        missing = missingWindows(platform, restore.application, restore.options, live);
        if (missing.empty()) break;
    }
    co_return true;
}

Task<bool> openEmptyWindow(const ApplicationRestore& restore) {
    const auto live = infosOf(restore.live(false));
    const std::size_t there = withoutDialogs(live);
    const bool oneIsEmpty = there == 1 && shownDocuments(live).empty();
    if (oneIsEmpty || there >= withoutDialogs(restore.application.windows)) co_return true;
    Log::requestedMore(restore.desktop.platform.log, restore.application.bundleIdentifier, 1);
    const auto changes = restore.desktop.platform.windowServer.watch(std::nullopt);
    if (!co_await ask(restore, std::nullopt)) co_return false;
    co_return co_await brought(restore, there, *changes, false) > 0;
}

}  // namespace quillo::Restore
