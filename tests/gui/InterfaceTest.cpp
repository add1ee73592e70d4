// The whole interface over the model: its windows and panels come and go, and everything in them has a name.
#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

using InterfaceTest = samples::GuiTest;

TEST_F(InterfaceTest, EveryControlOnEverySurfaceHasAName) {
    onEverySurface([](QQuickWindow& window, const char*) { expectNames(window); });
}

TEST_F(InterfaceTest, TheLibraryStandsInForAWorkspaceThatIsDeletedWhileItIsOpen) {
    model->openMain();
    interface->openDetail(keepExample());
    model->deleteWorkspace(model->workspaces().at(0));
    EXPECT_EQ(interface->ui().page(), "library");
    settle();
    expectNames(*main());
}

TEST_F(InterfaceTest, ClosingTheMainWindowLeavesThePanelAndTheProgram) {
    Windows& windows = interface->windows();
    model->openMain();
    model->openMain();
    ASSERT_TRUE(windows.mainWindow());
    keepExample();
    model->restore(model->workspaces().at(0), {});
    windows.mainWindow()->close();
    QTest::qWait(1);
    EXPECT_FALSE(windows.mainOpen());
    EXPECT_EQ(model.shell.policies.back(), ActivationPolicy::accessory);
    EXPECT_TRUE(windows.panelVisible(PanelID::restore));
    // Escape closes the panel and stops the restore.
    QTest::keyClick(windows.panelWindow(PanelID::restore), Qt::Key_Escape);
    EXPECT_TRUE(until([&] { return !windows.panelVisible(PanelID::restore) && !model->restoreRunning(); }));
    EXPECT_TRUE(model->restoreRun()->report()->cancelled);
    // Another start of the program asks for the window.
    interface->askForMainWindow();
    EXPECT_TRUE(windows.mainOpen());
    EXPECT_EQ(model.shell.policies.back(), ActivationPolicy::regular);
}

TEST_F(InterfaceTest, FiftyOpeningsLeaveNothingBehind) {
    Windows& windows = interface->windows();
    for (int i = 0; i < 50; ++i) {
        model->openMain();
        model->toggleSwitcher();
        QTest::qWait(1);
        model->toggleSwitcher();
        windows.mainWindow()->close();
        QTest::qWait(1);
        EXPECT_FALSE(windows.mainOpen() || windows.panelVisible(PanelID::switcher));
    }
    // The switcher stays, out of sight.
    EXPECT_TRUE(until([] { return QGuiApplication::allWindows().size() == 1; }));
    EXPECT_FALSE(QGuiApplication::allWindows().first()->isVisible());
}

/// Rows that a list has dropped are deleted a turn later and slide on until then, which without their engine
/// is a crash.
TEST_F(InterfaceTest, NothingOfAListOutlivesItsEngine) {
    model->openMain();
    model->beginCapture();
    ASSERT_TRUE(until([&] { return model->draft() != nullptr; }));
    settle();
    model->dismissDraft();
    ASSERT_FALSE(qApp->findChildren<QQuickItem*>().isEmpty());
    interface->detach();
    EXPECT_TRUE(qApp->findChildren<QQuickItem*>().isEmpty());
}

}  // namespace
}  // namespace quillo
