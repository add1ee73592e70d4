// Monitors: their identity, what panels leave of them, and what plugging changes.
#include <xcb/randr.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "platform/x11/Edid.hpp"
#include "platform/x11/X11Screens.hpp"
#include "tests/platform/x11/X11Test.hpp"

namespace quillo::x11test {
namespace {

using Block = std::array<std::uint8_t, 128>;

/// A sound block of vendor QLO, product 0x1234.
Block edidBlock(std::uint32_t serial, const std::string& serialText = "") {
    Block block{0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};
    const unsigned packed = ('Q' - '@') << 10 | ('L' - '@') << 5 | ('O' - '@');
    block[8] = static_cast<std::uint8_t>(packed >> 8);
    block[9] = static_cast<std::uint8_t>(packed & 0xFF);
    block[10] = 0x34;
    block[11] = 0x12;
    for (std::size_t i = 0; i < 4; ++i) block[12 + i] = static_cast<std::uint8_t>(serial >> (8 * i));
    if (!serialText.empty()) {
        block[75] = 0xFF;
        std::ranges::copy(serialText + "\n", block.begin() + 77);
    }
    std::uint8_t sum = 0;
    for (const auto byte : block) sum = static_cast<std::uint8_t>(sum + byte);
    block[127] = static_cast<std::uint8_t>(256 - sum);
    return block;
}

TEST(EdidTest, VendorProductAndSerial) {
    const auto identity = [](const Block& block) {
        return x11::edidIdentity(std::as_bytes(std::span(block)));
    };
    EXPECT_EQ(identity(edidBlock(4711)), "QLO-1234-4711");
    EXPECT_EQ(identity(edidBlock(4711, "SN 42")), "QLO-1234-SN42");
    auto damaged = edidBlock(4711);
    damaged[20] ^= 1;
    EXPECT_EQ(identity(damaged), std::nullopt);
    const auto sound = edidBlock(1);
    EXPECT_EQ(x11::edidIdentity(std::as_bytes(std::span(sound).first(127))), std::nullopt);
    Block nameless{0, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0};
    nameless[127] = 6;
    EXPECT_EQ(identity(nameless), std::nullopt);
}

TEST(VisiblePartTest, PanelsCountWhereTheyStand) {
    constexpr Rect left{0, 0, 1000, 800}, right{1000, 0, 1000, 600};
    constexpr Size root{2000, 800};
    using x11::Strut;
    const auto both = [&](const Strut& strut) {
        const std::array monitors{left, right};
        return std::pair(x11::visiblePart(left, {&strut, 1}, root, monitors),
                         x11::visiblePart(right, {&strut, 1}, root, monitors));
    };
    const Strut topLeft{.panel = {0, 0, 1000, 30}, .top = 30, .topStart = 0, .topEnd = 999};
    EXPECT_EQ(both(topLeft), std::pair(Rect(0, 30, 1000, 770), right));
    const Strut innerEdge{.panel = {1000, 0, 40, 600}, .left = 1040, .leftStart = 0, .leftEnd = 599};
    EXPECT_EQ(both(innerEdge), std::pair(left, Rect(1040, 0, 960, 600)));
    const Strut belowShort{
        .panel = {1000, 580, 1000, 20}, .bottom = 220, .bottomStart = 1000, .bottomEnd = 1999};
    EXPECT_EQ(both(belowShort), std::pair(left, Rect(1000, 0, 1000, 580)));
    const Strut across{.panel = {0, 0, 2000, 25}, .top = 25, .topStart = 0, .topEnd = 1999};
    EXPECT_EQ(both(across), std::pair(Rect(0, 25, 1000, 775), Rect(1000, 25, 1000, 575)));
    const Strut hiddenPanel{.panel = {0, -28, 1000, 28}, .top = 2, .topStart = 0, .topEnd = 999};
    EXPECT_EQ(both(hiddenPanel), std::pair(Rect(0, 2, 1000, 798), right));
    const Strut absurd{.panel = left, .left = 1000, .leftStart = 0, .leftEnd = 799};
    EXPECT_EQ(both(absurd).first, left) << "a visible frame is never empty";
}

/// Two monitors side by side: real ones that are plugged where the server has them, else two halves of one.
class Monitors {
  public:
    const std::string left = PrivateDesktop::isDummy() ? "DUMMY0" : "LEFT";
    const std::string right = PrivateDesktop::isDummy() ? "DUMMY1" : "RIGHT";

