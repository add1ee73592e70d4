// Windows that turn up after a restore: which are placed, when, and which are left alone.
#include <gtest/gtest.h>

#include "WindowEngine/restore/LateWindows.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo::samples {
namespace {

using Texts = std::vector<std::string>;

constexpr Rect first{100, 100, 600, 400}, second{700, 300, 500, 500}, opened{40, 60, 400, 300},
    dragged{300, 200, 400, 300};
constexpr const char* kept = "skipped it was moved before it could be placed, and stays there";

/// "One" is there, and "Two" was saved with it.
struct Awaiting : TestDesktop {
    Awaiting() : TestDesktop(scene({sceneApplication("org.a", {sceneWindow("One", first)})})) {
        WorkspaceSnapshot saved = capture();
        saved.applications.front().windows.push_back(savedWindow(*this, second, "Two"));
        saved.applications.front().windows.back().index = 1;
        report = restore(saved, {.late = &late});
        late.runEnded(5min);
    }
    simulated::Window& open(const SceneWindow& window) {
        return world().openWindow(*world().application("org.a"), window);
    }
    Texts told() const {
        Texts texts;
        for (const RestoreReport::Item& item : came) texts.push_back(text(item.status));
        return texts;
    }

    RestoreReport report;
    std::vector<RestoreReport::Item> came;
    Restore::LateWindows late{access, [this](const RestoreReport::Item& item) { came.push_back(item); }};
    Job<void> placing{executor(), late.place()};
};

TEST(LateWindows, OneThatWasMissingIsPlacedAndNobodyElsesIsTouched) {
    using Act = void (*)(Awaiting&, WindowNumber);
    const auto nothing = [](Awaiting&, WindowNumber) {};
    const auto itself = [](Awaiting& desktop, WindowNumber window) {
        desktop.executor().runFor(100ms);
        desktop.world().move(*desktop.world().window(window), dragged);
    };
    const auto titled = [](Awaiting& desktop, WindowNumber window) {
        desktop.executor().runFor(3s);
        desktop.world().window(window)->state.title = "Two";
    };
    const auto draggedAndTitled = [](Awaiting& desktop, WindowNumber window) {
        desktop.executor().runFor(2s);
        desktop.world().move(*desktop.world().window(window), dragged);
        desktop.executor().runFor(2s);
        desktop.world().window(window)->state.title = "Two";
    };
    const auto draggedAbout = [](Awaiting& desktop, WindowNumber window) {
        for (double x = 0; x <= 300; x += 10) {
            desktop.executor().runFor(50ms);
            desktop.world().move(*desktop.world().window(window), {x, 200, 400, 300});
        }
    };
    const auto draggedMeanwhile = [](Awaiting& desktop, WindowNumber) {
        desktop.meddler.frameWritten = [](Rect) { return dragged; };
    };
    struct Case {
        const char* what;
        const char* title;
        Duration after;
        Act act;
        Rect frame;
        Texts told;
        std::int64_t awaited;
    };
    const Case cases[] = {
        {"as it should be", "Two", 60s, nothing, second, {"restored"}, 0},
        {"it moves itself as it opens", "Two", 60s, itself, second, {"restored"}, 0},
        {"it gets its title late", "Loading", 60s, titled, second, {"restored"}, 0},
        {"it is dragged away and titled then", "Loading", 60s, draggedAndTitled, dragged, {}, 1},
        {"it is dragged as soon as it opens", "Two", 60s, draggedAbout, dragged, {kept}, 0},
        {"it is dragged while it is placed", "Two", 60s, draggedMeanwhile, dragged, {kept}, 0},
        {"another one", "Else", 60s, nothing, opened, {}, 1},
        {"too late", "Two", 6min, nothing, opened, {}, 1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Awaiting desktop;
        EXPECT_EQ(texts(desktop.report).back(), "org.a/Two: skipped no matching accessible window");
        EXPECT_EQ(desktop.late.awaited(), 1);
        desktop.executor().runFor(c.after);
        const WindowNumber window = desktop.open(sceneWindow(c.title, opened)).number;
        c.act(desktop, window);
        desktop.executor().runFor(5s);
        EXPECT_EQ(desktop.world().window(window)->state.frame, c.frame);
        EXPECT_EQ(desktop.world().window("org.a", "One")->state.frame, first);
        EXPECT_EQ(desktop.told(), c.told);
        EXPECT_EQ(desktop.late.awaited(), c.awaited);
        EXPECT_TRUE(desktop.meddler.raised.empty()) << "it took the keyboard";
        desktop.executor().runFor(6min);
        EXPECT_TRUE(desktop.placing.done());
        // Placed once: what becomes of it from now on is its person's.
        desktop.world().move(*desktop.world().window(window), dragged);
        desktop.executor().runFor(1min);
        EXPECT_EQ(desktop.world().window(window)->state.frame, dragged);
    }
}

TEST(LateWindows, WhatItPlacedTakesThePlaceOfWhatTheRunSaid) {
    Awaiting desktop;
    desktop.executor().runFor(10s);
    desktop.open(sceneWindow("Two", opened));
    desktop.executor().runFor(5s);
    ASSERT_EQ(desktop.came.size(), 1U);
    EXPECT_GT(desktop.came.front().late, 10);
    const Uuid before = desktop.report.items.back().id;
    desktop.report.amend(desktop.came.front());
    EXPECT_TRUE(desktop.report.clean());
    EXPECT_EQ(desktop.report.items.size(), 2U);
    EXPECT_EQ(desktop.report.items.back().id, before);
}

/// A minimized one is not shown, for that would take the keyboard.
TEST(LateWindows, NoneIsShownForIt) {
    Awaiting desktop;
    SceneWindow minimized = sceneWindow("Two", opened);
    minimized.minimized = true;
    const WindowNumber window = desktop.open(minimized).number;
    desktop.executor().runFor(5s);
    EXPECT_TRUE(desktop.world().window(window)->state.minimized);
    EXPECT_EQ(desktop.told().size(), 1U);
    EXPECT_EQ(desktop.late.awaited(), 0);
}

/// An application that is slower than the run's patience: its first window is one of those saved, whatever it
/// says, also where it was dragged away. It comes while the run still goes on, or after it.
TEST(LateWindows, TheFirstOnesOfALaunchNeedNoTitle) {
    for (const auto& [seconds, isDragged] : {std::pair(20.0, false), {60.0, false}, {60.0, true}}) {
        SceneApplication slow = notRunning(sceneApplication("org.slow", {sceneWindow("Untitled", opened)}));
        TestDesktop desktop(scene({slow}));
        desktop.world().add(fault(FaultKind::lateWindows, "org.slow", 0, seconds));
        WorkspaceSnapshot saved = desktop.capture();
        saved.applications.push_back(
            {"org.slow", "org.slow", {}, {savedWindow(desktop, second, "Report")}, {}});
        Texts told;
        Restore::LateWindows late(
            desktop.access, [&told](const RestoreReport::Item& item) { told.push_back(text(item.status)); });
        Job<void> placing(desktop.executor(), late.place());
        desktop.restore(saved, {.late = &late});
        late.runEnded(5min);
        const auto window = [&desktop] { return desktop.world().window("org.slow", "Untitled"); };
        desktop.executor().runUntil([&] { return window() != nullptr; }, 90s);
        desktop.executor().runFor(1s);
        if (isDragged) desktop.world().move(*window(), dragged);
        desktop.executor().runFor(90s);
        EXPECT_EQ(window()->state.frame, isDragged ? dragged : second) << seconds;
        EXPECT_EQ(told, Texts{isDragged ? kept : "restored"}) << seconds;
    }
}

}  // namespace
}  // namespace quillo::samples
