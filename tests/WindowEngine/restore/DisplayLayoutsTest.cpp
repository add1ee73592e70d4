// Identical displays, and workspaces that are arranged otherwise on each set of displays.
#include <gtest/gtest.h>

#include "WindowEngine/restore/DisplayLayouts.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using DisplayTwins::Matching;
using DisplayTwins::Pairs;
using samples::TestDesktop;
using List = std::vector<DisplaySnapshot>;

DisplaySnapshot display(std::string id, double x, std::optional<std::string> model = {},
                        std::optional<std::string> connector = {}) {
    const Rect frame{x, 0, 1000, 800};
    return {.id = std::move(id),
            .frame = frame,
            .visibleFrame = frame,
            .scale = 1,
            .isPrimary = x == 0,
            .model = std::move(model),
            .connector = std::move(connector)};
}

TEST(DisplayTwins, AreToldApartByAnswersThenConnectorsThenPlaces) {
    const auto lid = [](std::string id) { return display(std::move(id), 0, "LID"); };
    const List saved{lid("a"), display("b", 1000, "M", "DP-1"), display("c", -1000, "M", "DP-2")};
    const struct {
        const char* name;
        List saved, current;
        Pairs answers;
        Matching expected;
    } cases[] = {
        {"another identifier for each display",
         {lid("a"), display("b", 1000, "M")},
         {lid("x"), display("y", -1000, "M")},
         {},
         {{{"a", "x"}, {"b", "y"}}, {}, {}}},
        {"connectors before places",
         saved,
         {lid("x"), display("y", -1000, "M", "DP-1"), display("z", 1000, "M", "DP-2")},
         {},
         {{{"a", "x"}, {"b", "y"}, {"c", "z"}}, {}, {}}},
        {"answers before connectors",
         saved,
         {lid("x"), display("y", -1000, "M", "DP-1"), display("z", 1000, "M", "DP-2")},
         {{"b", "z"}},
         {{{"a", "x"}, {"b", "z"}, {"c", "y"}}, {}, {}}},
        {"places where connectors are others",
         saved,
         {lid("x"), display("y", -1000, "M", "DP-3"), display("z", 1000, "M", "DP-4")},
         {},
         {{{"a", "x"}, {"b", "z"}, {"c", "y"}}, {}, {}}},
        {"one of two is left, and stands on the other's side",
         saved,
         {lid("x"), display("y", 1000, "M", "DP-2")},
         {},
         {{{"a", "x"}, {"c", "y"}}, {}, {}}},
        {"places that tell nothing",
         saved,
         {lid("x"), display("y", 0, "M", "DP-3"), display("z", 0, "M", "DP-4")},
         {},
         {{{"a", "x"}, {"b", "y"}, {"c", "z"}}, {"b", "c"}, {"y", "z"}}},
        {"an answer that is out of date",
         saved,
         {lid("x"), display("y", 1000, "M", "DP-9")},
         {{"b", "gone"}},
         {{{"a", "x"}, {"b", "y"}}, {}, {}}},
        {"nobody knows models", {display("a", 0)}, {display("x", 0)}, {}, {}},
    };
    for (const auto& c : cases) {
        const Matching found = DisplayTwins::match(c.saved, c.current, c.answers);
        EXPECT_EQ(found.pairs, c.expected.pairs) << c.name;
        EXPECT_EQ(found.unclear, c.expected.unclear) << c.name;
        EXPECT_EQ(found.choices, c.expected.choices) << c.name;
    }
}

TEST(DisplayTwins, ASetIsKnownByModelsWhereBothSidesHaveThem) {
    const List two{display("a", 0, "LID"), display("b", 1000, "M")};
    EXPECT_TRUE(DisplayTwins::sameSet(two, List{display("x", 0, "M"), display("y", -1000, "LID")}));
    EXPECT_FALSE(DisplayTwins::sameSet(two, List{display("a", 0, "M"), display("b", 1000, "M")}));
    EXPECT_TRUE(DisplayTwins::sameSet(two, List{display("a", 0), display("b", 9)})) << "by identifier";
    EXPECT_FALSE(DisplayTwins::sameSet(two, List{display("a", 0)}));
}

/// A desk with a lid and, docked, two twins; an editor with a window for each.
class Desk {
  public:
    Desk() : desktop(samples::scene({})) {
        auto& world = desktop.world();
        for (const char* id : {"side", "main"}) world.unplug(id);
        world.plug({.id = "lid", .frame = {0, 0, 1000, 800}, .visibleFrame = {0, 0, 1000, 800}});
        world.applications().emplace_back().scene = samples::sceneApplication("org.editor");
        world.start(*world.application("org.editor"));
        desktop.executor().runFor(1s);
        for (const char* title : {"One", "Two"}) {
            world.openWindow(*world.application("org.editor"),
                             samples::sceneWindow(title, {10, 10, 400, 300}));
        }
    }
    void dock(std::string left, std::string right) {
        auto& world = desktop.world();
        world.plug(screen(std::move(left), -1000));
        world.plug(screen(std::move(right), 1000));
    }
    void undock() {
        for (const DisplaySnapshot& one : now())
            if (one.id != "lid") desktop.world().unplug(one.id);
    }
    void put(const char* title, double x) { desktop.world().move(window(title), {x, 50, 400, 300}); }
    simulated::Window& window(const char* title) { return *desktop.world().window("org.editor", title); }
    List now() { return Displays::current(desktop.plain.screens); }
    std::vector<double> places() {
        std::vector<double> all;
        for (const char* title : {"One", "Two"}) all.push_back(window(title).state.frame.x);
        return all;
    }

