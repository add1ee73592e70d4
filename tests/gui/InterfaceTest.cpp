// The whole interface over the model: its windows and panels come and go, and everything in them has a name.
#include <QAccessible>

#include "app/UpdateController.hpp"
#include "app/gui/Interface.hpp"
#include "platform/simulated/SimulatedKeyMonitor.hpp"
#include "platform/simulated/SimulatedUpdater.hpp"
#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using samples::Model;

class InterfaceTest : public testing::Test {
  protected:
    InterfaceTest() {
        Workspace workspace = samples::example();
        workspace.name = "Work";
        EXPECT_TRUE(desk.store.save(workspace));
        model = std::make_unique<AppModel>(AppServices{desk.desktop.access, desk.disk, desk.directory.path(),
                                                       desk.defaults, desk.hotKeys, desk.loginItem,
                                                       desk.power, desk.shell, interface});
        interface.attach(*model);
    }

    void TearDown() override {
        interface.detach();
        model.reset();
    }

    bool until(const std::function<bool()>& condition) {
        for (int turn = 0; turn < 500 && !condition(); ++turn) {
            desk.run(20ms);
            QTest::qWait(1);
        }
        return condition();
    }
    /// Every control that takes the keyboard or a press has a name, and there are some.
    static void expectNames(QQuickWindow* window, const char* where) {
        ASSERT_TRUE(window) << where;
        for (int turn = 0; turn < 5; ++turn) QTest::qWait(1);
        int controls = 0;
        walk(window->contentItem(), [&](const QQuickItem& item) {
            QAccessibleInterface* face =
                QAccessible::queryAccessibleInterface(const_cast<QQuickItem*>(&item));
            if (!face) return;
            const bool pressed = face->actionInterface() && face->actionInterface()->actionNames().contains(
                                                                QAccessibleActionInterface::pressAction());
            if (!pressed && !item.activeFocusOnTab()) return;
            ++controls;
            EXPECT_FALSE(face->text(QAccessible::Name).trimmed().isEmpty())
                << where << ": a nameless " << item.metaObject()->className() << " at "
                << item.mapToScene({}).x() << ", " << item.mapToScene({}).y();
        });
        EXPECT_GT(controls, 0) << where;
    }
    static void walk(QQuickItem* item, const std::function<void(const QQuickItem&)>& visit) {
        if (!item->isVisible() || !item->isEnabled()) return;
        visit(*item);
        for (QQuickItem* child : item->childItems()) walk(child, visit);
    }

    samples::QmlWarnings warnings;
    Model desk;
    Theme theme;
    SimulatedUpdater updater;
    UpdateController updates{updater};
    SimulatedKeyMonitor keys;
    Interface interface{{.theme = theme,
                         .shell = desk.shell,
                         .loginItem = desk.loginItem,
                         .hotKeys = desk.hotKeys,
                         .desktop = desk.desktop.access,
                         .keys = keys,
                         .updates = updates,
                         .variant = TextVariant::onLinux}};
    std::unique_ptr<AppModel> model;
};

TEST_F(InterfaceTest, EveryControlOnEverySurfaceHasAName) {
    Windows& windows = interface.windows();
    AppSettings settings = model->settings();
    settings.onboarded = false;
    model->setSettings(settings);
    model->openMain();
    expectNames(windows.mainWindow(), "onboarding");
    settings.onboarded = true;
    settings.excludedDomains = {"a.example"};
    settings.excludedBundleIdentifiers = {"org.editor"};
    model->setSettings(settings);
    expectNames(windows.mainWindow(), "library");
    interface.openDetail(model->workspaces().at(0).id);
    expectNames(windows.mainWindow(), "detail");
    for (const char* pane : {"general", "integrations", "privacy", "about"}) {
        interface.ui().openSettings(pane);
        expectNames(windows.mainWindow(), pane);
    }
    model->beginCapture();
    ASSERT_TRUE(until([&] { return model->draft() != nullptr; }));
    expectNames(windows.mainWindow(), "review");
    model->dismissDraft();
    model->toggleSwitcher();
    expectNames(windows.panelWindow(PanelID::switcher), "switcher");
    model->toggleSwitcher();
    model->restore(model->workspaces().at(0), {});
    expectNames(windows.panelWindow(PanelID::restore), "restore");
    ASSERT_TRUE(until([&] { return !model->restoreRunning(); }));
}

TEST_F(InterfaceTest, TheLibraryStandsInForAWorkspaceThatIsDeletedWhileItIsOpen) {
    model->openMain();
    interface.openDetail(model->workspaces().at(0).id);
    model->deleteWorkspace(model->workspaces().at(0));
    EXPECT_EQ(interface.ui().page(), "library");
    expectNames(interface.windows().mainWindow(), "library without workspaces");
}

TEST_F(InterfaceTest, ClosingTheMainWindowLeavesThePanelAndTheProgram) {
    Windows& windows = interface.windows();
    model->openMain();
    model->openMain();
    ASSERT_TRUE(windows.mainWindow());
    model->restore(model->workspaces().at(0), {});
    windows.mainWindow()->close();
    QTest::qWait(1);
    EXPECT_FALSE(windows.mainOpen());
    EXPECT_EQ(desk.shell.policies.back(), ActivationPolicy::accessory);
    EXPECT_TRUE(windows.panelVisible(PanelID::restore));
    // Escape closes the panel and stops the restore.
    QTest::keyClick(windows.panelWindow(PanelID::restore), Qt::Key_Escape);
    EXPECT_TRUE(until([&] { return !windows.panelVisible(PanelID::restore) && !model->restoreRunning(); }));
    EXPECT_TRUE(model->restore()->report()->cancelled);
    // Another start of the program asks for the window.
    interface.askForMainWindow();
    EXPECT_TRUE(windows.mainOpen());
    EXPECT_EQ(desk.shell.policies.back(), ActivationPolicy::regular);
}

TEST_F(InterfaceTest, FiftyOpeningsLeaveNothingBehind) {
    Windows& windows = interface.windows();
    for (int i = 0; i < 50; ++i) {
        model->openMain();
        model->toggleSwitcher();
        QTest::qWait(1);
        model->toggleSwitcher();
        windows.mainWindow()->close();
        QTest::qWait(1);
        EXPECT_FALSE(windows.mainOpen() || windows.panelVisible(PanelID::switcher));
    }
    EXPECT_TRUE(until([] { return QGuiApplication::allWindows().isEmpty(); }));
}

}  // namespace
}  // namespace quillo
