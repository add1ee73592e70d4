// Moving and changing real windows under a real window manager, from every state they may be in.
#include <cmath>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/restore/Restore.hpp"
#include "tests/platform/x11/X11Test.hpp"

namespace quillo::x11test {
namespace {

class WindowWritesTest : public X11Test {
  protected:
    /// What placement does with one window.
    LiveWindow place(const LiveWindow& window, const Rect& frame) {
        EXPECT_TRUE(run(ax().makeMovable(window.element)));
        const auto written = ax().writeFrame(window.element, frame);
        EXPECT_TRUE(written.positionSet && written.sizeSet);
        run(ax().settleInPlace(window.element));
        return reread(window);
    }

    void expectNear(const Rect& actual, const Rect& wanted, const std::string& what) {
        const Rect off{actual.x - wanted.x, actual.y - wanted.y, actual.width - wanted.width,
                       actual.height - wanted.height};
        EXPECT_TRUE(std::abs(off.x) <= 2 && std::abs(off.y) <= 2 && std::abs(off.width) <= 2 &&
                    std::abs(off.height) <= 2)
            << what << " is off by " << off.x << "," << off.y << " " << off.width << "x" << off.height;
    }

    bool minimize(const LiveWindow& window, bool value) {
        return bool(ax().write(window.element, ax::minimized, value)) &&
               eventually([&] { return reread(window).info.isMinimized == value; }, std::chrono::seconds(3));
    }

    bool sendTo(const LiveWindow& window, SpaceID space) {
        return desktop->windowServer.moveWindow(*window.windowID, space).has_value() &&
               eventually([&] { return desktopsOf(window) == std::set{space}; }, std::chrono::seconds(3));
    }

    void setState(const LiveWindow& window, const std::string& change) {
        sharedDesktop().run({"wmctrl", "-i", "-r", std::to_string(*window.windowID), "-b", change});
    }

