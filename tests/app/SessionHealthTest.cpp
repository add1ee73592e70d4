// Automatic snapshots of a desktop that nobody wants back are left out, and the person is told.
#include "tests/app/ModelFixture.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using samples::Model;
using simulated::FaultKind;

simulated::Scene withWindows(std::int64_t count) {
    std::vector<samples::SceneWindow> windows;
    for (std::int64_t i = 0; i < count; ++i)
        windows.push_back(samples::sceneWindow("W" + std::to_string(i), {10.0 * double(i), 40, 400, 300}));
    return samples::scene({samples::sceneApplication("org.editor", windows)});
}

TEST(SessionHealth, TheLastGoodSessionStaysUntilTheDesktopIsHealthyAgain) {
    const struct {
        const char* why;
        std::function<void(Model&)> spoil, mend;
    } cases[] = {
        {"other applications' windows cannot be read", [](Model& m) { m.setTrusted(false); },
         [](Model& m) { m.setTrusted(true); }},
        {"the screen is locked",
         [](Model& m) { m.desktop.world().add(samples::fault(FaultKind::screenLocked, {}, 0, 1200)); },
         {}},
        {"the screen is blank",
         [](Model& m) { m.desktop.world().add(samples::fault(FaultKind::screenBlank, {}, 0, 1200)); },
         {}},
        {"no display is attached",
         [](Model& m) {
             for (const char* display : {"side", "main"}) m.desktop.world().unplug(display);
         },
         [](Model& m) {
             m.desktop.world().plug(
                 {.id = "main", .frame = samples::mainFrame, .visibleFrame = samples::mainFrame});
         }},
    };
    for (const auto& c : cases) {
        Model model(withWindows(4));
        model.change([](AppSettings& settings) { settings.autoSnapshotMinutes = 10; });
        model.run(1s);
        const std::vector<Workspace> good = model->sessions();
        ASSERT_EQ(good.size(), 1U);
        c.spoil(model);
        model.desktop.world().move(*model.desktop.world().window(101), {50, 60, 300, 300});
        model.run(15min);
        EXPECT_EQ(model->autoSnapshotSkipped(), c.why);
        EXPECT_EQ(model->sessions(), good) << c.why;
        if (c.mend) c.mend(model);
        model.run(6min);
        EXPECT_FALSE(model->autoSnapshotSkipped()) << c.why;
        EXPECT_EQ(model->sessions().size(), 2U) << c.why << ": within a minute, not after the interval";
    }
}

TEST(SessionHealth, ASessionThatEndsIsNotSavedAndAPersonIsWarned) {
    Model model(withWindows(7));
    model.change([](AppSettings& settings) { settings.autoSnapshotMinutes = 10; });
    model.run(5min);
    const std::vector<Workspace> good = model->sessions();
    const auto close = [&](WindowNumber first, WindowNumber last) {
        for (WindowNumber number = first; number <= last; ++number) model.desktop.world().close(number);
    };
    close(101, 103);
    model.run(30s);
    model->captureSession();
    model.run(1s);
    EXPECT_EQ(model->sessions().size(), 2U) << "three of seven: somebody tidied up";
    close(104, 105);
    model.run(20s);
    const auto held = model.power.emit(PowerEvent::willPowerOff);
    model.run(1s);
    EXPECT_TRUE(held.expired());
    EXPECT_EQ(model->autoSnapshotSkipped(), "more than half of the windows have gone within a minute");
    EXPECT_EQ(model->sessions().size(), 2U);
    model->beginCapture();
    EXPECT_EQ(
        model.review().warning(),
        "This may not be the desktop that you want back: more than half of the windows have gone within "
        "a minute.");
    EXPECT_FALSE(model.review().snapshot().notes) << "it is no part of what is saved";
    model->dismissDraft();
    model.run(2min);
    EXPECT_FALSE(model->autoSnapshotSkipped());
    EXPECT_EQ(model->sessions().size(), 3U) << "it was no end";
    EXPECT_EQ(model->sessions().back().snapshot, good.front().snapshot);
    model->beginCapture();
    EXPECT_TRUE(model.review().warning().empty());
}

}  // namespace
}  // namespace quillo
