#include <gtest/gtest.h>

#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo::samples {
namespace {

constexpr Rect frame{100, 100, 400, 300};

std::vector<std::string> titles(const std::vector<LiveWindow>& windows) {
    std::vector<std::string> result;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        EXPECT_EQ(windows[i].info.index, static_cast<std::int64_t>(i)) << "indices are dense";
        result.push_back(windows[i].info.title.value_or("-"));
    }
    return result;
}

using Titles = std::vector<std::string>;

TEST(Accessibility, ReadsWindowsThatPeopleSee) {
    SceneApplication application = sceneApplication("org.a");
    const auto add = [&](std::string title, Rect at) -> SceneWindow& {
        return application.windows.emplace_back(sceneWindow(std::move(title), at));
    };
    add("one point wide", {0, 0, 1, 50});
    add("thin", {5, 6, 1.5, 1.5});
    add("flat", {0, 0, 50, 1});
    add("panel", frame).subrole = "AXFloatingWindow";
    add("dialog", frame).subrole = "AXDialog";
    add("", frame).document = "file:///notes.txt";
    SceneWindow& small = add("minimized", frame);
    small.minimized = true;
    small.document = "no address at all";
    add("full", frame).fullscreen = true;
    TestDesktop desktop(scene({application}));

    const auto windows = desktop.windows("org.a");
    ASSERT_EQ(titles(windows), (Titles{"thin", "dialog", "-", "minimized", "full"}));
    EXPECT_EQ(windows[0].info.frame, (Rect{5, 6, 1.5, 1.5}));
    EXPECT_EQ(windows[1].info.subrole, "AXDialog");
    EXPECT_EQ(windows[2].info.documentURL, Url::parse("file:///notes.txt"));
    EXPECT_FALSE(windows[0].info.documentURL || windows[0].info.isMinimized || windows[0].info.isFullscreen);
    EXPECT_TRUE(windows[3].info.isMinimized);
    EXPECT_TRUE(windows[4].info.isFullscreen);
    EXPECT_EQ(windows[4].info.frame, mainFrame);
    EXPECT_TRUE(windows[4].windowID);
    EXPECT_EQ(desktop.meddler.reads, 2) << "the list, then all windows at once";
}

TEST(Accessibility, KeepsHandlesOfWindowsThatAreNoLongerListed) {
    TestDesktop desktop(
        scene({sceneApplication("org.a", {sceneWindow("1", frame), sceneWindow("2", frame)})}));
    EXPECT_EQ(titles(desktop.windows("org.a")), (Titles{"1", "2"}));
    desktop.world().window("org.a", "1")->state.listed = false;
    EXPECT_EQ(titles(desktop.windows("org.a")), (Titles{"2", "1"})) << "listed ones first, each once";
    desktop.world().close(desktop.world().window("org.a", "2")->number);
    EXPECT_EQ(titles(desktop.windows("org.a")), Titles{"1"});

    // The same process, launched at another time: another application under a reused number.
    auto& entry = desktop.handles.entries.at(desktop.pid("org.a"));
    *entry.launchedAt += 1s;
    EXPECT_EQ(titles(desktop.windows("org.a")), Titles{});

    desktop.world().end(*desktop.world().application("org.a"));
    (void)Accessibility::enumerate(desktop.access, {}, false);
    EXPECT_TRUE(desktop.handles.entries.empty()) << "an application that ended leaves no handles";
}

