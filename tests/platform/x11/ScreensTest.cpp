// Monitors: their identity, what panels leave of them, and what plugging changes.
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
    int xrandr(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "xrandr");
        return sharedDesktop().run(arguments);
    }
};

TEST_F(ScreensTest, TwoMonitorsAndAPanelOnOne) {
    if (PrivateDesktop::isDummy()) GTEST_SKIP() << "for Xvfb; see Plugging";
    // Its exit status is of no use: it complains and works.
    xrandr({"--setmonitor", "LEFT", "1280/300x1000/340+0+0", "screen"});
    xrandr({"--setmonitor", "RIGHT", "1280/300x1024/340+1280+0", "none"});
    const Named two{{"LEFT", {0, 0, 1280, 1000}}, {"RIGHT", {1280, 0, 1280, 1024}}};
    EXPECT_TRUE(eventually([&] { return frames() == two; }));
    open({"--class", "Panel", "--type", "dock", "--geometry", "1280,0,1280,40", "--strut",
          "0,0,40,0,0,0,0,0,1280,2559,0,0"});
    ASSERT_TRUE(eventually([&] {
        nextTurn();
        return desktop->applications.running("panel").has_value();
    }));
    const auto screens = desktop->screens.screens();
    EXPECT_EQ(screens[0].visibleFrame, screens[0].frame);
    EXPECT_EQ(screens[1].visibleFrame, Rect(1280, 40, 1280, 984));
    const auto spaces = desktop->windowServer.displaySpaces();
    ASSERT_EQ(spaces.size(), 2u);
    EXPECT_EQ(spaces[0].displayID, "LEFT");
    EXPECT_EQ(spaces[0].spaces.size(), spaces[1].spaces.size());
    xrandr({"--delmonitor", "LEFT"});
    xrandr({"--delmonitor", "RIGHT"});
    EXPECT_TRUE(eventually([&] { return frames().size() == 1; }));
}

TEST_F(ScreensTest, Plugging) {
    if (!PrivateDesktop::isDummy()) GTEST_SKIP() << "needs QUILLO_TEST_SERVER=dummy";
    xrandr({"--output", "DUMMY0", "--mode", "1280x1024", "--primary"});
    xrandr({"--addmode", "DUMMY1", "1024x768"});
    xrandr({"--output", "DUMMY1", "--mode", "1024x768", "--right-of", "DUMMY0"});
    xrandr({});
    const Named two{{"DUMMY0", {0, 0, 1280, 1024}}, {"DUMMY1", {1280, 0, 1024, 768}}};
    EXPECT_TRUE(eventually([&] { return frames() == two; }));
    xrandr({"--output", "DUMMY1", "--primary"});
    EXPECT_TRUE(eventually([&] { return frames() == Named(two.rbegin(), two.rend()); }))
        << "the primary one first";
    xrandr({"--output", "DUMMY0", "--primary"});
    xrandr({"--addmode", "DUMMY1", "800x600"});
    xrandr({"--output", "DUMMY1", "--mode", "800x600"});
    EXPECT_TRUE(eventually([&] { return frames().back().second == Rect(1280, 0, 800, 600); }));
    xrandr({"--output", "DUMMY1", "--off"});
    EXPECT_TRUE(eventually([&] { return frames() == Named{two.front()}; }));
}

}  // namespace
}  // namespace quillo::x11test
