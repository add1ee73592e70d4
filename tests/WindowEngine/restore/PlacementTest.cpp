// Every way in which one window may come back or not: the fault that provokes it and the line it ends in.
#include <gtest/gtest.h>

#include "WindowEngine/restore/RestorePlan.hpp"
#include "WindowEngine/services/ForwardingWindowServer.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo::samples {
namespace {

constexpr Rect onMain{200, 100, 600, 400}, elsewhere{500, 300, 300, 200}, onSide{1500, 100, 600, 400};

enum State : unsigned { plain = 0, minimized = 1, fullscreen = 2 };

struct Window {
    Rect frame;
    unsigned state = plain;
};

struct Case {
    const char* what;
    Window saved, live;
    std::optional<FaultKind> fault;
    const char* status;
    std::function<void(TestDesktop&)> meddle = {};
    double faultSeconds = 0;
};

WorkspaceSnapshot savedSnapshot(TestDesktop& desktop, const Window& window) {
    WorkspaceSnapshot snapshot;
    snapshot.displays = Displays::current(desktop.plain.screens);
    WindowSnapshot saved = savedWindow(desktop, window.frame, "Notes");
    saved.isMinimized = window.state & minimized;
    saved.isFullscreen = window.state & fullscreen;
    snapshot.applications = {{"org.a", "org.a", {}, {saved}, {}}};
    return snapshot;
}

Scene liveScene(const Window& window) {
    SceneApplication application = sceneApplication("org.a", {sceneWindow("Notes", window.frame)});
    application.windows[0].minimized = window.state & minimized;
    application.windows[0].fullscreen = window.state & fullscreen;
    return scene({application});
}

/// After three readings of the full-screen attribute alone that say `value`, the window is gone.
std::function<void(TestDesktop&)> goneAfter(bool value) {
    return [=](TestDesktop& desktop) {
        desktop.meddler.afterRead = [&desktop, value, left = 3](std::span<const AttributeRequest> requests,
                                                                const Meddler::Answers& answers) mutable {
            if (requests[0].names.size() == 1 && requests[0].names[0] == ax::fullScreen &&
                answers[0][0] == AttributeValue(value) && --left == 0)
                desktop.world().close(desktop.world().windows().front().number);
        };
    };
}

constexpr auto refused = "failed window refused position or minimized state";
constexpr auto minimizedStill = "failed couldn't unminimize the window before moving it";
constexpr auto fullscreenStill = "failed couldn't leave full screen";
constexpr auto goneOutOfFullscreen = "failed window disappeared after leaving full screen";
constexpr auto wrongDisplayStill = "failed couldn't leave full screen to change display";
constexpr auto minimizedBeforeFullscreen =
    "failed couldn't unminimize the window before entering full screen";
constexpr auto notOnTarget =
    "failed couldn't place the window on its target display before entering full screen";
constexpr auto notEntered = "failed full-screen transition did not complete";
constexpr auto notVerified = "failed full-screen state could not be verified";
constexpr auto wrongDisplay = "failed entered full screen, but the target display could not be verified";

void unplugSide(TestDesktop& desktop) {
    desktop.world().unplug("side");
}
void unplugAll(TestDesktop& desktop) {
    unplugSide(desktop);
    desktop.world().unplug("main");
}
void entersOnMain(TestDesktop& desktop) {
    desktop.world().window("org.a", "Notes")->state.display = "main";
}

using enum FaultKind;
constexpr Rect large{100, 100, 1000, 700}, low{200, 700, 600, 400};
constexpr std::nullopt_t none = std::nullopt;

const Case cases[] = {
    {"in place", {onMain}, {onMain}, none, "restored"},
    {"moved", {onMain}, {elsewhere}, none, "restored"},
    {"to another display", {onSide}, {elsewhere}, none, "restored"},
    {"minimized again", {onMain, minimized}, {elsewhere, minimized}, none, "restored"},
    {"to be minimized", {onMain, minimized}, {elsewhere}, none, "restored"},
    {"to be unminimized", {onMain}, {elsewhere, minimized}, none, "restored"},
    {"out of full screen", {onMain}, {elsewhere, fullscreen}, none, "restored"},
    {"out of full screen, minimized", {onMain, minimized}, {onSide, fullscreen}, none, "restored"},
    {"into full screen", {onMain, fullscreen}, {elsewhere}, none, "restored"},
    {"minimized into full screen", {onMain, fullscreen}, {elsewhere, minimized}, none, "restored"},
    {"and on another display", {onSide, fullscreen}, {elsewhere, minimized}, none, "restored"},
    {"in full screen already", {onMain, fullscreen}, {elsewhere, fullscreen}, none, "restored"},
    {"in full screen elsewhere", {onSide, fullscreen}, {elsewhere, fullscreen}, none, "restored"},
    {"through flickering", {onMain, fullscreen}, {elsewhere}, fullscreenFlickers, "restored"},
    {"slowly", {onMain, fullscreen}, {elsewhere}, fullscreenSlow, "restored", {}, 3},
    {"kept smaller", {large}, {elsewhere}, sizeClamped, "adjusted"},
    {"kept on its display", {low}, {elsewhere}, positionClamped, "adjusted"},
    {"display gone", {onSide}, {elsewhere}, none, "adjusted", unplugSide},
    {"move refused", {onMain}, {elsewhere}, moveRefused, refused},
    {"move not done", {onMain}, {elsewhere}, moveIgnored, refused},
    {"minimizing refused", {onMain, minimized}, {elsewhere}, minimizeRefused, refused},
    {"minimizing not done", {onMain, minimized}, {elsewhere}, minimizeIgnored, refused},
    {"no display left", {onMain}, {elsewhere}, none, refused, unplugAll},
    {"gone at the first write", {onMain}, {elsewhere}, windowVanishes, refused},
    {"hanging from the first write", {onMain}, {elsewhere}, applicationHangs, refused},
    {"unminimizing refused", {onMain}, {elsewhere, minimized}, unminimizeRefused, minimizedStill},
    {"unminimizing not done", {onMain}, {elsewhere, minimized}, minimizeIgnored, minimizedStill},
    {"stays full screen", {onMain}, {elsewhere, fullscreen}, fullscreenIgnored, fullscreenStill},
    {"refuses to leave it", {onMain}, {elsewhere, fullscreen}, fullscreenRefused, fullscreenStill},
    {"gone out of it", {onMain}, {elsewhere, fullscreen}, none, goneOutOfFullscreen, goneAfter(false)},
    {"no display to fill", {onMain, fullscreen}, {elsewhere}, none, "failed no display", unplugAll},
    {"stays there", {onSide, fullscreen}, {elsewhere, fullscreen}, fullscreenIgnored, wrongDisplayStill},
    {"stays minimized",
     {onMain, fullscreen},
     {elsewhere, minimized},
     unminimizeRefused,
     minimizedBeforeFullscreen},
    {"cannot get there", {onSide, fullscreen}, {elsewhere}, moveIgnored, notOnTarget},
    {"crashing at the first write", {onSide, fullscreen}, {elsewhere}, applicationCrashes, notOnTarget},
    {"never full screen", {onMain, fullscreen}, {elsewhere}, fullscreenIgnored, notEntered},
    {"refuses full screen", {onMain, fullscreen}, {elsewhere}, fullscreenRefused, notEntered},
    {"gone in full screen", {onMain, fullscreen}, {elsewhere}, none, notVerified, goneAfter(true)},
    {"on the wrong display", {onSide, fullscreen}, {elsewhere}, none, wrongDisplay, entersOnMain},
};

bool comesWithAWrite(FaultKind kind) {
    return kind == windowVanishes || kind == applicationHangs || kind == applicationCrashes;
}

/// What the plan promised is what stands there.
void expectInPlace(TestDesktop& desktop, const Window& saved, const WindowPlan& plan) {
    desktop.executor().runFor(1s);  // flickering, three readings may agree before the end
    const LiveWindowInfo info = desktop.window("org.a").info;
    EXPECT_EQ(info.isFullscreen, (saved.state & fullscreen) != 0);
    EXPECT_EQ(info.isMinimized, (saved.state & minimized) != 0);
    const auto displays = Displays::current(desktop.plain.screens);
    const DisplaySnapshot* display = Displays::display(info.frame, displays);
    ASSERT_TRUE(display);
    EXPECT_EQ(display->id, plan.displayID);
    EXPECT_EQ(info.frame, info.isFullscreen ? display->frame : plan.placement->frame);
}

TEST(Placement, EveryWayEndsInItsOneLine) {
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TestDesktop desktop(liveScene(c.live));
        const WorkspaceSnapshot snapshot = savedSnapshot(desktop, c.saved);
        if (c.fault) {
            Fault provoking = fault(*c.fault, "org.a", 0, c.faultSeconds);
            provoking.onWrite = comesWithAWrite(*c.fault);
            desktop.world().add(provoking);
        }
        const std::vector live{desktop.window("org.a").info};
        if (c.meddle) c.meddle(desktop);
        const WindowPlan plan = planWindows(snapshot.applications[0].windows, live, snapshot.displays,
                                            Displays::current(desktop.plain.screens))[0];

        const RestoreReport report = desktop.restore(snapshot);
        ASSERT_EQ(texts(report), std::vector<std::string>{std::string("org.a/Notes: ") + c.status});
        EXPECT_EQ(report.items[0].savedIndex, 0);
        EXPECT_EQ(desktop.meddler.movable, 0) << "what was made movable is settled";
        if (std::string_view(c.status) == "restored") expectInPlace(desktop, c.saved, plan);
    }
}