TEST(Accessibility, FindsHiddenWindowsByTokens) {
    struct Case {
        const char* what;
        bool hidden, recover, tokens;
        Duration tokenCost;
        Titles found;
        bool tried;
    };
    const Case cases[] = {
        {"found", true, true, true, 0s, {"shown", "hidden"}, true},
        {"not asked for", true, false, true, 0s, {"shown"}, false},
        {"nothing hidden", false, true, true, 0s, {"shown", "hidden"}, false},
        {"no such thing as tokens", true, true, false, 0s, {"shown"}, false},
        {"out of time", true, true, true, 25ms, {"shown"}, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SceneApplication application =
            sceneApplication("org.a", {sceneWindow("shown", frame), sceneWindow("hidden", frame)});
        application.windows[1].listed = !c.hidden;
        TestDesktop desktop(scene({application}));
        desktop.meddler.tokens = c.tokens;
        desktop.meddler.tokenCost = c.tokenCost;
        EXPECT_EQ(titles(desktop.windows("org.a", c.recover)), c.found);
        EXPECT_EQ(desktop.meddler.tokensTried > 0, c.tried);
        EXPECT_LT(desktop.meddler.tokensTried, 1000) << "the walk ends with the last window found";
        EXPECT_LT(desktop.seconds(), 0.3) << "the walk has a deadline";
    }
}

TEST(Accessibility, OnlyOrdinaryWindowsOfTheProcessAreHiddenOnes) {
    SceneApplication application = sceneApplication("org.a");
    for (const char* title : {"known", "hidden", "thin", "panel"})
        application.windows.push_back(sceneWindow(title, frame));
    application.windows[2].frame.width = 1;
    application.windows[3].subrole = "AXFloatingWindow";
    TestDesktop desktop(scene({application, sceneApplication("org.b", {sceneWindow("other's", frame)})}));
    const auto known = desktop.world().window("org.a", "known")->number;
    const auto hidden = desktop.world().window("org.a", "hidden")->number;
    EXPECT_EQ(Accessibility::hiddenWindows(desktop.access, desktop.pid("org.a"), {known}),
              (std::vector<HiddenWindowCandidate>{{hidden, frame, false}}));
}

TEST(Accessibility, AnApplicationThatHangsCostsItsTimeoutOnce) {
    TestDesktop desktop(
        scene({sceneApplication("org.hung", {sceneWindow("1", frame), sceneWindow("2", frame)}),
               sceneApplication("org.fine", {sceneWindow("3", frame)})}));
    const std::array pids{desktop.pid("org.hung"), desktop.pid("org.fine")};
    (void)Accessibility::enumerate(desktop.access, pids, false);
    desktop.world().add(fault(FaultKind::applicationHangs, "org.hung", 0, 5));

    const auto look = [&](double cost) {
        const double before = desktop.seconds();
        const auto seen = Accessibility::enumerate(desktop.access, pids, true);
        EXPECT_NEAR(desktop.seconds() - before, cost, 0.001);
        EXPECT_EQ(titles(seen[1].windows), cost < 1 ? Titles{"3"} : Titles{}) << "one timeout at a time";
        return seen[0];
    };
    EXPECT_TRUE(look(1).timedOut);
    const LiveWindow window{*desktop.handles.entries[pids[0]].elements.begin(), pids[0], {}, {}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(look(0).timedOut) << "it rests";
        EXPECT_EQ(Accessibility::set(desktop.access, window, frame, true), WindowMutationResult{});
        EXPECT_FALSE(Accessibility::setFullscreen(desktop.access, window, true));
    }
    desktop.executor().runFor(2s);
    EXPECT_TRUE(look(1).timedOut) << "asked again, in vain";
    desktop.executor().runFor(3s);
    EXPECT_TRUE(look(0).timedOut) << "the next rest is longer";
    desktop.executor().runFor(1s);
    EXPECT_EQ(titles(look(0).windows), (Titles{"1", "2"})) << "it answers again";
}

TEST(Accessibility, RestsGrowWithEachTimeoutAndNotWithEachRequest) {
    UnresponsiveApplications applications;
    TimePoint now{};
    for (const Duration rest : {2s, 4s, 4s}) {
        for (int request = 0; request < 3; ++request) applications.timedOut(7, now);
        EXPECT_TRUE(applications.resting(7, now + rest - 1ms));
        EXPECT_FALSE(applications.resting(7, now + rest));
        EXPECT_FALSE(applications.resting(8, now));
        now += rest;
    }
}

TEST(Accessibility, VerifiesAWriteByReadingItBack) {
    struct Case {
        const char* what;
        double shift;
        std::optional<FaultKind> fault;
        WindowMutationResult result;
        double seconds;
    };
    const Rect target{300, 200, 800, 600};
    const Case cases[] = {
        {"as asked", 0, {}, {true, true, true}, 0},
        {"moved a little by the application", 1.5, {}, {true, true, true}, 0},
        {"moved away by the application", 2.5, {}, {false, true, true}, 3},
        {"refused", 0, FaultKind::moveRefused, {false, true, true}, 0},
        {"accepted and not done", 0, FaultKind::moveIgnored, {false, true, true}, 3},
        {"kept smaller", 0, FaultKind::sizeClamped, {true, false, true}, 0},
        {"minimizing refused", 0, FaultKind::minimizeRefused, {true, true, false}, 0},
        {"meets a hang", 0, FaultKind::applicationHangs, {}, 1},
        {"minimizing not done", 0, FaultKind::minimizeIgnored, {true, true, false}, 3},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", frame)})}));
        const LiveWindow window = desktop.window("org.a");
        if (c.fault) desktop.world().add(fault(*c.fault));
        desktop.meddler.frameWritten = [&](Rect asked) {
            asked.x += c.shift;
            return asked;
        };
        const bool minimized = !c.result.minimizedSet;
        EXPECT_EQ(desktop.run(Accessibility::setAndWait(desktop.access, window, target, minimized)),
                  c.result);
        EXPECT_NEAR(desktop.seconds(), c.seconds, 0.1);
    }
}

TEST(Accessibility, AVerificationEndsAtItsDeadlineByTheLastReading) {
    TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", frame)})}));
    desktop.world().add(fault(FaultKind::moveIgnored));
    Job<WindowMutationResult> job(
        desktop.executor(),
        Accessibility::setAndWait(desktop.access, desktop.window("org.a"), {9, 9, 90, 90}, false));
    desktop.executor().runFor(1s);
    desktop.world().close(desktop.world().window("org.a", "1")->number);
    desktop.executor().runUntilIdle();
    EXPECT_EQ(job.result(), WindowMutationResult{}) << "a window that is gone was set in no part";

    const Rect nonsense{std::numeric_limits<double>::quiet_NaN(), 0, 10, 10};
    EXPECT_EQ(
        Accessibility::set(desktop.access, LiveWindow{desktop.plain.accessibility.application(1), 1, {}, {}},
                           nonsense, false),
        WindowMutationResult{});
}

TEST(Accessibility, WritesTheMinimizedStateOnlyWhereItDiffers) {
    SceneApplication application = sceneApplication("org.a", {sceneWindow("1", frame)});
    application.windows[0].minimized = true;
    TestDesktop desktop(scene({application}));
    const LiveWindow window = desktop.window("org.a");
    EXPECT_TRUE(Accessibility::setMinimized(desktop.access, window, true));
    EXPECT_EQ(desktop.meddler.minimizeWrites, 0);
    EXPECT_TRUE(Accessibility::set(desktop.access, window, {10, 40, 200, 200}, true).minimizedSet);
    EXPECT_EQ(desktop.meddler.minimizeWrites, 2) << "restored for the move, and minimized again";
    EXPECT_EQ(desktop.window("org.a").info.frame, (Rect{10, 40, 200, 200}));
    EXPECT_TRUE(desktop.window("org.a").info.isMinimized);
}

TEST(Accessibility, UnminimizingTakesThreeReadingsThatAgree) {
    struct Case {
        const char* readings;  // m minimized, n not, - unreadable; the last one for ever
        bool done;
        double seconds;
    };
    for (const Case& c : {Case{"n", true, 0.2}, Case{"mmnnn", true, 0.4}, Case{"nnmnnn", true, 0.5},
                          Case{"nn-nnn", true, 0.5}, Case{"m", false, 3}}) {
        SCOPED_TRACE(c.readings);
        TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", frame)})}));
        const LiveWindow window = desktop.window("org.a");
        const std::string_view readings = c.readings;
        std::size_t read = 0;
        desktop.meddler.afterRead = [&](auto, Meddler::Answers& answers) {
            const char reading = readings[std::min(read++, readings.size() - 1)];
            answers[0][0] = reading == '-' ? Attribute(std::unexpected(AttributeMiss{})) : reading == 'm';
        };
        EXPECT_EQ(desktop.run(Accessibility::unminimizeAndWait(desktop.access, window)), c.done);
        EXPECT_NEAR(desktop.seconds(), c.seconds, 0.05);
    }
}

}  // namespace
}  // namespace quillo::samples