    TestDesktop desktop;

  private:
    static simulated::SceneDisplay screen(std::string id, double x) {
        const Rect frame{x, 0, 1000, 800};
        return {.id = std::move(id), .frame = frame, .visibleFrame = frame, .model = "TWIN"};
    }
};

TEST(DisplayLayouts, EachSetOfDisplaysHasItsOwnAndRestoresIt) {
    Desk desk;
    desk.put("One", 100);
    desk.put("Two", 500);
    const WorkspaceSnapshot alone = desk.desktop.capture();
    desk.dock("D1", "D2");
    desk.put("One", -900);
    desk.put("Two", 1300);
    const WorkspaceSnapshot docked = DisplayLayouts::carriedOver(alone, desk.desktop.capture());
    ASSERT_TRUE(docked.layouts && docked.layouts->size() == 1);
    EXPECT_TRUE(DisplayLayouts::has(docked, alone.displays));

    desk.undock();
    desk.put("One", 0);
    const std::vector<WindowSnapshot>& all = docked.applications[0].windows;
    Restore::PassedOver left{.windows = {{"org.editor", all}}, .displays = docked.displays};
    const WorkspaceSnapshot fit = Restore::fitted(docked, left, desk.now(), {});
    EXPECT_NE(fit.applications[0].windows, all);
    EXPECT_EQ(left.windows.begin()->second, fit.applications[0].windows)
        << "left out, and fitted all the same";
    EXPECT_TRUE(desk.desktop.restore(docked).clean());
    EXPECT_EQ(desk.places(), (std::vector<double>{100, 500}));
    desk.dock("D7", "D8");  // the twins under other names
    EXPECT_TRUE(desk.desktop.restore(docked).clean());
    EXPECT_EQ(desk.places(), (std::vector<double>{-900, 1300}));

    // Kept again: what has changed on this set, and nothing else.
    desk.put("Two", -700);
    const WorkspaceSnapshot kept = DisplayLayouts::arranged(docked, desk.desktop.capture());
    EXPECT_EQ(kept.layouts, docked.layouts);
    EXPECT_EQ(kept.applications[0].windows[0].title, docked.applications[0].windows[0].title);
    desk.put("Two", 100);
    EXPECT_TRUE(desk.desktop.restore(kept).clean());
    EXPECT_EQ(desk.places(), (std::vector<double>{-900, -700}));
    WorkspaceSnapshot less = kept;
    DisplayLayouts::remove(less, kept.layouts->front());
    EXPECT_FALSE(less.layouts);
}

TEST(DisplayLayouts, AnotherResolutionKeepsProportionsAndAWindowThatCameLaterIsFitted) {
    Desk desk;
    desk.put("One", 100);
    desk.put("Two", 500);
    WorkspaceSnapshot alone = desk.desktop.capture();
    std::erase_if(alone.applications[0].windows,
                  [](const WindowSnapshot& window) { return window.title == "Two"; });
    desk.dock("D1", "D2");
    desk.put("One", -900);
    desk.put("Two", 0);  // where it would stand on the lid at once
    const WorkspaceSnapshot docked = DisplayLayouts::carriedOver(alone, desk.desktop.capture());
    desk.undock();
    desk.desktop.world().arrange({{"lid", {0, 0, 2000, 1600}}});
    EXPECT_TRUE(desk.desktop.restore(docked).items.size() == 2U);
    EXPECT_EQ(desk.window("One").state.frame, (Rect{200, 100, 800, 600}));
    EXPECT_EQ(desk.window("Two").state.frame, (Rect{0, 100, 800, 600}));
}

TEST(DisplayLayouts, ArrangingMovesWhatIsOpenAndStartsNothing) {
    TestDesktop desktop(samples::scene(
        {samples::sceneApplication("org.editor", {samples::sceneWindow("Notes", {10, 40, 400, 300})}),
         samples::sceneApplication("org.viewer", {samples::sceneWindow("Page", {10, 400, 300, 200})})}));
    WorkspaceSnapshot saved = desktop.capture();
    saved.applications[0].windows.push_back(samples::savedWindow(desktop, {50, 50, 300, 300}, "Gone"));
    saved.desktops.value().push_back({"main", 5, {}});  // is not made
    auto& world = desktop.world();
    world.end(*world.application("org.viewer"));
    world.move(*world.window("org.editor", "Notes"), {500, 200, 300, 200});
    DisplayLayouts::keepRunning(saved, [&](const std::string& identifier) {
        return desktop.plain.applications.running(identifier).has_value();
    });
    const double began = desktop.seconds();
    const RestoreReport report = desktop.restore(saved, {.arrangesOnly = true});
    EXPECT_EQ(samples::texts(report),
              (std::vector<std::string>{"org.editor/Notes: restored",
                                        "org.editor/Gone: skipped no matching accessible window"}));
    EXPECT_LT(desktop.seconds() - began, 5) << "nothing is waited for";
    EXPECT_FALSE(desktop.plain.applications.running("org.viewer"));
}

}  // namespace
}  // namespace quillo