    void plugBoth() {
        if (PrivateDesktop::isDummy()) {
            xrandr({"--output", left, "--mode", "1280x1024", "--pos", "0x0", "--primary"});
        } else {
            xrandr({"--setmonitor", "*" + left, "1280/300x1024/340+0+0", "screen"});
        }
        plugRight(1024, 768);
    }
    void plugRight(int width, int height) {
        const auto w = std::to_string(width), h = std::to_string(height);
        if (PrivateDesktop::isDummy()) {
            xrandr({"--addmode", right, w + "x" + h});
            xrandr({"--output", right, "--mode", w + "x" + h, "--right-of", left});
            xrandr({});  // the driver takes notice with this only
        } else {
            xrandr({"--delmonitor", right});
            xrandr({"--setmonitor", right, w + "/300x" + h + "/340+1280+0", "none"});
        }
    }
    void unplugRight() {
        if (PrivateDesktop::isDummy())
            xrandr({"--output", right, "--off"});
        else
            xrandr({"--delmonitor", right});
    }
    void reset() {
        unplugRight();
        if (!PrivateDesktop::isDummy()) xrandr({"--delmonitor", left});
    }
    /// Its exit status is of no use: for monitors it complains and works.
    static void xrandr(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "xrandr");
        sharedDesktop().run(arguments);
    }
};

/// What a monitor says of itself, put into the server; an empty block removes it.
void setEdid(const std::string& output, std::span<const std::uint8_t> block) {
    auto* xcb = xcb_connect(nullptr, nullptr);
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    auto* name = xcb_intern_atom_reply(xcb, xcb_intern_atom(xcb, 0, 4, "EDID"), nullptr);
    auto* resources = xcb_randr_get_screen_resources_current_reply(
        xcb, xcb_randr_get_screen_resources_current(xcb, root), nullptr);
    for (int i = 0; i < resources->num_outputs; ++i) {
        const auto id = xcb_randr_get_screen_resources_current_outputs(resources)[i];
        auto* info = xcb_randr_get_output_info_reply(xcb, xcb_randr_get_output_info(xcb, id, 0), nullptr);
        const std::string_view found(reinterpret_cast<const char*>(xcb_randr_get_output_info_name(info)),
                                     info->name_len);
        if (found == output && block.empty()) xcb_randr_delete_output_property(xcb, id, name->atom);
        if (found == output && !block.empty()) {
            xcb_randr_change_output_property(xcb, id, name->atom, XCB_ATOM_INTEGER, 8, XCB_PROP_MODE_REPLACE,
                                             static_cast<std::uint32_t>(block.size()), block.data());
        }
        free(info);
    }
    free(resources);
    free(name);
    free(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    xcb_disconnect(xcb);
}

void forceScreenSaver(std::uint8_t mode) {
    auto* xcb = xcb_connect(nullptr, nullptr);
    xcb_force_screen_saver(xcb, mode);
    free(xcb_get_input_focus_reply(xcb, xcb_get_input_focus(xcb), nullptr));
    xcb_disconnect(xcb);
}

class ScreensTest : public X11Test {
  protected:
    using Named = std::vector<std::pair<std::string, Rect>>;
    Named frames() {
        nextTurn();
        Named named;
        for (const auto& screen : desktop->screens.screens())
            named.emplace_back(*screen.stableID, screen.frame);
        return named;
    }
    void TearDown() override {
        monitors.reset();
        EXPECT_TRUE(eventually([&] { return frames().size() == 1; }));
        X11Test::TearDown();
    }
    Monitors monitors;
};

TEST_F(ScreensTest, MonitorsComeGoAndChange) {
    monitors.plugBoth();
    const Named two{{monitors.left, {0, 0, 1280, 1024}}, {monitors.right, {1280, 0, 1024, 768}}};
    EXPECT_TRUE(eventually([&] { return frames() == two; })) << testing::PrintToString(frames().size());
    monitors.plugRight(800, 600);
    EXPECT_TRUE(eventually([&] { return frames().back().second == Rect{1280, 0, 800, 600}; }));
    const std::uint64_t stamp = desktop->screens.stamp();
    EXPECT_EQ(desktop->screens.stamp(), stamp);
    monitors.unplugRight();
    EXPECT_TRUE(eventually([&] { return frames() == Named{two.front()}; }));
    EXPECT_NE(desktop->screens.stamp(), stamp);
    if (!PrivateDesktop::isDummy()) return;
    monitors.plugRight(1024, 768);
    Monitors::xrandr({"--output", monitors.right, "--primary"});
    EXPECT_TRUE(eventually([&] { return frames() == Named(two.rbegin(), two.rend()); })) << "primary first";
    Monitors::xrandr({"--output", monitors.left, "--primary"});
}

TEST_F(ScreensTest, APanelTakesFromItsOwnMonitor) {
    monitors.plugBoth();
    ASSERT_TRUE(eventually([&] { return frames().size() == 2; }));
    open({"--class", "Panel", "--type", "DOCK", "--geometry", "1280,0,1024,40", "--strut",
          "0,0,40,0,0,0,0,0,1280,2303,0,0"});
    ASSERT_TRUE(eventually([&] {
        nextTurn();
        return desktop->applications.running("panel").has_value();
    }));
    const auto screens = desktop->screens.screens();
    EXPECT_EQ(screens[0].visibleFrame, screens[0].frame);
    EXPECT_EQ(screens[1].visibleFrame, Rect(1280, 40, 1024, 728));
    const auto spaces = desktop->windowServer.displaySpaces();
    ASSERT_EQ(spaces.size(), 2u);
    EXPECT_EQ(spaces[0].displayID, monitors.left);
    EXPECT_EQ(spaces[0].spaces.size(), spaces[1].spaces.size());
}

TEST_F(ScreensTest, AMonitorIsKnownByItsEdidWhereThatIsUnique) {
    const auto output = PrivateDesktop::isDummy() ? "DUMMY0" : "screen";
    const auto block = edidBlock(4711);
    setEdid(output, block);
    EXPECT_EQ(frames().front().first, "QLO-1234-4711");
    if (PrivateDesktop::isDummy()) {
        monitors.plugBoth();
        EXPECT_TRUE(eventually([&] { return frames().size() == 2; }));
        setEdid("DUMMY1", block);
        EXPECT_EQ(frames()[0].first, "DUMMY0");
        EXPECT_EQ(frames()[1].first, "DUMMY1");
        for (const Screen& twin : desktop->screens.screens()) {
            EXPECT_EQ(twin.model, "QLO-1234-4711");
            EXPECT_EQ(twin.connector, twin.stableID);
        }
        setEdid("DUMMY1", {});
    }
    setEdid(output, {});
    EXPECT_EQ(frames().front().first, output);
}

TEST_F(ScreensTest, AScreenSaverMakesTheScreenBlank) {
    EXPECT_EQ(desktop->screens.state(), ScreenState::shown);
    for (const bool on : {true, false}) {
        forceScreenSaver(on ? XCB_SCREEN_SAVER_ACTIVE : XCB_SCREEN_SAVER_RESET);
        EXPECT_EQ(desktop->screens.state(), on ? ScreenState::blank : ScreenState::shown);
    }
}

TEST_F(ScreensTest, TheServerWithinAWaylandSessionIsRefusedByItsMonitorsName) {
    Monitors::xrandr({"--setmonitor", "XWAYLAND0", "640/200x480/150+0+0", "none"});
    const auto refused = X11Desktop::create(executor, {});
    Monitors::xrandr({"--delmonitor", "XWAYLAND0"});
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().kind, ErrorKind::unavailable);
    EXPECT_TRUE(refused.error().text.contains("X11 (Xorg) session")) << refused.error().text;
    EXPECT_TRUE(X11Desktop::create(executor, {}));
}

}  // namespace
}  // namespace quillo::x11test