TEST(Placement, AWindowInFullScreenInPlaceIsOnlyConfirmed) {
    TestDesktop desktop(liveScene({onMain, fullscreen}));
    desktop.meddler.frameWritten = [](Rect frame) {
        ADD_FAILURE() << "it is not moved";
        return frame;
    };
    EXPECT_EQ(texts(desktop.restore(savedSnapshot(desktop, {onMain, fullscreen}))),
              std::vector<std::string>{"org.a/Notes: restored"});
}

TEST(Placement, AWindowThatCannotBePlacedIsLeftWhereItStandsAndSaidAtOnce) {
    const struct {
        const char* what;
        Window saved, live;
        const char* status;
    } tiled[] = {{"elsewhere", {onMain}, {elsewhere}, "skipped tiled"},
                 {"in place", {onMain}, {onMain}, "restored"},
                 {"out of full screen", {onMain}, {onMain, fullscreen}, "restored"},
                 {"full screen on its display", {onMain, fullscreen}, {elsewhere}, "restored"},
                 {"full screen on another", {onSide, fullscreen}, {elsewhere}, "skipped tiled"}};
    for (const auto& c : tiled) {
        SCOPED_TRACE(c.what);
        TestDesktop desktop(liveScene(c.live));
        desktop.meddler.placeable = Capability::unavailable("tiled");
        desktop.meddler.frameWritten = [](Rect frame) {
            ADD_FAILURE() << "it is not moved";
            return frame;
        };
        const RestoreReport report = desktop.restore(savedSnapshot(desktop, c.saved));
        EXPECT_EQ(texts(report), std::vector<std::string>{std::string("org.a/Notes: ") + c.status});
        EXPECT_LE(report.duration, 1);
    }
}

