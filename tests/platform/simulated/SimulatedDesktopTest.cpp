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
    {"title": "B", "frame": [20, 40, 400, 300], "desktop": 1, "fullscreen": true}]}]})";

TEST(SimulatedDesktop, WritesTheSceneItWouldStartFrom) {
    const auto first = SimulatedDesktop::create(scene, "scene").value();
    const std::string written = first->sceneJson();
    EXPECT_EQ(SimulatedDesktop::create(written, "scene").value()->sceneJson(), written);
}

TEST(SimulatedDesktop, AnUnpluggedDisplayGivesItsWindowsToThePrimaryOne) {
    const auto desktop = SimulatedDesktop::create(scene, "scene").value();
    desktop->world().unplug("RIGHT");
    EXPECT_EQ(desktop->world().window("editor", "A")->state.frame, (Rect{60, 65, 400, 300}));
    EXPECT_EQ(desktop->platform().screens.screens().size(), 1U);
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
    auto& world = desktop->world();
    const auto add = [&](FaultKind kind, std::string title, double after, std::string value = {}) {
        world.add({kind, kind == FaultKind::permissionRevoked ? "" : "editor", std::move(title),
                   std::move(value), after, 0, false});
    };
    add(FaultKind::moveRefused, "A", 1);
    add(FaultKind::titleChanges, "B", 2, "C");
    add(FaultKind::displayUnplugged, "", 3, "RIGHT");
    add(FaultKind::windowVanishes, "C", 4);
    add(FaultKind::applicationHangs, "", 5);
    add(FaultKind::permissionRevoked, "", 6);
    const WindowNumber a = world.window("editor", "A")->number;
    EXPECT_EQ(world.requestPosition(a, {1450, 50}), simulated::code::success);
    desktop->executor().runFor(1s);
    EXPECT_EQ(desktop->world().requestPosition(a, {1470, 50}), simulated::code::cannotComplete);
    EXPECT_EQ(world.window(a)->state.frame.x, 1450);
    EXPECT_TRUE(world.window("editor", "B"));
    desktop->executor().runFor(1s);
    EXPECT_TRUE(desktop->world().window("editor", "C"));
    EXPECT_EQ(world.displays().size(), 2U);
    desktop->executor().runFor(1s);
    EXPECT_EQ(desktop->world().displays().size(), 1U);
    desktop->executor().runFor(1s);
    EXPECT_FALSE(desktop->world().window("editor", "C"));
    EXPECT_FALSE(world.hangs(*world.application("editor")));
    desktop->executor().runFor(1s);
    EXPECT_TRUE(desktop->world().hangs(*world.application("editor")));
    EXPECT_TRUE(world.trusted());
    desktop->executor().runFor(1s);
    EXPECT_FALSE(desktop->world().trusted());
}

}  // namespace
}  // namespace quillo
