// The menu bar of a Mac: each command does what it says, and can be chosen only when that can be done.
#include <gtest/gtest.h>

#include <algorithm>

#include "app/gui/MenuBar.hpp"
#include "platform/simulated/SimulatedUpdater.hpp"
#include "tests/app/ModelFixture.hpp"

namespace quillo {
namespace {

struct MenuBarTest : testing::Test {
    QAction& item(const QString& text) {
        for (QMenu* menu : bar.bar().findChildren<QMenu*>()) {
            for (QAction* action : menu->actions()) {
                if (action->text() == text) return *action;
            }
        }
        throw std::logic_error("no such item");
    }

    samples::Model model;
    SimulatedUpdater updater;
    UpdateController updates{updater};
    std::vector<QString> done;
    MenuBar bar{*model.model,
                updates,
                {.openSettings = [this](const QString& pane) { done.push_back("settings " + pane); },
                 .closeSwitcher = [this] { done.push_back("switcher closed"); },
                 .quit = [this] { done.push_back("quit"); }}};
};

TEST_F(MenuBarTest, EachCommandHasItsPlaceItsKeysAndItsDeed) {
    struct Case {
        const char *text, *keys, *done;
        QAction::MenuRole role;
    };
    const Case cases[] = {
        {"About Quillo", "", "settings about", QAction::AboutRole},
        {"Settings…", "Ctrl+,", "settings ", QAction::PreferencesRole},
        {"Quit Quillo", "Ctrl+Q", "quit", QAction::QuitRole},
        {"Save Current Desktop…", "Ctrl+S", "switcher closed", QAction::NoRole},
    };
    for (const Case& each : cases) {
        QAction& chosen = item(each.text);
        EXPECT_EQ(chosen.shortcut(), QKeySequence(each.keys)) << each.text;
        EXPECT_EQ(chosen.menuRole(), each.role) << each.text;
        chosen.trigger();
        EXPECT_EQ(done.back(), each.done);
    }
    EXPECT_TRUE(model->capturing());
    EXPECT_FALSE(item("Save Current Desktop…").isEnabled());
    model.run(std::chrono::seconds(10));
    ASSERT_TRUE(model->draft());
    EXPECT_FALSE(item("Save Current Desktop…").isEnabled());
    model->dismissDraft();
    EXPECT_TRUE(item("Save Current Desktop…").isEnabled());
    EXPECT_FALSE(item("Restore Last Session").isEnabled());
    model.change([](AppSettings& settings) { settings.autoSnapshotMinutes = 10; });
    model.run(std::chrono::seconds(10));
    item("Restore Last Session").trigger();
    EXPECT_TRUE(model->restoreRunning());
    item("Open Quillo").trigger();
    EXPECT_GT(model.windowsOpened, 0);
}

TEST_F(MenuBarTest, UpdatesAreOfferedWhereThereAreAny) {
    EXPECT_TRUE(item("Check for Updates…").isEnabled());
    updater.setCanCheckForUpdates(false);
    EXPECT_FALSE(item("Check for Updates…").isEnabled());
    EXPECT_FALSE(item("Relaunch to Update").isVisible());
    updater.finishDownload("2.0");
    EXPECT_TRUE(item("Relaunch to Update").isVisible());
    item("Relaunch to Update").trigger();
    EXPECT_EQ(updater.installed, std::vector<std::string>{"2.0"});

    SimulatedUpdater none{Capability::unavailable("a package manager does")};
    UpdateController without{none};
    MenuBar other{*model.model, without, {}};
    QMenu& file = *other.bar().findChild<QMenu*>();
    EXPECT_TRUE(std::ranges::none_of(file.actions(), [](const QAction* action) {
        return action->isVisible() && action->text() == "Check for Updates…";
    }));
}

}  // namespace
}  // namespace quillo
