#include <gtest/gtest.h>

#include "platform/simulated/SimulatedDesktop.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

TEST(Scene, SaysWhichFieldIsWrong) {
    const struct {
        std::string_view json, error;
    } cases[] = {
        {R"({"displays": )", "scene.json: "},
        {R"([])", "scene.json: the scene: expected an object"},
        {R"({"screens": []})", "scene.json: screens: unknown name"},
        {R"({"displays": [{"frame": [0, 0, 10, 10]}]})", "scene.json: displays[0].id: missing"},
        {R"({"displays": [{"id": "A", "frame": [0, 0, 10]}]})",
         "scene.json: displays[0].frame: expected [x, y, width, height]"},
        {R"({"displays": [{"id": "A", "frame": [0, 0, 9, 9], "shownDesktop": 1}]})",
         "scene.json: displays[0].shownDesktop: there is no such desktop"},
        {R"({"applications": [{"identifier": "a", "windows": [{"minimized": 1}]}]})",
         "scene.json: applications[0].windows[0].minimized: expected true or false"},
        {R"({"applications": [{"identifier": "a", "policy": "odd"}]})",
         "scene.json: applications[0].policy: unknown value"},
        {R"({"displays": [{"id": "A", "frame": [1, 0, 9, 9]}]})",
         "scene.json: displays[0].frame: the first display is the primary one"},
        {R"({"applications": [{"identifier": "a"}, {"identifier": "a"}]})",
         "scene.json: applications[1].identifier: used twice"},
        {R"({"faults": [{"kind": "moveRefused"}, {"after": 1}]})", "scene.json: faults[1].kind: missing"},
    };
    for (const auto& one : cases) {
        const auto desktop = SimulatedDesktop::create(one.json, "scene.json");
        ASSERT_FALSE(desktop) << one.json;
        EXPECT_TRUE(desktop.error().text.starts_with(one.error)) << desktop.error().text;
    }
}

constexpr std::string_view scene = R"({
  "displays": [{"id": "LEFT", "frame": [0, 0, 1440, 900], "visibleFrame": [0, 25, 1440, 875], "desktops": 2},
               {"id": "RIGHT", "frame": [1440, 0, 1280, 1024]}],
  "applications": [{"identifier": "editor", "windows": [
    {"title": "A", "frame": [1500, 40, 400, 300], "cell": [10, 20], "minimumSize": [200, 100]},
    {"title": "B", "frame": [20, 40, 400, 300], "desktop": 1, "fullscreen": true, "closesAfter": 99},
    {"title": "Tab", "frame": [20, 40, 400, 300], "tabGroup": "t"}]},
    {"identifier": "mail", "hidden": true}]})";

// The primary display's corner is where all coordinates start, whichever display that is.
TEST(SimulatedDesktop, AnUnpluggedDisplayGivesItsWindowsToThePrimaryOne) {
    const struct {
        std::string_view gone;
        Rect screen, moved;
    } cases[] = {{"RIGHT", {0, 0, 1440, 900}, {60, 65, 400, 300}},
                 {"LEFT", {0, 0, 1280, 1024}, {60, 40, 400, 300}}};
    for (const auto& one : cases) {
        const auto desktop = SimulatedDesktop::create(scene, "scene").value();
        desktop->world().unplug(one.gone);
        const auto screens = desktop->platform().screens.screens();
        ASSERT_EQ(screens.size(), 1U);
        EXPECT_EQ(screens[0].frame, one.screen);
        EXPECT_EQ(desktop->world().window("editor", "A")->state.frame, one.moved);
        EXPECT_EQ(desktop->world().window("editor", "B")->state.frame, one.screen) << "full screen";
    }
}

TEST(SimulatedDesktop, WindowsGoWithADisplayThatIsExchangedOrShrinks) {
    const auto desktop = SimulatedDesktop::create(R"({
      "displays": [{"id": "ONE", "frame": [0, 0, 1000, 800]}, {"id": "TWO", "frame": [1000, 0, 1000, 800]}],
      "applications": [{"identifier": "editor", "windows": [{"title": "A", "frame": [1500, 40, 400, 300]}]}]})",
                                                  "scene")
                             .value();
    simulated::World& world = desktop->world();
    const auto frame = [&] { return world.window("editor", "A")->state.frame; };
    world.swap("ONE", "TWO");
    EXPECT_EQ(world.displays().front().scene.id, "TWO");
    EXPECT_EQ(frame(), (Rect{500, 40, 400, 300}));
    world.arrange({{"TWO", {0, 0, 600, 800}}});
    EXPECT_EQ(frame(), (Rect{200, 40, 400, 300})) << "its middle would be outside";
}

