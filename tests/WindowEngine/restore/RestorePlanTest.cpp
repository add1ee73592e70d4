#include <gtest/gtest.h>

#include "WindowEngine/restore/RestorePlan.hpp"
#include "WindowEngine/restore/RestoreWords.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo {
namespace {

const std::vector<DisplaySnapshot> displays{samples::display("A", {0, 0, 1000, 800}, true),
                                            samples::display("B", {1000, 0, 1000, 800})};
constexpr Rect onA{100, 100, 400, 300}, onB{1100, 100, 400, 300}, nowhere{9000, 9000, 1, 1};

TEST(RestorePlan, AFullScreenWindowIsPlacedOnlyWhereItsDisplayIsAnother) {
    WindowSnapshot saved = samples::window(onA, "Notes");
    saved.displayID = "A";
    saved.isFullscreen = true;
    const struct {
        Rect frame;
        bool fullscreen, minimized, leaves, placed;
    } cases[] = {{nowhere, true, false, false, false},  // seen on no display: only confirmed
                 {onA, false, false, false, false},    {onA, false, true, false, false},  // only shown
                 {onA, true, true, false, false},      {onB, false, true, false, true},
                 {onB, true, false, true, true}};
    for (const auto& c : cases) {
        LiveWindowInfo live = samples::live(c.frame, "Notes");
        live.isFullscreen = c.fullscreen;
        live.isMinimized = c.minimized;
        const WindowPlan plan = planPair(saved, live, displays, displays);
        EXPECT_TRUE(plan.enterFullscreen && plan.leaveFullscreen == c.leaves && plan.write == c.placed &&
                    plan.unminimize == c.minimized);
        EXPECT_EQ(plan.score, WindowMatcher::evidence(saved, live).score);
    }
}

TEST(RestorePlan, MovesAWindowThatStandsNotOnlyOnItsDesktop) {
    WindowSnapshot saved = samples::window(onA, "Notes");
    saved.desktop = DesktopSnapshot{"A", 0, {}};
    const DesktopTargets targets{{saved.desktop->id(), 7}};
    const std::pair<std::vector<SpaceID>, bool> cases[] = {
        {{7}, false}, {{8}, true}, {{7, 8}, true}, {{}, true}};  // one on all desktops; nobody knows
    for (const auto& [spaces, moves] : cases) {
        const WindowPlan plan = planPair(saved, samples::live(onA), displays, displays, targets, spaces);
        EXPECT_EQ(plan.moveToDesktop, moves) << testing::PrintToString(spaces);
    }
}

TEST(RestorePlan, TellsWhatItChangesOnAWindow) {
    WindowSnapshot saved = samples::window(onA, "Notes");
    saved.displayID = "A";
    saved.desktop = DesktopSnapshot{"A", 0, {}};
    const std::vector<NativeDesktop> desktops{{7, "A", 0, {}}, {8, "A", 1, {}}};
    const auto change = [&](const LiveWindowInfo& live, const std::vector<SpaceID>& spaces) {
        const DesktopTargets targets{{saved.desktop->id(), 7}};
        const WindowPlan plan = planPair(saved, live, displays, displays, targets, spaces);
        const WindowChange change = changeOf(plan, live, spaces, desktops);
        EXPECT_EQ(plan.standsRight(), change.none());
        return change;
    };
    EXPECT_TRUE(change(samples::live(onA), {7}).none());
    LiveWindowInfo away = samples::live(onB);
    away.isMinimized = away.isFullscreen = true;
    EXPECT_EQ(change(away, {8}), (WindowChange{.frame = FromTo{onB, onA},
                                               .minimized = FromTo{true, false},
                                               .fullscreen = FromTo{true, false},
                                               .desktop = FromTo<WindowChange::Desktop>{1, 0}}));
    EXPECT_EQ(change(samples::live(onA), {7, 8}).desktop, (FromTo<WindowChange::Desktop>{{}, 0}));
}

TEST(RestorePlan, SaysWhyAWindowHasNoPartner) {
    const std::vector saved{samples::window(onA, "Notes"), samples::window(onB, "Mail")};
    for (const WindowPlan& plan : planWindows(saved, {}, displays, displays)) {
        EXPECT_EQ(plan.skipReason,
                  "no accessible windows appeared; windows in other Spaces may be unavailable");
        EXPECT_FALSE(plan.write || plan.enterFullscreen);
    }
    const auto plans = planWindows(saved, {{samples::live(onB, "Mail")}}, displays, displays);
    ASSERT_EQ(plans.size(), 2u);
    EXPECT_EQ(plans[0].skipReason, "no matching accessible window");
    EXPECT_EQ(plans[1].savedIndex, 1);
    EXPECT_EQ(plans[1].liveIndex, 0);
    EXPECT_EQ(plans[1].skipReason, "");
    EXPECT_TRUE(plans[1].write);
}

TEST(RestorePlan, PlansAlsoWithoutAnyDisplay) {
    WindowSnapshot saved = samples::window(onA, "Notes");
    saved.isFullscreen = true;
    const WindowPlan plan = planPair(saved, samples::live(onA, "Notes"), displays, {});
    EXPECT_FALSE(plan.placement || plan.displayID || plan.enterFullscreen);
}

TEST(RestoreReport, CountsItemsByStatus) {
    using R = RestoreReport;
    R report;
    for (const R::Status& status :
         std::vector<R::Status>{R::createdDesktops{2}, R::createdDesktops{1}, R::opened{4}, R::opened{3},
                                R::note{"n"}, R::skipped{"s"}, R::failed{"f"}, R::failed{"f"}, R::restored{},
                                R::restored{}, R::adjusted{}, R::launched{}})
        report.items.push_back({.app = "App", .bundleIdentifier = "org.app", .title = {}, .status = status});
    const R::Totals totals = report.totals();
    EXPECT_EQ((std::vector{totals.restored, totals.adjusted, totals.launched, totals.createdDesktops,
                           totals.opened, totals.skipped, totals.failed}),
              (std::vector<std::int64_t>{3, 1, 1, 3, 7, 1, 2}));
    EXPECT_EQ(
        restoreSummary(report, true),
        "3 restored (1 adjusted) · 3 desktops created · 1 launched · 7 reopened · 1 skipped · 2 failed");
    const std::pair<R::Status, const char*> worded[] = {
        {R::adjusted{}, "adjusted: back, but its place or size had to differ"},
        {R::createdDesktops{1}, "created 1 desktop"},
        {R::note{"Hidden"}, "Hidden"},
        {R::failed{""}, "failed: "},
    };
    for (const auto& [status, words] : worded) EXPECT_EQ(restoreWords(status), words);
}

}  // namespace
}  // namespace quillo