    void maximize(const LiveWindow& window) {
        const auto before = window.info.frame;
        setState(window, "add,maximized_vert,maximized_horz");
        EXPECT_TRUE(eventually([&] { return reread(window).info.frame.width > before.width; }));
    }
};

constexpr Rect target{310, 220, 500, 400};

TEST_F(WindowWritesTest, AWindowIsMovedFromEveryState) {
    struct Case {
        std::string name;
        bool maximized, minimized, elsewhere, shaded = false;
        std::vector<std::string> options{};
    };
    for (const auto& [name, maximized, minimized, elsewhere, shaded, options] :
         {Case{"plain", false, false, false}, Case{"maximized", true, false, false},
          Case{"minimized", false, true, false}, Case{"maximized, minimized", true, true, false},
          Case{"elsewhere", false, false, true}, Case{"maximized elsewhere", true, false, true},
          Case{"minimized elsewhere", false, true, true}, Case{"all at once", true, true, true},
          Case{"shaded", false, false, false, true},
          Case{"with a shadow", false, false, false, false, {"--shadow", "16,16,10,32"}}}) {
        const auto window = openWindow(name, options);
        if (maximized) maximize(window);
        if (shaded) {
            setState(window, "add,shaded");
            EXPECT_FALSE(reread(window).info.isMinimized) << "rolled up is not minimized";
        }
        if (minimized) EXPECT_TRUE(minimize(window, true)) << name;
        if (elsewhere) EXPECT_TRUE(sendTo(window, 3)) << name;
        const auto after = place(window, target);
        expectNear(after.info.frame, target, name);
        EXPECT_FALSE(after.info.isMinimized) << name;
        EXPECT_EQ(desktopsOf(after), (std::set<SpaceID>{elsewhere ? 3u : 1u})) << name;
        EXPECT_EQ(sharedDesktop().run({"sh", "-c", "test $(xdotool get_desktop) = 0"}), 0)
            << "the person was taken to another desktop: " << name;
        clients.clear();
    }
}

TEST_F(WindowWritesTest, ARestoreLeavesWhatStandsRightAloneAndMaximizesWhatWasMaximized) {
    const auto maximized = openWindow("maximized"), shaded = openWindow("shaded");
    const auto before = place(maximized, target).info.frame;
    maximize(maximized);
    const auto area = reread(maximized).info.frame;
    setState(shaded, "add,shaded");
    const auto holds = [](const LiveWindow& window, const std::string& state) {
        const std::string number = std::to_string(*window.windowID);
        return sharedDesktop().run(
                   {"sh", "-c", "xprop -id " + number + " _NET_WM_STATE | grep -q " + state}) == 0;
    };
    ASSERT_TRUE(eventually([&] { return holds(shaded, "SHADED"); }));
    WindowHandleCache cache;
    DesktopAccess access{*desktop, cache};
    Workspace workspace;
    workspace.snapshot = run(Capture::snapshot(access, {}));
    const auto restored = [&] { return run(Restore::run(access, workspace, {}, {})).totals().restored; };
    EXPECT_EQ(restored(), 2);
    EXPECT_TRUE(holds(shaded, "SHADED"));
    EXPECT_TRUE(holds(maximized, "MAXIMIZED_VERT"));

    setState(maximized, "remove,maximized_vert,maximized_horz");
    ASSERT_TRUE(eventually([&] { return reread(maximized).info.frame == before; }));
    EXPECT_EQ(restored(), 2);
    EXPECT_EQ(reread(maximized).info.frame, area);
    EXPECT_TRUE(holds(maximized, "MAXIMIZED_HORZ"));
    setState(maximized, "remove,maximized_vert,maximized_horz");
    EXPECT_TRUE(eventually([&] { return reread(maximized).info.frame == before; })) << "as before";
}

TEST_F(WindowWritesTest, SizeHintsAdjustTheSizeAndNotThePosition) {
    const auto cells = openWindow("cells", {"--increments", "20,70"});
    const auto plainFrame = openWindow("plain").info.frame;
    const double barHeight = plainFrame.height - 200, barWidth = plainFrame.width - 300;
    auto after = place(cells, target).info.frame;
    EXPECT_EQ(after.origin(), target.origin());
    EXPECT_LE(after.width, target.width);
    EXPECT_GT(after.width, target.width - 70);
    if (!windowManagerIs("xfwm4")) EXPECT_EQ(std::fmod(after.width - barWidth - 20, 70), 0);

    const auto large = openWindow("large", {"--minimum", "600,500", "--geometry", "0,0,700,600"});
    after = place(large, target).info.frame;
    EXPECT_EQ(after.origin(), target.origin());
    EXPECT_EQ(after.size(), (Size{600 + barWidth, 500 + barHeight}));
}

TEST_F(WindowWritesTest, PositionAndSizeAlone) {
    const auto window = openWindow("halves");
    const auto size = window.info.frame.size();
    EXPECT_TRUE(ax().write(window.element, ax::position, Point{400, 300}));
    EXPECT_TRUE(
        eventually([&] { return reread(window).info.frame == Rect{400, 300, size.width, size.height}; }));
    EXPECT_TRUE(ax().write(window.element, ax::size, Size{450, 350}));
    EXPECT_TRUE(eventually([&] { return reread(window).info.frame == Rect{400, 300, 450, 350}; }));
    EXPECT_FALSE(ax().write(window.element, ax::title, std::string("renamed")));
}

TEST_F(WindowWritesTest, MinimizingOnAnotherDesktopLeavesThePersonWhereTheyAre) {
    const auto window = openWindow("away");
    openWindow("here");
    ASSERT_TRUE(sendTo(window, 2));
    EXPECT_FALSE(reread(window).info.isMinimized) << "another desktop is not the dock";
    EXPECT_TRUE(minimize(window, true));
    EXPECT_EQ(desktopsOf(window), std::set<SpaceID>{2});
    EXPECT_TRUE(minimize(window, false));
    EXPECT_EQ(desktopsOf(window), std::set<SpaceID>{2});
}

TEST_F(WindowWritesTest, AWaitHearsOfItsWindowOrOfTheDesktopAtOnce) {
    using namespace std::chrono_literals;
    const auto window = openWindow("watched");
    const struct {
        std::string what;
        bool ofWindow;
        std::function<void()> change;
    } cases[] = {{"frame", true, [&] { ax().writeFrame(window.element, {300, 200, 320, 240}); }},
                 {"state", true, [&] { ax().write(window.element, ax::minimized, true); }},
                 {"desktop", true, [&] { (void)desktop->windowServer.moveWindow(*window.windowID, 2); }},
                 {"windows", false, [&] { open({"--title", "another"}); }}};
    for (const auto& [what, ofWindow, change] : cases) {
        const auto changes = desktop->windowServer.watch(ofWindow ? window.windowID : std::nullopt);
        int news = 0;
        while (run(changes->next(300ms))) ASSERT_LT(++news, 50) << "it comes to rest";
        Job<bool> wait(executor, changes->next(15s));
        change();
        EXPECT_TRUE(executor.runUntil([&] { return wait.done(); }, 5s)) << what;
        EXPECT_TRUE(wait.result()) << what;
    }
    const auto changes = desktop->windowServer.watch(window.windowID);
    EXPECT_TRUE(sendTo(window, 1));
    EXPECT_TRUE(run(changes->next(15s))) << "what nobody waited for is not lost";
}

TEST_F(WindowWritesTest, RaisingBringsToTheFront) {
    const auto below = openWindow("below");
    const auto above = openWindow("above");
    const auto front = [&] {
        nextTurn();
        return desktop->windowServer.windowList().front().number;
    };
    ASSERT_TRUE(eventually([&] { return front() == above.windowID; }));
    EXPECT_TRUE(ax().perform(below.element, ax::raise));
    EXPECT_TRUE(eventually([&] { return front() == below.windowID; }));
}

TEST_F(WindowWritesTest, AStickyWindowIsOnEveryDesktop) {
    const auto window = openWindow("sticky");
    const auto count = desktop->windowServer.displaySpaces().front().spaces.size();
    sharedDesktop().run(
        {"xdotool", "set_desktop_for_window", std::to_string(*window.windowID), "4294967295"});
    EXPECT_TRUE(eventually([&] { return desktopsOf(window).size() == count; }));
    expectNear(place(window, target).info.frame, target, "a sticky window");
}

}  // namespace
}  // namespace quillo::x11test
