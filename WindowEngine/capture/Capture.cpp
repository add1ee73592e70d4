#include "WindowEngine/capture/Capture.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <set>
#include <utility>

#include "WindowEngine/capture/CaptureContext.hpp"
#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/capture/FullscreenCaptureMerge.hpp"
#include "WindowEngine/desktop/DesktopSpaces.hpp"
#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/desktop/Log.hpp"
#include "WindowEngine/integrations/SafariPrivacy.hpp"
#include "WindowEngine/records/NativeTabs.hpp"
#include "WindowEngine/records/OwnIdentity.hpp"
#include "WindowEngine/support/StableSort.hpp"
#include "WindowEngine/support/Text.hpp"
#include "WindowEngine/support/Wait.hpp"

namespace quillo::Capture {
namespace {

using namespace std::chrono_literals;

/// Everything that is read of the desktop before the first suspension: nothing of it is read twice, and
/// nothing of it is used after one.
struct CaptureReading {
    bool trusted = false;
    std::vector<DisplaySnapshot> displays;
    std::vector<NativeDesktop> desktops;
    std::vector<RunningApplication> applications;
    std::vector<Accessibility::Enumeration> windows;  // one for each application
    WindowServerReading server;
    std::set<WindowNumber> excluded;  // of applications that are kept out, whatever these are counted to
    std::vector<std::string> notes;
};

std::set<std::string> excludedIdentifiers(DesktopAccess& desktop, const Options& options) {
    std::set<std::string> identifiers = desktop.platform.applications.neverCaptured();
    identifiers.insert(options.excludedBundleIdentifiers.begin(), options.excludedBundleIdentifiers.end());
    identifiers.insert(alwaysExcluded().begin(), alwaysExcluded().end());
    identifiers.emplace(ownBundleIdentifier);
    return identifiers;
}

/// An application that has nothing but such windows is one of those that are kept out.
void removeExcluded(DesktopAccess& desktop, const Options& options, CaptureReading& reading) {
    reading.excluded = desktop.platform.applications.windowsOfAny(excludedIdentifiers(desktop, options));
    for (std::size_t i = reading.applications.size(); i-- > 0;) {
        const auto removed = std::erase_if(reading.windows[i].windows, [&](const LiveWindow& window) {
            return window.windowID && reading.excluded.contains(*window.windowID);
        });
        if (removed == 0 || !reading.windows[i].windows.empty()) continue;
        reading.applications.erase(reading.applications.begin() + static_cast<std::ptrdiff_t>(i));
        reading.windows.erase(reading.windows.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

void noteRemote(DesktopAccess& desktop, CaptureReading& reading) {
    const std::int64_t count = desktop.platform.applications.remoteWindows();
    if (count == 0) return;
    reading.notes.push_back(count == 1 ? "1 window of a program on another machine was left out."
                                       : std::to_string(count) +
                                             " windows of programs on other machines were left out.");
}

/// What of terminals does not come back as it is.
void noteTerminals(DesktopAccess& desktop, CaptureReading& reading) {
    for (std::size_t i = 0; i < reading.applications.size(); ++i) {
        const RunningApplication& application = reading.applications[i];
        const auto shells = desktop.platform.applications.shells(*application.bundleIdentifier);
        if (!shells) continue;
        std::int64_t windows = 0, unknown = 0;
        for (const LiveWindow& window : reading.windows[i].windows) {
            if (window.info.subrole == std::string(ax::dialog)) continue;
            ++windows;
            if (!window.info.documentURL) ++unknown;
        }
        const std::string name = application.localizedName.value_or(*application.bundleIdentifier);
        if (unknown == 1)
            reading.notes.push_back(
                name + ": the folder of 1 window is not known; it comes back where new ones begin.");
        if (unknown > 1)
            reading.notes.push_back(fmt::format(
                "{}: the folders of {} windows are not known; they come back where new ones begin.", name,
                unknown));
        if (*shells > windows)
            reading.notes.push_back(name + ": of its tabs and panes only the one in front is saved.");
    }
}

/// Directly after the enumeration, so that a window is verified as it was read.
void applyPrivacyGate(DesktopAccess& desktop, CaptureReading& reading) {
    for (std::size_t i = 0; i < reading.applications.size(); ++i) {
        const RunningApplication& application = reading.applications[i];
        if (SafariPrivacy::removeUnverified(desktop, *application.bundleIdentifier, application.pid,
                                            reading.windows[i].windows))
            reading.notes.push_back("Safari: skipped windows whose browsing privacy could not be verified.");
    }
}

/// `silent`: applications that do not answer, and are not waited for again.
CaptureReading readDesktop(DesktopAccess& desktop, const Options& options,
                           const std::set<ProcessID>& silent) {
    CaptureReading reading;
    reading.trusted = desktop.platform.accessibility.trusted();
    reading.displays = Displays::current(desktop.platform.screens);
    reading.desktops = DesktopSpaces::current(desktop);
    reading.applications = eligibleApplications(desktop, options);
    std::vector<ProcessID> pids;
    for (const RunningApplication& application : reading.applications) {
        if (!silent.contains(application.pid)) pids.push_back(application.pid);
    }
    reading.server = Accessibility::readWindowServer(desktop);
    auto answers = options.recoverHidden ? Accessibility::enumerateRecovering(desktop, pids, reading.server)
                                         : Accessibility::enumerate(desktop, pids, false);
    auto answer = answers.begin();
    for (const RunningApplication& application : reading.applications) {
        const bool hangs = silent.contains(application.pid);
        reading.windows.push_back(hangs ? Accessibility::Enumeration{{}, true} : std::move(*answer++));
    }
    removeExcluded(desktop, options, reading);
    applyPrivacyGate(desktop, reading);
    noteRemote(desktop, reading);
    noteTerminals(desktop, reading);
    return reading;
}

/// The first application found to hang that was not known to; everything is then read anew without it, for
/// while it was waited for the desktop changed.
std::optional<ProcessID> newlySilent(const DesktopAccess& desktop, const CaptureReading& reading,
                                     const std::set<ProcessID>& silent) {
    const TimePoint now = desktop.platform.executor.now();
    for (const RunningApplication& application : reading.applications) {
        if (!silent.contains(application.pid) && desktop.handles.unresponsive.resting(application.pid, now))
            return application.pid;
    }
    return std::nullopt;
}

/// `silent` outlives it, and has those that were found to hang.
Task<CaptureReading> readAnswering(DesktopAccess& desktop, const Options& options,
                                   std::set<ProcessID>& silent) {
    CaptureReading reading = readDesktop(desktop, options, silent);
    while (const auto hangs = newlySilent(desktop, reading, silent)) {
        silent.insert(*hangs);
        co_await sleepFor(0s);  // at most one messaging timeout at a time
        reading = readDesktop(desktop, options, silent);
    }
    co_return reading;
}

std::optional<DesktopSnapshot> desktopOf(const CaptureReading& reading, WindowNumber number,
                                         const std::optional<std::string>& displayID) {
    const auto facts = reading.server.facts.find(number);
    if (facts == reading.server.facts.end()) return std::nullopt;
    return DesktopSpaces::desktopOf(facts->second, reading.desktops, displayID);
}

Rect normalizedFrame(const Rect& frame, const DisplaySnapshot* display,
                     const std::vector<DisplaySnapshot>& all) {
    if (!display && all.empty()) return {};
    return Displays::normalize(frame, (display ? *display : all.front()).frame);
}

WindowSnapshot windowSnapshot(const CaptureReading& reading, const LiveWindow& window) {
    const LiveWindowInfo& info = window.info;
    const DisplaySnapshot* display = Displays::display(info.frame, reading.displays);
    WindowSnapshot result;
    result.title = info.title;
    result.subrole = info.subrole;
    result.documentURL = info.documentURL;
    result.frame = info.frame;
    if (display) result.displayID = display->id;
    // A full-screen window owns its own desktop.
    if (!info.isFullscreen && window.windowID)
        result.desktop = desktopOf(reading, *window.windowID, result.displayID);
    result.normalizedFrame = normalizedFrame(info.frame, display, reading.displays);
    result.isMinimized = info.isMinimized;
    result.isFullscreen = info.isFullscreen;
    result.fullscreenConfirmed = true;
    result.index = info.index;
    return result;
}

std::vector<WindowSnapshot> windowSnapshots(const CaptureReading& reading, std::size_t application) {
    const std::vector<LiveWindow>& live = reading.windows[application].windows;
    std::vector<WindowSnapshot> windows;
    for (const LiveWindow& window : live) windows.push_back(windowSnapshot(reading, window));
    const RunningApplication& owner = reading.applications[application];
    // Without the permission every window is a hidden one; and the window server knows of private windows
    // too, and there is nothing to verify them by.
    if (!reading.trusted || owner.bundleIdentifier == SafariPrivacy::safari) return windows;
    std::set<WindowNumber> known = Accessibility::windowNumbers(live);
    known.insert(reading.excluded.begin(), reading.excluded.end());
    const auto hidden = Accessibility::hiddenWindows(reading.server, owner.pid, known);
    return FullscreenCaptureMerge::apply(
        std::move(windows), hidden, reading.displays,
        [&](WindowNumber number, const std::optional<std::string>& displayID) {
            return desktopOf(reading, number, displayID);
        });
}

ApplicationSnapshot applicationSnapshot(const CaptureReading& reading, std::size_t index) {
    const RunningApplication& application = reading.applications[index];
    ApplicationSnapshot result;
    result.bundleIdentifier = *application.bundleIdentifier;
    result.name = application.localizedName.value_or(result.bundleIdentifier);
    result.applicationURL = application.bundleURL;
    result.windows = windowSnapshots(reading, index);
    return result;
}

void tell(SeenWindows& seen, const RunningApplication& application, const std::vector<LiveWindow>& windows) {
    std::vector<Seen>& all = seen[*application.bundleIdentifier];
    for (const LiveWindow& window : windows) {
        if (window.windowID) all.push_back({window.info.index, *window.windowID, window.info.frame});
    }
}

}  // namespace

std::function<bool(const std::string&)> neverSaved(Applications& applications, const Options& options) {
    return [excluded = options.excludedBundleIdentifiers,
            secret = applications.neverCaptured()](const std::string& identifier) {
        return excluded.contains(identifier) || alwaysExcluded().contains(identifier) ||
               identifier == ownBundleIdentifier || secret.contains(text::lowercase(identifier));
    };
}

std::vector<RunningApplication> eligibleApplications(DesktopAccess& desktop, const Options& options) {
    std::vector<RunningApplication> eligible = desktop.platform.applications.running();
    const auto isNeverSaved = neverSaved(desktop.platform.applications, options);
    std::erase_if(eligible, [&](const RunningApplication& application) {
        return application.activationPolicy != ActivationPolicy::regular || !application.bundleIdentifier ||
               isNeverSaved(*application.bundleIdentifier);
    });
    return eligible;
}

const std::set<std::string>& alwaysExcluded() {
    static const std::set<std::string> identifiers{
        "com.1password.1password",  "com.agilebits.onepassword7", "com.bitwarden.desktop",
        "com.apple.keychainaccess", "com.apple.SecurityAgent",    "com.apple.Passwords",
    };
    return identifiers;
}

Task<WorkspaceSnapshot> snapshot(DesktopAccess& desktop, Options options, SeenWindows* seen) {
    desktop.handles.unresponsive.clear();
    std::set<ProcessID> silent;
    CaptureReading reading = co_await readAnswering(desktop, options, silent);
    if (options.asksPatiently && co_await desktop.platform.accessibility.askPatiently())
        reading = co_await readAnswering(desktop, options, silent);

    WorkspaceSnapshot result;
    result.displays = reading.displays;
    result.desktops.emplace();
    for (const NativeDesktop& native : reading.desktops)
        result.desktops->push_back(DesktopSpaces::snapshot(native));
    std::vector<std::string> notes = reading.notes;
    for (std::size_t i = 0; i < reading.applications.size(); ++i) {
        ApplicationSnapshot application = applicationSnapshot(reading, i);
        if (seen) tell(*seen, reading.applications[i], reading.windows[i].windows);
        co_await captureContext(desktop, options, reading.windows[i].windows, application, notes);
        application.windows =
            CaptureFilter::removingWebDocuments(options.excludedDomains, std::move(application.windows));
        if (desktop.platform.accessibility.listsTabsAsWindows())
            application = NativeTabs::collapse(std::move(application));
        result.applications.push_back(std::move(application));
    }
    if (!notes.empty()) result.notes = std::move(notes);
    sortStably(result.applications, [](const ApplicationSnapshot& a, const ApplicationSnapshot& b) {
        return text::compareLocalized(a.name, b.name);
    });
    Log::captured(desktop.platform.log, result.applications.size(),
                  static_cast<std::size_t>(result.windowCount()));
    result.capturedAt = desktop.platform.executor.wallNow();
    co_return result;
}

}  // namespace quillo::Capture
