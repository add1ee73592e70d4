#include "WindowEngine/restore/RestorePlan.hpp"

#include <algorithm>
#include <cmath>

#include "WindowEngine/desktop/Accessibility.hpp"
#include "WindowEngine/desktop/Displays.hpp"

namespace quillo {
namespace {

constexpr std::string_view noMatch = "no matching accessible window";

using DisplayMapper::DisplayList;

void planFullscreen(WindowPlan& plan, const WindowSnapshot& saved, const LiveWindowInfo& live,
                    const DisplaySnapshot& target, DisplayList current) {
    const DisplaySnapshot* display = Displays::display(live.frame, current);
    const bool there = display && display->id == target.id;
    plan.enterFullscreen = true;
    // In place already (or nobody can tell where): full screen is only confirmed.
    const bool fillsIt = live.isFullscreen && (!display || there);
    plan.unminimize = live.isMinimized && !(fillsIt && saved.isMinimized);
    if (fillsIt) return;
    plan.leaveFullscreen = live.isFullscreen;
    // On its display it keeps the size that it will have once it leaves full screen.
    plan.write = !there;
}

/// What stands right is left alone: a write would unroll it, or end its being maximized.
void planPlain(WindowPlan& plan, const WindowSnapshot& saved, const LiveWindowInfo& live) {
    plan.leaveFullscreen = live.isFullscreen;
    plan.unminimize = live.isMinimized && !saved.isMinimized;
    plan.minimized = saved.isMinimized;
    plan.write = live.isFullscreen || live.isMinimized != saved.isMinimized || !plan.placement ||
                 !standsAt(live.frame, plan.placement->frame);
}

WindowPlan unmatched(std::int64_t savedIndex, std::string_view reason) {
    WindowPlan plan;
    plan.savedIndex = savedIndex;
    plan.skipReason = reason;
    return plan;
}

WindowChange::Desktop numberOf(SpaceID space, std::span<const NativeDesktop> desktops) {
    const auto found = std::ranges::find(desktops, space, &NativeDesktop::id);
    return found == desktops.end() ? std::nullopt : std::optional(found->index);
}

std::optional<FromTo<bool>> stepTo(bool wanted, bool now) {
    if (wanted == now) return std::nullopt;
    return FromTo<bool>{now, wanted};
}

}  // namespace

std::vector<WindowSnapshot> asPlaced(std::span<const WindowSnapshot> saved, DisplayList savedDisplays,
                                     DisplayList currentDisplays) {
    std::vector<WindowSnapshot> placed(saved.begin(), saved.end());
    for (WindowSnapshot& window : placed) {
        if (const auto placement = DisplayMapper::place(window, savedDisplays, currentDisplays))
            window.frame = placement->frame;
    }
    return placed;
}

bool standsAt(const Rect& frame, const Rect& wanted) {
    constexpr auto near = [](double a, double b) {
        return std::abs(a - b) <= Accessibility::positionTolerance;
    };
    return near(frame.x, wanted.x) && near(frame.y, wanted.y) && near(frame.width, wanted.width) &&
           near(frame.height, wanted.height);
}

bool WindowPlan::standsRight() const {
    const bool calls = leaveFullscreen || unminimize || write || moveToDesktop;
    return liveIndex && displayID && skipReason.empty() && !calls;
}

WindowChange changeOf(const WindowPlan& plan, const LiveWindowInfo& live, std::span<const SpaceID> liveSpaces,
                      std::span<const NativeDesktop> desktops) {
    WindowChange change;
    if (plan.write && plan.placement && !standsAt(live.frame, plan.placement->frame))
        change.frame = {live.frame, plan.placement->frame};
    if (plan.write || plan.unminimize) change.minimized = stepTo(plan.minimized, live.isMinimized);
    change.fullscreen = stepTo(plan.enterFullscreen, live.isFullscreen);
    if (!plan.moveToDesktop) return change;
    const auto from = liveSpaces.size() == 1 ? numberOf(liveSpaces.front(), desktops) : std::nullopt;
    change.desktop = {from, numberOf(*plan.desktop, desktops)};
    return change;
}

WindowPlan planPair(const WindowSnapshot& saved, const LiveWindowInfo& live, DisplayList savedDisplays,
                    DisplayList currentDisplays, const DesktopTargets& desktops,
                    std::span<const SpaceID> liveSpaces, DisplayMapper::Edges edges) {
    WindowPlan plan;
    plan.liveIndex = 0;
    plan.evidence = WindowMatcher::evidence(saved, live);
    plan.score = plan.evidence.score;
    plan.placement = DisplayMapper::place(saved, savedDisplays, currentDisplays, edges);
    const DisplaySnapshot* target =
        DisplayMapper::targetDisplay(saved.displayID, savedDisplays, currentDisplays);
    if (target) plan.displayID = target->id;
    plan.desktop = targetDesktop(saved, desktops);
    plan.moveToDesktop = plan.desktop && !(liveSpaces.size() == 1 && liveSpaces.front() == *plan.desktop);
    if (!saved.isFullscreen) {
        planPlain(plan, saved, live);
    } else if (target) {
        planFullscreen(plan, saved, live, *target, currentDisplays);
    }
    return plan;
}

std::vector<WindowPlan> planWindows(std::span<const WindowSnapshot> saved,
                                    std::span<const LiveWindowInfo> live, DisplayList savedDisplays,
                                    DisplayList currentDisplays, const DesktopTargets& desktops,
                                    std::span<const std::vector<SpaceID>> liveSpaces,
                                    std::string_view noWindows) {
    std::vector<WindowPlan> plans;
    for (std::size_t i = 0; i < saved.size(); ++i)
        plans.push_back(unmatched(static_cast<std::int64_t>(i), live.empty() ? noWindows : noMatch));
    const std::vector<WindowSnapshot> placed = asPlaced(saved, savedDisplays, currentDisplays);
    for (const WindowMatcher::Match& match : WindowMatcher::match(placed, live)) {
        const auto savedIndex = static_cast<std::size_t>(match.savedIndex);
        const auto liveIndex = static_cast<std::size_t>(match.liveIndex);
        const auto spaces =
            liveSpaces.empty() ? std::span<const SpaceID>{} : std::span(liveSpaces[liveIndex]);
        WindowPlan plan =
            planPair(saved[savedIndex], live[liveIndex], savedDisplays, currentDisplays, desktops, spaces);
        plan.savedIndex = match.savedIndex;
        plan.liveIndex = match.liveIndex;
        plan.evidence = WindowMatcher::evidence(placed[savedIndex], live[liveIndex]);
        plan.score = match.score;
        plans[savedIndex] = std::move(plan);
    }
    return plans;
}

}  // namespace quillo
