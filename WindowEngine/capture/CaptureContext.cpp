#include "WindowEngine/capture/CaptureContext.hpp"

#include <algorithm>
#include <utility>

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/desktop/Log.hpp"
#include "WindowEngine/integrations/Adapters.hpp"

namespace quillo::Capture {
namespace {

/// Whether places in the application's own window list are places in ours. Ours must be what accessibility
/// lists, then as now: windows of other desktops that we know of otherwise stand at its end, and not at their
/// place in front or behind.
bool indicesHold(DesktopAccess& desktop, const AdapterCaptureResult& result,
                 std::span<const LiveWindow> before, const ApplicationSnapshot& application) {
    if (application.windows.size() != before.size())
        return false;  // some are known to the window server only
    if (result.windowCount && *result.windowCount != before.size()) return false;
    const auto running = desktop.platform.applications.running(application.bundleIdentifier);
    if (!running) return false;
    std::vector<WindowNumber> ours;
    for (const LiveWindow& window : before) {
        if (!window.windowID) return false;
        ours.push_back(*window.windowID);
    }
    std::vector<WindowNumber> listed = Accessibility::listedNumbers(desktop, running->pid);
    std::erase_if(listed, [&](WindowNumber number) { return std::ranges::find(ours, number) == ours.end(); });
    return listed == ours;
}

void withholdContents(ApplicationSnapshot& application, std::vector<std::string>& notes) {
    for (WindowSnapshot& window : application.windows) {
        window.title.reset();
        window.documentURL.reset();
    }
    notes.push_back(application.name +
                    ": private windows could not be told apart; window titles were left out.");
}

void dropExcluded(DesktopAccess& desktop, const AdapterCaptureResult& result,
                  std::span<const LiveWindow> live, ApplicationSnapshot& application,
                  std::vector<std::string>& notes) {
    if (result.excludedWindowIndices.empty()) return;
    if (!indicesHold(desktop, result, live, application)) return withholdContents(application, notes);
    std::erase_if(application.windows, [&](const WindowSnapshot& window) {
        return result.excludedWindowIndices.contains(window.index);
    });
}

std::optional<WindowNumber> numberOf(std::span<const LiveWindow> live, std::int64_t index) {
    const auto own =
        std::ranges::find(live, index, [](const LiveWindow& candidate) { return candidate.info.index; });
    return own == live.end() ? std::nullopt : own->windowID;
}

void keepIncluded(const AdapterCaptureResult& result, std::span<const LiveWindow> live,
                  ApplicationSnapshot& application) {
    if (!result.includedWindowIDs) return;
    std::erase_if(application.windows, [&](const WindowSnapshot& window) {
        const auto number = numberOf(live, window.index);
        return !number || !result.includedWindowIDs->contains(*number);
    });
}

void keepSureTitles(const AdapterCaptureResult& result, std::span<const LiveWindow> live,
                    ApplicationSnapshot& application, std::vector<std::string>& notes) {
    if (!result.titledWindowIDs) return;
    bool withheld = false;
    for (WindowSnapshot& window : application.windows) {
        const auto number = numberOf(live, window.index);
        if (number && result.titledWindowIDs->contains(*number)) continue;
        withheld |= window.title || window.documentURL;
        window.title.reset();
        window.documentURL.reset();
    }
    if (withheld)
        notes.push_back(application.name + ": titles of windows that may be private were left out.");
}

/// Stands each context window with the window that it is; one of which that is not known gets a number that
/// no window has.
void giveIndices(AdapterCaptureResult& result, std::span<const LiveWindow> live,
                 const ApplicationSnapshot& application) {
    if (!result.titledWindowIDs || !result.context) return;
    std::int64_t free = 0;
    for (const WindowSnapshot& window : application.windows) free = std::max(free, window.index + 1);
    for (ContextWindow& window : result.context->windows) {
        const auto own = window.sourceWindowID
                             ? std::ranges::find(live, window.sourceWindowID, &LiveWindow::windowID)
                             : live.end();
        window.sourceWindowIndex = own == live.end() ? free++ : own->info.index;
    }
}

}  // namespace

Task<void> captureContext(DesktopAccess& desktop, const Options& options, std::span<const LiveWindow> live,
                          ApplicationSnapshot& application, std::vector<std::string>& notes) {
    const ContextAdapter* adapter = Adapters::adapter(application.bundleIdentifier, options.enabledAdapters);
    if (!adapter) co_return;
    AdapterCaptureResult result = co_await adapter->capture(desktop, application.bundleIdentifier);
    co_await checkpoint();
    keepSureTitles(result, live, application, notes);
    if (result.failure) {
        notes.push_back(application.name + ": " + *result.failure);
        Log::adapterFailed(desktop.platform.log, adapter->id(), *result.failure);
        co_return;
    }
    dropExcluded(desktop, result, live, application, notes);
    keepIncluded(result, live, application);
    giveIndices(result, live, application);
    std::ranges::move(result.notes, std::back_inserter(notes));
    application.context = CaptureFilter::removingDomains(options.excludedDomains, std::move(result.context));
    Log::adapterCaptured(desktop.platform.log, adapter->id(),
                         application.context ? application.context->urlCount() : 0);
}

}  // namespace quillo::Capture
