#include "ctl/PlanText.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "WindowEngine/DesktopCreation.hpp"
#include "WindowEngine/Displays.hpp"
#include "WindowEngine/NativeTabs.hpp"
#include "WindowEngine/RestorePlan.hpp"
#include "WindowEngine/SafariPrivacy.hpp"
#include "ctl/DesktopPlanText.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/SnapshotText.hpp"

namespace quillo::ctl {
namespace {

enum class Presence { running, installed, missing };

struct PlannedApplication {
    const ApplicationSnapshot* saved = nullptr;
    Presence presence = Presence::missing;
    ProcessID pid = 0;
    bool hangs = false;  // did not answer in time
    std::vector<LiveWindowInfo> live = {};
    std::vector<std::vector<SpaceID>> liveSpaces = {};  // of each
    std::vector<WindowPlan> windows = {};
};

struct Plan {
    DesktopPlan desktops;
    std::vector<PlannedApplication> applications;
};

std::string_view key(Presence presence) {
    switch (presence) {
        case Presence::running:
            return "running";
        case Presence::installed:
            return "launch";
        case Presence::missing:
            return "notInstalled";
    }
    return "";
}

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

Plan plan(DesktopAccess& desktop, const WorkspaceSnapshot& snapshot) {
    const std::vector<DisplaySnapshot> displays = Displays::current(desktop.platform.screens);
    Plan plan{planDesktops(desktop, snapshot, displays), {}};
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

std::vector<std::string> reasons(const WindowMatcher::Evidence& evidence) {
    std::vector<std::string> reasons;
    const auto add = [&reasons](bool holds, const char* reason) {
        if (holds) reasons.emplace_back(reason);
    };
    add(evidence.document, "same document");
    add(evidence.title >= 0.6, "same title");
    add(evidence.title >= 0.35 && evidence.title < 0.6, "similar title");
    add(evidence.title > 0 && evidence.title < 0.35, "both without a title");
    add(evidence.titleConflict, "titles differ");
    add(evidence.tab >= 0, "by one of its tabs");
    add(evidence.subrole, "same kind");
    add(evidence.size >= 0.25, "same size");
    add(evidence.size > 0 && evidence.size < 0.25, "similar size");
    add(evidence.order, "same place in the list");
    return reasons;
}

std::string_view confidence(const WindowPlan& plan) {
    switch (WindowMatcher::Match{.score = plan.score}.confidence()) {
        case WindowMatcher::Confidence::high:
            return "high";
        case WindowMatcher::Confidence::medium:
            return "medium";
        case WindowMatcher::Confidence::low:
            return "low";
    }
    return "";
}

std::vector<std::string> steps(const WindowPlan& plan, const DesktopPlan& desktops) {
    std::vector<std::string> steps;
    if (plan.leaveFullscreen) steps.emplace_back("leave full screen");
    if (plan.unminimize) steps.emplace_back("unminimize");
    if (plan.write) steps.emplace_back("move and resize");
    if (plan.write && plan.minimized) steps.emplace_back("minimize");
    if (plan.moveToDesktop) {
        if (const auto desktop = desktopText(desktops, plan)) steps.push_back("move to " + *desktop);
    }
    if (plan.enterFullscreen) steps.emplace_back("full screen");
    return steps;
}

const LiveWindowInfo* liveWindow(const PlannedApplication& application, const WindowPlan& plan) {
    return plan.liveIndex ? &application.live[static_cast<std::size_t>(*plan.liveIndex)] : nullptr;
}

/// Why no live window is named. Before a launch that is no verdict: its windows are yet to come.
std::string openQuestion(const PlannedApplication& application, const WindowPlan& plan) {
    switch (application.presence) {
        case Presence::missing:
            return "skipped: not installed";
        case Presence::installed:
            return "placed once the application is launched";
        case Presence::running:
            break;
    }
    if (application.hangs) return "the application does not answer at the moment";
    return application.live.empty() ? "the application is asked for a window first"
                                    : "skipped: " + plan.skipReason;
}

void printWindow(Output& output, const PlannedApplication& application, const WindowPlan& plan,
                 const DesktopPlan& desktops) {
    output.line("  " + windowLabel(application.saved->windows[static_cast<std::size_t>(plan.savedIndex)]));
    const auto detail = [&output](const std::string& text) { output.line("      " + text); };
    if (const LiveWindowInfo* live = liveWindow(application, plan)) {
        detail(fmt::format("window  {}", printable(live->title.value_or("Untitled"))));
        detail(fmt::format("why     {} (score {:.2f}, {} confidence)",
                           fmt::join(reasons(plan.evidence), ", "), plan.score, confidence(plan)));
    } else {
        detail(output.painted(Style::warning, openQuestion(application, plan)));
    }
    if (plan.placement) {
        const auto desktop = desktopText(desktops, plan);
        detail(fmt::format("where   {}{}, display {}{}", frameText(plan.placement->frame),
                           plan.placement->adjusted ? " (adjusted)" : "",
                           printable(plan.displayID.value_or("none")), desktop ? ", " + *desktop : ""));
    } else if (plan.liveIndex) {
        detail("where   nowhere: no display is attached");
    }
    if (plan.liveIndex) detail(fmt::format("steps   {}", fmt::join(steps(plan, desktops), ", then ")));
}

std::string headline(const PlannedApplication& application) {
    switch (application.presence) {
        case Presence::running:
            if (application.hangs) return "runs, does not answer";
            return "runs, " + counted(static_cast<std::int64_t>(application.live.size()), "window");
        case Presence::installed:
            return "would be launched";
        case Presence::missing:
            return "not installed";
    }
    return "";
}

void printJson(Output& output, const PlannedApplication& application, const WindowPlan& plan,
               const DesktopPlan& desktops) {
    JsonLine line;
    line.add("application", application.saved->name)
        .add("bundleIdentifier", application.saved->bundleIdentifier)
        .add("presence", key(application.presence))
        .add("savedIndex", plan.savedIndex)
        .add("title", application.saved->windows[static_cast<std::size_t>(plan.savedIndex)].title);
    if (const LiveWindowInfo* live = liveWindow(application, plan)) {
        line.add("liveIndex", live->index)
            .add("liveTitle", live->title)
            .add("score", plan.score)
            .add("confidence", confidence(plan))
            .add("evidence", reasons(plan.evidence))
            .add("steps", steps(plan, desktops));
    } else {
        line.add("reason", openQuestion(application, plan));
    }
    line.add("displayID", plan.displayID);
    addDesktop(line, desktops, plan);
    if (plan.placement) line.add("frame", plan.placement->frame).add("adjusted", plan.placement->adjusted);
    output.value(std::move(line));
}

}  // namespace

void printPlan(Output& output, DesktopAccess& desktop, const WorkspaceSnapshot& snapshot) {
    const Plan planned = plan(desktop, snapshot);
    printDesktops(output, planned.desktops);
    for (const PlannedApplication& application : planned.applications) {
        if (!output.json()) {
            output.line(output.painted(Style::bold, printable(application.saved->name)) + ": " +
                        headline(application));
        }
        for (const WindowPlan& window : application.windows) {
            if (output.json()) {
                printJson(output, application, window, planned.desktops);
            } else {
                printWindow(output, application, window, planned.desktops);
            }
        }
    }
}

}  // namespace quillo::ctl
