// What the layer reads of windows, against clients that are known to the last property.
#include <xcb/xcb.h>

#include <map>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "tests/platform/x11/X11Test.hpp"

namespace quillo::x11test {
namespace {

class WindowReadingTest : public X11Test {};

TEST_F(WindowReadingTest, KindsOfWindows) {
    openWindow("plain");
    openWindow("typed", {"--type", "NORMAL"});
    open({"--title", "parent", "--dialog", "parent dialog"});
    open({"--title", "palette", "--type", "UTILITY"});
    open({"--title", "panel", "--type", "DOCK"});
    open({"--title", "background", "--type", "DESKTOP", "--class", "Background"});
    ASSERT_TRUE(eventually([&] { return windowTitled("parent dialog").has_value(); }));
    ASSERT_TRUE(eventually([&] { return desktop->applications.running("background").has_value(); }));
    using Subroles = std::map<std::string, std::string>;
    const auto subroles = [&] {
        nextTurn();
        Subroles found;
        for (const auto& application : desktop->applications.running()) {
            const auto element = ax().application(application.pid);
            for (const auto& window : std::get<std::vector<Element>>(*attribute(element, ax::windows))) {
                found[std::get<std::string>(*attribute(window, ax::title))] =
                    std::get<std::string>(*attribute(window, ax::subrole));
            }
        }
        return found;
    };
    const Subroles expected{{"plain", "AXStandardWindow"},
                            {"typed", "AXStandardWindow"},
                            {"parent", "AXStandardWindow"},
                            {"parent dialog", "AXDialog"},
                            {"palette", "AXFloatingWindow"}};
    EXPECT_TRUE(eventually([&] { return subroles() == expected; })) << testing::PrintToString(subroles());
    EXPECT_EQ(desktop->applications.running("background")->activationPolicy, ActivationPolicy::accessory);
    EXPECT_TRUE(desktop->applications.serviceProcess("background"));
}

TEST_F(WindowReadingTest, TitlesInEveryEncoding) {
    openWindow("Übergrößenträger — 日本語 🪟");
    open({"--latin1-title", "caf\xE9"});
    EXPECT_TRUE(eventually([&] { return windowTitled("café").has_value(); }));
}

TEST_F(WindowReadingTest, WindowsComeInTheOrderTheyWereOpened) {
    openWindow("b");
    openWindow("a");
    openWindow("c");
    std::vector<std::string> titles;
    for (const auto& window : windows()) titles.push_back(*window.info.title);
    EXPECT_EQ(titles, (std::vector<std::string>{"b", "a", "c"}));
}

/// The outermost window that holds it, as the X server places it.
Rect outermost(WindowNumber window) {
    auto* xcb = xcb_connect(nullptr, nullptr);
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    for (xcb_window_t parent = window; parent != root;) {
        window = parent;
        auto* tree = xcb_query_tree_reply(xcb, xcb_query_tree(xcb, window), nullptr);
        parent = tree ? tree->parent : root;
        free(tree);
    }
    auto* geometry = xcb_get_geometry_reply(xcb, xcb_get_geometry(xcb, window), nullptr);
    const Rect rect{double(geometry->x), double(geometry->y), double(geometry->width),
                    double(geometry->height)};
    free(geometry);
    xcb_disconnect(xcb);
    return rect;
}

TEST_F(WindowReadingTest, TheFrameIsWhatAPersonSees) {
    const auto window = openWindow("framed", {"--geometry", "200,150,400,300"});
    EXPECT_GT(window.info.frame.width * window.info.frame.height, 400.0 * 300.0) << "the title bar counts";
    // metacity's outermost window has invisible borders, the others' has none.
    if (!windowManagerIs("metacity")) EXPECT_EQ(window.info.frame, outermost(*window.windowID));

    const auto shadowed = openWindow("shadowed", {"--geometry", "200,150,400,300", "--shadow", "10,10,5,15"});
    EXPECT_EQ(shadowed.info.frame.width, window.info.frame.width - 20);
    EXPECT_EQ(shadowed.info.frame.height, window.info.frame.height - 20);
}

}  // namespace
}  // namespace quillo::x11test
