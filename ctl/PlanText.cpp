#include "ctl/PlanText.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include "ctl/ChangeText.hpp"
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

/// Why no live window is named, or why the one that is stays as it is. Before a launch no window's absence is
/// a verdict: it is yet to come.
std::string openQuestion(const PlannedApplication& application, const WindowPlan& plan,
                         std::string_view notInstalled) {
    if (application.presence == Presence::missing) return fmt::format("skipped: {}", notInstalled);
    if (application.presence == Presence::installed) return "placed once the application is launched";
    const Prospect prospect = Restore::prospectOf(application, plan);
    if (prospect == Prospect::skipped)
        return "skipped: " + (plan.skipReason.empty() ? "no display is attached" : plan.skipReason);
    if (prospect != Prospect::awaited) return "";
    if (application.hangs) return "the application does not answer at the moment";
    const ReopeningPlan& reopening = application.reopening;
    if (application.live.empty() && reopening.askedForWindow)
        return "the application is asked for a window first";
    return reopening.documents.open.empty() && reopening.steps.empty()
               ? "placed if the application opens another window when asked"
               : "placed once what is opened has its window";
}

void printWindow(Output& output, const RestorePreview& preview, const PlannedApplication& application,
                 const WindowPlan& plan, std::string_view notInstalled) {
    const DesktopPlan& desktops = preview.desktops;
    output.line("  " + windowLabel(application.saved->windows[static_cast<std::size_t>(plan.savedIndex)]));
    const auto detail = [&output](const std::string& text) { output.line("      " + text); };
    if (const LiveWindowInfo* live = liveWindow(application, plan)) {
        detail(fmt::format("window  {}", printable(live->title.value_or("Untitled"))));
        detail(fmt::format("why     {} (score {:.2f}, {} confidence)",
                           fmt::join(reasons(plan.evidence), ", "), plan.score, confidence(plan)));
        if (Restore::prospectOf(application, plan) != Prospect::skipped)
            detail("change  " + changeText(Restore::changeOf(preview, application, plan)));
    }
    if (const std::string question = openQuestion(application, plan, notInstalled); !question.empty())
        detail(output.painted(Style::warning, question));
    if (plan.placement) {
        const auto desktop = desktopText(desktops, plan);
        detail(fmt::format("where   {}{}, display {}{}", frameText(plan.placement->frame),
                           plan.placement->adjusted ? " (adjusted)" : "",
                           printable(plan.displayID.value_or("none")), desktop ? ", " + *desktop : ""));
    } else if (plan.liveIndex) {
        detail("where   nowhere: no display is attached");
    }
    if (plan.liveIndex && !plan.standsRight())
        detail(fmt::format("steps   {}", fmt::join(steps(plan, desktops), ", then ")));
}

std::string headline(const PlannedApplication& application, std::string_view notInstalled) {
    switch (application.presence) {
        case Presence::running:
            if (application.hangs) return "runs, does not answer";
            return "runs, " + counted(static_cast<std::int64_t>(application.live.size()), "window");
        case Presence::installed:
            return "would be launched";
        case Presence::missing:
            return std::string(notInstalled);
    }
    return "";
}

void printJson(Output& output, const RestorePreview& preview, const PlannedApplication& application,
               const WindowPlan& plan, std::string_view notInstalled) {
    const DesktopPlan& desktops = preview.desktops;
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
            .add("steps", plan.standsRight() ? std::vector<std::string>{} : steps(plan, desktops));
        if (Restore::prospectOf(application, plan) != Prospect::skipped)
            addChange(line, Restore::changeOf(preview, application, plan));
    }
    if (const std::string question = openQuestion(application, plan, notInstalled); !question.empty())
        line.add("reason", question);
    line.add("displayID", plan.displayID);
    addDesktop(line, desktops, plan);
    if (plan.placement) line.add("frame", plan.placement->frame).add("adjusted", plan.placement->adjusted);
    output.value(std::move(line));
}

}  // namespace

void printPlan(Output& output, const RestorePreview& plan, std::string_view notInstalled) {
    printDesktops(output, plan.desktops);
    for (const PlannedApplication& application : plan.applications) {
        if (!output.json()) {
            output.line(output.painted(Style::bold, printable(application.saved->name)) + ": " +
                        headline(application, notInstalled));
        }
        printReopening(output, *application.saved, application.reopening);
        for (const WindowPlan& window : application.windows) {
            if (output.json()) {
                printJson(output, plan, application, window, notInstalled);
            } else {
                printWindow(output, plan, application, window, notInstalled);
            }
        }
    }
}

void printPlanTotals(Output& output, std::string_view workspace, const PlanTotals& totals,
                     std::int64_t others) {
    const struct {
        std::string_view key;
        std::int64_t count;
        std::string text;
    } parts[] = {
        {"inPlace", totals.inPlace, fmt::format("{} in place", totals.inPlace)},
        {"changed", totals.changed, fmt::format("{} would change", totals.changed)},
        {"awaited", totals.awaited, fmt::format("{} yet to open", totals.awaited)},
        {"launched", totals.launched, counted(totals.launched, "launch", "launches")},
        {"createdDesktops", totals.createdDesktops, counted(totals.createdDesktops, "new desktop")},
        {"opened", totals.opened, fmt::format("{} reopened", totals.opened)},
        {"others", others, counted(others, "other application")},
        {"skipped", totals.skipped, fmt::format("{} skipped", totals.skipped)},
        {"failed", totals.failed, fmt::format("{} would fail", totals.failed)},
    };
    JsonLine line;
    line.add("status", "planned");
    std::string text;
    for (const auto& part : parts) {
        line.add(part.key, part.count);
        if (text.empty() || part.count > 0) text += (text.empty() ? "" : " · ") + part.text;
    }
    if (output.json()) {
        output.value(std::move(line));
    } else {
        output.line(output.painted(Style::bold, printable(workspace)) + ": " + text);
    }
}

}  // namespace quillo::ctl
