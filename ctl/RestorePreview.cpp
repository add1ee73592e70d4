#include "ctl/RestorePreview.hpp"

#include "WindowEngine/DesktopCreation.hpp"
#include "WindowEngine/Displays.hpp"
#include "WindowEngine/NativeTabs.hpp"
#include "WindowEngine/SafariPrivacy.hpp"

namespace quillo::ctl {
namespace {

PlannedApplication presenceOf(Applications& applications, const ApplicationSnapshot& saved) {
    PlannedApplication planned{.saved = &saved};
    if (const auto running = applications.running(saved.bundleIdentifier)) {
        planned.presence = Presence::running;
        planned.pid = running->pid;
    } else if ((saved.applicationURL &&
                applications.identifierAt(*saved.applicationURL) == saved.bundleIdentifier) ||
               applications.location(saved.bundleIdentifier)) {
        planned.presence = Presence::installed;
    }
    return planned;
}

/// The live windows of all running applications, in one batch.
void readLive(DesktopAccess& desktop, std::vector<PlannedApplication>& planned) {
    std::vector<ProcessID> pids;
    for (const PlannedApplication& application : planned) {
        if (application.presence == Presence::running) pids.push_back(application.pid);
    }
    std::vector<Accessibility::Enumeration> lists = Accessibility::enumerate(desktop, pids, true);
    auto list = lists.begin();
    for (PlannedApplication& application : planned) {
        if (application.presence != Presence::running) continue;
        // As a restore sees them: private windows stand for nothing.
        SafariPrivacy::removeUnverified(desktop, application.saved->bundleIdentifier, application.pid,
                                        list->windows);
        for (const LiveWindow& window : list->windows) application.live.push_back(window.info);
        application.liveSpaces = DesktopSpaces::spacesOf(
            desktop, list->windows, NativeTabs::applications().contains(application.saved->bundleIdentifier));
        application.hangs = list++->timedOut;
    }
}

/// Where windows that are yet to open will be put.
void placeUnopened(PlannedApplication& application, DisplayMapper::DisplayList saved,
                   DisplayMapper::DisplayList current, const DesktopTargets& desktops) {
    for (WindowPlan& plan : application.windows) {
        if (plan.liveIndex) continue;
        const WindowSnapshot& window = application.saved->windows[static_cast<std::size_t>(plan.savedIndex)];
        plan.placement = DisplayMapper::place(window, saved, current);
        if (const auto* display = DisplayMapper::targetDisplay(window.displayID, saved, current)) {
            plan.displayID = display->id;
        }
        plan.desktop = targetDesktop(window, desktops);
    }
}

DesktopPlan planDesktops(DesktopAccess& desktop, const WorkspaceSnapshot& snapshot,
                         DisplayMapper::DisplayList displays) {
    if (!snapshot.desktops) return {};
    return DesktopSpaces::plan(*snapshot.desktops, snapshot.displays, displays, DesktopSpaces::read(desktop));
}

RestorePreview windowsOf(DesktopAccess& desktop, const WorkspaceSnapshot& snapshot) {
    const std::vector<DisplaySnapshot> displays = Displays::current(desktop.platform.screens);
    RestorePreview plan{planDesktops(desktop, snapshot, displays), {}};
    for (const ApplicationSnapshot& saved : snapshot.applications) {
        plan.applications.push_back(presenceOf(desktop.platform.applications, saved));
    }
    readLive(desktop, plan.applications);
    for (PlannedApplication& application : plan.applications) {
        application.windows = planWindows(application.saved->windows, application.live, snapshot.displays,
                                          displays, plan.desktops.targets, application.liveSpaces);
        if (application.live.empty() && application.presence != Presence::missing) {
            placeUnopened(application, snapshot.displays, displays, plan.desktops.targets);
        }
    }
    return plan;
}

}  // namespace

Task<RestorePreview> preview(DesktopAccess& desktop, const WorkspaceSnapshot& snapshot,
                             std::set<std::string> enabledAdapters) {
    RestorePreview preview = windowsOf(desktop, snapshot);
    for (PlannedApplication& application : preview.applications) {
        if (application.presence == Presence::missing) continue;
        application.reopening =
            co_await planReopening(desktop, *application.saved, application.live,
                                   application.presence == Presence::running, enabledAdapters);
    }
    co_return preview;
}

}  // namespace quillo::ctl
