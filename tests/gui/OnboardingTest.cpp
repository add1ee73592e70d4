// The introduction from its first page to the first capture, by mouse and keyboard.
#include "app/gui/OnboardingPresenter.hpp"
#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

using namespace samples;

class OnboardingTest : public GuiTest {
  protected:
    OnboardingTest() {
        model.change([](AppSettings& settings) { settings.onboarded = false; });
    }
    OnboardingPresenter& onboarding() { return presenter<OnboardingPresenter>("Onboarding"); }
    bool storedAsOnboarded() { return AppSettings::load(model.defaults).onboarded; }
};

TEST_F(OnboardingTest, ReturnLeadsToTheFirstCapture) {
    open();
    EXPECT_TRUE(named("Pick up where you left off."));
    press(Qt::Key_Return);
    EXPECT_TRUE(named("Allow window access."));
    const QRectF button = placeOf(*named("Continue"));
    EXPECT_TRUE(named("Access is on. You can go on."));
    EXPECT_FALSE(named("Waiting for access…"));
    press(Qt::Key_Return);
    EXPECT_TRUE(named("Two shortcuts to remember."));
    EXPECT_EQ(placeOf(*named("Continue")), button) << "whoever clicks through need not follow it";
    press(Qt::Key_Return);
    EXPECT_TRUE(named("Save your first workspace."));
    press(Qt::Key_Escape);
    click("Back");
    EXPECT_TRUE(named("Allow window access."));
    click("Continue");
    click("Continue");
    EXPECT_EQ(ui().page(), "onboarding");
    click("Save current desktop");
    EXPECT_TRUE(storedAsOnboarded());
    EXPECT_EQ(ui().page(), "review");
    EXPECT_TRUE(model->capturing());
}

/// Drawn between pixels, an edge or a corner of it is lost. What leans is not meant.
void expectWholePixels(const QQuickItem& item, bool picture = false) {
    if (item.rotation() != 0) return;
    picture = picture || QString(item.metaObject()->className()).startsWith("OnboardingPicture");
    if (picture && item.inherits("QQuickRectangle")) {
        const QRectF place = item.mapRectToScene({0, 0, item.width(), item.height()});
        EXPECT_EQ(place, QRectF(place.toAlignedRect()))
            << place.x() << " " << place.y() << " " << place.width();
    }
    for (const QQuickItem* child : item.childItems()) expectWholePixels(*child, picture);
}

TEST_F(OnboardingTest, ThePicturesAreSharpInEveryWindow) {
    for (const QSize size : {QSize(1024, 700), QSize(1440, 900), QSize(761, 521)}) {
        open(size);
        for (int place = 0; place < onboarding().steps(); ++place) {
            EXPECT_EQ(onboarding().place(), place);
            settle();
            expectWholePixels(*main()->contentItem());
            onboarding().next();
        }
        while (onboarding().place() > 0) onboarding().back();
    }
}

TEST_F(OnboardingTest, OnlyWhatThereIsIsSpokenOf) {
    BareDesktop bare(model);
    seen = &bare.access;
    model.hotKeys.able = Capability::unavailable("No keys.");
    start();
    open();
    EXPECT_EQ(onboarding().steps(), 2);
    click("Continue");
    EXPECT_TRUE(
        named("Review what's open, remove anything private, then save. Open documents and folders are "
              "saved too."));
    click("Back");
    EXPECT_TRUE(named("Pick up where you left off."));
    press(Qt::Key_Escape);
    EXPECT_EQ(onboarding().place(), 0);
    end();
}

TEST_F(OnboardingTest, AccessThatComesLeadsOn) {
    model.setTrusted(false);
    ASSERT_TRUE(until([&] { return !model->accessibilityGranted(); }));
    open();
    click("Continue");
    EXPECT_TRUE(named("Waiting for access…"));
    EXPECT_FALSE(named("Continue"));
    model.setTrusted(true);
    ASSERT_TRUE(until([&] { return onboarding().step() == "shortcuts"; }));
    // Only the step that waits for it goes on by itself.
    model.setTrusted(false);
    ASSERT_TRUE(until([&] { return !model->accessibilityGranted(); }));
    model.setTrusted(true);
    ASSERT_TRUE(until([&] { return model->accessibilityGranted(); }));
    EXPECT_EQ(onboarding().step(), "shortcuts");
    press(Qt::Key_Return);
    click("Skip for now");
    EXPECT_TRUE(storedAsOnboarded());
    EXPECT_EQ(ui().page(), "library");
    EXPECT_FALSE(model->capturing());
}

TEST_F(OnboardingTest, TheSettingsAreOpenedWhereTheyHaveAPageForIt) {
    model.setTrusted(false);
    ASSERT_TRUE(until([&] { return !model->accessibilityGranted(); }));
    open();
    press(Qt::Key_Return);
    EXPECT_TRUE(named("Allow window access."));
    EXPECT_TRUE(named("Privacy & Security → Accessibility → turn on Quillo"));
    click("Open System Settings");
    EXPECT_TRUE(model->promptedForAccessibility());
    EXPECT_EQ(onboarding().step(), "access");
}

}  // namespace
}  // namespace quillo
