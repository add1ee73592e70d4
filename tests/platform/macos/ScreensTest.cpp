// Screens: from AppKit's corner to the engine's, and who they are.
#include "platform/macos/MacScreens.hpp"
#include "tests/platform/macos/MacTest.hpp"
#include "tests/platform/macos/fakes/FakeDisplays.hpp"

namespace quillo {
namespace {

using fakes::FakeDisplays;

constexpr std::string_view scene = R"({
  "displays": [{"id": "LAPTOP", "frame": [0, 0, 1512, 982], "visibleFrame": [0, 37, 1512, 900]},
               {"id": "ABOVE", "frame": [-200, -1080, 1920, 1080], "scale": 1}],
  "applications": []})";

class ScreensTest : public MacTest {
  protected:
    std::unique_ptr<SimulatedDesktop> desktop_ = SimulatedDesktop::create(scene, "scene").value();
    fakes::FakeMac mac_{*desktop_};
    FakeDisplays& displays_ = mac_.part<FakeDisplays>();
};

TEST_F(ScreensTest, AreFlippedAgainstThePrimaryScreensHeight) {
    const auto natives = displays_.screens();
    EXPECT_EQ(natives[0].visibleFrame, (Rect{0, 45, 1512, 900}));
    EXPECT_EQ(natives[1].frame, (Rect{-200, 982, 1920, 1080}));
    const auto screens = MacScreens([this] { return displays_.screens(); }).screens();
    ASSERT_EQ(screens.size(), 2U);
    EXPECT_EQ(screens[0].frame, (Rect{0, 0, 1512, 982}));
    EXPECT_EQ(screens[0].visibleFrame, (Rect{0, 37, 1512, 900}));
    EXPECT_EQ(screens[1].frame, (Rect{-200, -1080, 1920, 1080}));
    EXPECT_EQ(screens[1].scale, 1);
    EXPECT_TRUE(MacScreens([] { return std::vector<NativeScreen>(); }).screens().empty());
}

TEST_F(ScreensTest, CarryTheDisplaysUuidWhereItTellsThemApart) {
    auto natives = displays_.screens();
    MacScreens screens([&] { return natives; });
    const auto ids = [&] {
        std::vector<std::string> all;
        for (const Screen& screen : screens.screens()) all.push_back(screen.stableID.value_or("none"));
        return all;
    };
    using Ids = std::vector<std::string>;
    const std::string laptop = "4C415054-4F50-0000-0000-000000000000", above = FakeDisplays::uuidOf("ABOVE");
    EXPECT_EQ(ids(), (Ids{laptop, above}));
    displays_.withoutUuid = {"LAPTOP"};
    EXPECT_EQ(ids(), (Ids{"none", above}));
    displays_.withoutUuid.clear();
    desktop_->world().unplug("ABOVE");  // since they were listed
    EXPECT_EQ(ids(), (Ids{laptop, "none"}));
    natives[1].displayNumber = natives[0].displayNumber;
    EXPECT_EQ(ids(), (Ids{laptop, "none"}));
    natives[0].displayNumber.reset();
    EXPECT_EQ(ids(), (Ids{"none", laptop}));
}

TEST_F(ScreensTest, TellWhetherAnythingIsToBeSeen) {
    MacScreens screens([this] { return displays_.screens(); });
    EXPECT_EQ(screens.state(), ScreenState::shown);
    displays_.onConsole = false;
    EXPECT_EQ(screens.state(), ScreenState::locked);
    displays_.onConsole = true;
    for (const auto& [fault, state] : {std::pair{simulated::FaultKind::screenBlank, ScreenState::blank},
                                       std::pair{simulated::FaultKind::screenLocked, ScreenState::locked}}) {
        desktop_->world().add(simulated::Fault{fault, {}, {}, {}});
        EXPECT_EQ(screens.state(), state);
    }
}

}  // namespace
}  // namespace quillo