TEST(SimulatedDesktop, ASplashWindowComesAndGoesBeforeTheOthers) {
    const auto desktop = SimulatedDesktop::create(R"({
      "displays": [{"id": "ONE", "frame": [0, 0, 1000, 800]}],
      "applications": [{"identifier": "slow", "running": false, "windows": [
        {"title": "Splash", "frame": [300, 300, 400, 200], "closesAfter": 2},
        {"title": "Main", "frame": [0, 0, 900, 700], "opensAfter": 3}]}]})",
                                                  "scene")
                             .value();
    desktop->world().start(*desktop->world().application("slow"));
    std::string seen;
    for (int i = 0; i < 4; ++i) {
        desktop->executor().runFor(1s);
        seen += desktop->world().window("slow", "Splash") ? "S" : "-";
        seen += desktop->world().window("slow", "Main") ? "M" : "-";
    }
    EXPECT_EQ(seen, "S-S----M");
}

TEST(SimulatedDesktop, AWatchTellsOfWhatHappensByItself) {
    const auto desktop = SimulatedDesktop::create(scene, "scene").value();
    const auto changes = desktop->platform().windowServer.watch(std::nullopt);
    const auto told = [&](Duration limit) {
        Job<bool> wait(desktop->executor(), changes->next(limit));
        desktop->executor().runUntil([&] { return wait.done(); }, 200s);
        return wait.result();
    };
    EXPECT_FALSE(told(98s));
    EXPECT_TRUE(told(98s)) << "window B closes";
    EXPECT_EQ(desktop->executor().now().time_since_epoch(), 99s);
}

TEST(SimulatedDesktop, ADisplayHasNoMoreThanSixteenDesktops) {
    const auto desktop = SimulatedDesktop::create(scene, "scene").value();
    EXPECT_TRUE(desktop->world().openOverview());
    desktop->executor().runFor(1s);
    for (int i = 0; i < 20; ++i) EXPECT_EQ(desktop->world().pressAddDesktop("LEFT"), 0);
    desktop->executor().runFor(1s);
    EXPECT_EQ(desktop->world().display("LEFT")->desktops.size(), 16U);
}

TEST(SimulatedDesktop, SizesKeepToCellsAndLimits) {
    const auto desktop = SimulatedDesktop::create(scene, "scene").value();
    const WindowNumber number = desktop->world().window("editor", "A")->number;
    for (const auto& [asked, taken] :
         {std::pair{Size{455, 333}, Size{450, 320}}, {Size{10, 10}, Size{200, 100}}}) {
        EXPECT_EQ(desktop->world().requestSize(number, asked), simulated::code::success);
        EXPECT_EQ(desktop->world().window(number)->state.frame.size(), taken);
    }
}

// A fault shows from its time on and not before, on what it names and not on the other.
TEST(SimulatedDesktop, FaultsBeginAtTheirTimeAndConcernWhatTheyName) {
    using simulated::FaultKind;
    const auto desktop = SimulatedDesktop::create(scene, "scene").value();
    const auto world = [&]() -> simulated::World& { return desktop->world(); };
    const auto add = [&](FaultKind kind, std::string title, double after, std::string value = {}) {
        world().add({kind, kind == FaultKind::permissionRevoked ? "" : "editor", std::move(title),
                     std::move(value), after, 0, false});
    };
    add(FaultKind::moveRefused, "A", 1);
    add(FaultKind::titleChanges, "B", 2, "C");
    add(FaultKind::displayUnplugged, "", 3, "RIGHT");
    add(FaultKind::windowVanishes, "C", 4);
    add(FaultKind::applicationHangs, "", 5);
    add(FaultKind::permissionRevoked, "", 6);
    const WindowNumber a = world().window("editor", "A")->number;
    const std::function<bool()> shows[] = {
        [&] { return world().requestPosition(a, {1450, 50}) == simulated::code::cannotComplete; },
        [&] { return !world().window("editor", "B"); },
        [&] { return world().displays().size() == 1; },
        [&] { return !world().window("editor", "C"); },
        [&] { return world().hangs(*world().application("editor")); },
        [&] { return !world().trusted(); },
    };
    for (const auto& fault : shows) {
        EXPECT_FALSE(fault());
        desktop->executor().runFor(1s);
        EXPECT_TRUE(fault());
    }
}

}  // namespace
}  // namespace quillo