TEST(Placement, WhatAWindowIsWhenItsTurnComesDecides) {
    TestDesktop desktop(
        scene({sceneApplication("org.a", {sceneWindow("1", elsewhere), sceneWindow("2", elsewhere)})}));
    WorkspaceSnapshot snapshot = savedSnapshot(desktop, {onMain});
    snapshot.applications[0].windows = {savedWindow(desktop, onMain, "1"), savedWindow(desktop, onMain, "2")};
    simulated::World& world = desktop.world();
    const RestoreReport report = desktop.restore(snapshot, {}, [&](const RestoreReport::Item& item) {
        simulated::Window& second = *world.window("org.a", "2");
        if (item.title == "1") world.requestFullscreen(second.number, true);
        if (item.title == "1") second.transition->until = desktop.executor().now();
    });
    EXPECT_EQ(report.totals().restored, 2) << "full screen since, it leaves that first";
}

/// Says by the clock who has the keyboard.
class KeyboardMoves final : public ForwardingWindowServer {
  public:
    KeyboardMoves(TestDesktop& desktop, const char* first, const char* then, Duration after, const char* last)
        : ForwardingWindowServer(desktop.plain.windowServer),
          desktop_(desktop),
          first_(first),
          then_(then),
          last_(last ? last : then),
          when_(desktop.executor().now() + after) {}
    std::optional<WindowNumber> windowInFront() override {
        const TimePoint now = desktop_.executor().now();
        const std::string who = now < when_ ? first_ : now < when_ + 200ms ? then_ : last_;
        return desktop_.world().window(who == "2" ? "org.a" : "org.b", who)->number;
    }

  private:
    TestDesktop& desktop_;
    const char *first_, *then_, *last_;
    TimePoint when_;
};

