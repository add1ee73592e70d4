#include "ctl/PlanText.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "ctl/DesktopPlanText.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/ReopeningPlanText.hpp"
#include "ctl/SnapshotText.hpp"

namespace quillo::ctl {
namespace {

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
    return plan.liveIndex ? &application.live[static_cast<std::size_t>(*plan.liveIndex)].info : nullptr;
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
    const ReopeningPlan& reopening = application.reopening;
    if (application.live.empty() && reopening.askedForWindow)
        return "the application is asked for a window first";
    if (!reopening.documents.open.empty() || !reopening.steps.empty())
        return "placed once what is opened has its window";
    return "skipped: " + plan.skipReason;
}

void printWindow(Output& output, const PlannedApplication& application, const WindowPlan& plan,
                 const DesktopPlan& desktops) {
    output.line("  " + windowLabel(application.saved->windows[static_cast<std::size_t>(plan.savedIndex)]));
    const auto detail = [&output](const std::string& text) { output.line("      " + text); };
    if (const LiveWindowInfo* live = liveWindow(application, plan)) {
        detail(fmt::format("window  {}", printable(live->title.value_or("Untitled"))));
        detail(fmt::format("why     {} (score {:.2f}, {} confidence)",
                           fmt::join(reasons(plan.evidence), ", "), plan.score, confidence(plan)));
        if (!plan.skipReason.empty()) detail(output.painted(Style::warning, "skipped: " + plan.skipReason));
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
        if (!plan.skipReason.empty()) line.add("reason", "skipped: " + plan.skipReason);
    } else {
        line.add("reason", openQuestion(application, plan));
    }
    line.add("displayID", plan.displayID);
    addDesktop(line, desktops, plan);
    if (plan.placement) line.add("frame", plan.placement->frame).add("adjusted", plan.placement->adjusted);
    output.value(std::move(line));
}

}  // namespace

void printPlan(Output& output, const RestorePreview& plan) {
    printDesktops(output, plan.desktops);
    for (const PlannedApplication& application : plan.applications) {
        if (!output.json()) {
            output.line(output.painted(Style::bold, printable(application.saved->name)) + ": " +
                        headline(application));
        }
        printReopening(output, *application.saved, application.reopening);
        for (const WindowPlan& window : application.windows) {
            if (output.json()) {
                printJson(output, application, window, plan.desktops);
            } else {
                printWindow(output, application, window, plan.desktops);
            }
        }
    }
}

}  // namespace quillo::ctl