TEST(Placement, WhatCameBackIsRaisedUnlessThePersonWentElsewhere) {
    const struct {
        const char* what;
        bool asked;
        const char *first, *then;
        Duration after;
        std::vector<std::string> raised;
        const char* last = nullptr;
    } ways[] = {
        {"nobody went anywhere", true, "x", "x", 0ms, {"2", "1"}},
        {"only where that is wanted", false, "x", "x", 0ms, {}},
        {"to a window that came back, which stays foremost", true, "x", "2", 600ms, {"1", "2"}},
        {"to another", true, "x", "y", 600ms, {}},
        {"to another, from which a window that came back took the keyboard", true, "x", "y", 600ms, {}, "2"},
        {"a panel is closed, and the keyboard falls back", true, "x", "y", 100ms, {"2", "1"}},
    };
    for (const auto& c : ways) {
        SCOPED_TRACE(c.what);
        TestDesktop desktop(
            scene({sceneApplication("org.a", {sceneWindow("1", elsewhere), sceneWindow("2", elsewhere)}),
                   sceneApplication("org.b", {sceneWindow("x", elsewhere), sceneWindow("y", elsewhere)})}));
        WorkspaceSnapshot snapshot = savedSnapshot(desktop, {onMain});
        snapshot.applications[0].windows = {savedWindow(desktop, onMain, "1"),
                                            savedWindow(desktop, onMain, "2"),
                                            savedWindow(desktop, onMain, "lost")};
        KeyboardMoves server(desktop, c.first, c.then, c.after, c.last);
        DesktopAccess access = desktop.with(server);
        EXPECT_EQ(desktop.restoreThrough(access, snapshot, {.bringsForward = c.asked}).totals().restored, 2);
        std::vector<std::string> raised;
        for (const WindowNumber number : desktop.meddler.raised)
            raised.push_back(desktop.world().window(number)->state.title.value_or(""));
        EXPECT_EQ(raised, c.raised);
    }
}

TEST(Placement, AWindowThatMovesItselfIsPlacedOnceMoreOrToldAsAdjusted) {
    const struct {
        const char* what;
        bool launched;
        const char* value;
        double seconds;
        std::int64_t adjusted;
        bool inPlace;
        double longest;  // seconds of the run
    } drifts[] = {
        {"once", true, "", 0.3, 0, true, 6},
        {"each time", true, "always", 0.3, 1, false, 6},
        {"not while anybody looks", true, "", 3, 0, false, 4},
        {"one that was there before is not waited for", false, "", 0.3, 0, false, 0.5},
    };
    for (const auto& c : drifts) {
        SCOPED_TRACE(c.what);
        SceneApplication application = sceneApplication("org.a", {sceneWindow("Notes", elsewhere)});
        application.running = !c.launched;
        TestDesktop desktop(scene({application}));
        Fault drift = fault(FaultKind::windowDrifts, "org.a", 0, c.seconds);
        drift.value = c.value;
        desktop.world().add(drift);
        const RestoreReport report = desktop.restore(savedSnapshot(desktop, {onMain}));
        EXPECT_EQ(report.totals().restored, 1);
        EXPECT_EQ(report.totals().adjusted, c.adjusted);
        EXPECT_LT(report.duration, c.longest);
        desktop.executor().runFor(5s);
        EXPECT_EQ(desktop.world().window("org.a", "Notes")->state.frame == onMain, c.inPlace);
    }
}

TEST(Placement, AHangCostsAllWindowsOfAnApplicationOneTimeout) {
    std::vector<SceneWindow> windows;
    WorkspaceSnapshot snapshot;
    std::vector<WindowSnapshot> saved;
    for (int i = 0; i < 30; ++i) {
        windows.push_back(sceneWindow(std::to_string(i), elsewhere));
        saved.push_back(samples::window(onMain, std::to_string(i)));
    }
    snapshot.applications = {{"org.a", "org.a", {}, saved, {}}};
    TestDesktop desktop(scene({sceneApplication("org.a", windows)}));
    Fault hang = fault(FaultKind::applicationHangs, "org.a");
    hang.onWrite = true;
    desktop.world().add(hang);
    const RestoreReport report = desktop.restore(snapshot);
    EXPECT_EQ(report.totals().failed, 30);
    // Settling takes a second and each window's two waits 0.16 s; three writes of one frame and a few looks
    // at an application that rests in between are all that the hang adds.
    EXPECT_LT(report.duration, 1.5 + 30 * 0.16 + 6);
}

}  // namespace
}  // namespace quillo::samples
