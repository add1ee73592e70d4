// The settings, by mouse and keyboard: what is switched is stored and applied at once.
#include <QQmlProperty>

#include "WindowEngine/integrations/Adapters.hpp"
#include "app/gui/SettingsPresenter.hpp"
#include "app/gui/ShortcutsPresenter.hpp"
#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

class SettingsTest : public samples::GuiTest {
  protected:
    explicit SettingsTest(Capability updating = Capability::available())
        : GuiTest(samples::Model::desk(), std::move(updating)) {}
    void openPane(const QString& pane, QSize size = {1080, 720}) {
        interface->openSettings(pane);
        open(size);
    }
    SettingsPresenter& settings() { return presenter<SettingsPresenter>("Settings"); }
    const AppSettings& stored() {
        now = AppSettings::load(model.defaults);
        EXPECT_EQ(now, model->settings());
        return now;
    }

    /// A menu or a dialog fades away, and until then the page below it hears nothing.
    void awaitNoPopup() {
        ASSERT_TRUE(until([&] {
            return std::ranges::none_of(main()->contentItem()->childItems(), [](QQuickItem* item) {
                return item->inherits("QQuickOverlay") && item->isVisible();
            });
        }));
    }

    AppSettings now;
};

TEST_F(SettingsTest, ControlsAreWhatTheyLookLikeToAssistivePrograms) {
    openPane("general");
    const struct {
        const char* name;
        QAccessible::Role role;
        bool checked;
    } controls[] = {
        {"Open Quillo at login", QAccessible::CheckBox, settings().openAtLogin()},
        {"Global shortcuts", QAccessible::CheckBox, true},
        {"System", QAccessible::RadioButton, true},
        {"Dark", QAccessible::RadioButton, false},
        {"Privacy", QAccessible::PageTab, false},
        {"Back to workspaces · esc", QAccessible::Button, false},
    };
    for (const auto& control : controls) {
        const auto same = [&](QAccessibleInterface* face) { return face->role() == control.role; };
        QQuickItem* item = named(control.name, same);
        ASSERT_TRUE(item) << control.name;
        EXPECT_EQ(bool(QAccessible::queryAccessibleInterface(item)->state().checked), control.checked)
            << control.name;
    }
}

TEST_F(SettingsTest, WhatIsSwitchedIsStoredAtOnce) {
    openPane("general");
    EXPECT_TRUE(named("Allowed"));
    const bool login = settings().openAtLogin();
    click("Open Quillo at login");
    EXPECT_EQ(model.loginItem.current == LoginItemStatus::enabled, !login);
    click("Dark");
    EXPECT_EQ(stored().appearance, Appearance::dark);
    EXPECT_EQ(model.shell.appearances.back(), Appearance::dark);
    click("Global shortcuts");
    EXPECT_FALSE(stored().shortcutsEnabled);
    EXPECT_FALSE(named("Shortcut for saving: Ctrl+Alt+Super+S")) << "it works though shortcuts are off";

    EXPECT_FALSE(named("Snapshot interval: Every 10 minutes"));
    click("Save the last session");
    EXPECT_EQ(stored().autoSnapshotMinutes, 10);
    click("Snapshot interval: Every 10 minutes");
    press(Qt::Key_Down);
    press(Qt::Key_Return);
    EXPECT_EQ(stored().autoSnapshotMinutes, 30);
    awaitNoPopup();
    click("Save the last session");
    EXPECT_EQ(stored().autoSnapshotMinutes, 0);

    EXPECT_TRUE(updates.automaticUpdates());
    click("Automatic updates");
    EXPECT_FALSE(updates.automaticUpdates());
    click("Offer layouts of other displays");
    EXPECT_FALSE(stored().offersLayouts);
}

TEST_F(SettingsTest, SaysWhatCannotBe) {
    model.hotKeys.able = Capability::unavailable("No server of keys.");
    model.loginItem.current = LoginItemStatus::requiresApproval;
    model.loginItem.unregisterFailure = Error{ErrorKind::refused, "not now"};
    openPane("general");
    EXPECT_TRUE(named("No server of keys."));
    EXPECT_FALSE(named(ui().text(presenter<ShortcutsPresenter>("Shortcuts").hint())))
        << "how to set what cannot be set";
    model->loginItem().setEnabled(true);  // reads anew
    settle();
    EXPECT_TRUE(named(ui().text("Allow Quillo in System Settings to finish enabling this.")));
    click("Open Quillo at login");
    EXPECT_TRUE(named("Couldn't change launch at login: not now"));
    model.setTrusted(false);
    ASSERT_TRUE(until([&] { return !settings().accessGranted(); }));
    QQuickItem* ofAccess = nullptr;  // the login item has one, too, above it
    named("Allow in Settings", [&](QAccessibleInterface* face) {
        ofAccess = qobject_cast<QQuickItem*>(face->object());
        return false;
    });
    click(ofAccess);
    EXPECT_TRUE(model->promptedForAccessibility());
}

class BareSystemTest : public SettingsTest {
  protected:
    BareSystemTest() : SettingsTest(Capability::unavailable("Others update.")) {
        seen = &bare.access;
        model.hotKeys.able = Capability::unavailable("No server of keys.");
        model.loginItem.able = Capability::unavailable("Not installed.");
        start();
    }
    void TearDown() override { end(); }

    samples::BareDesktop bare{model};
};

TEST_F(BareSystemTest, WhatCannotBeUsedIsNotOffered) {
    openPane("general");
    for (const char* said : {"No server of keys.", "Not installed."}) EXPECT_TRUE(named(said)) << said;
    const auto offered = [&](const char* name) {
        return named(name,
                     [](QAccessibleInterface* face) { return face->role() != QAccessible::StaticText; });
    };
    for (const char* gone : {"Open Quillo at login", "Global shortcuts",
                             "Shortcut for saving: Ctrl+Alt+Super+S", "Automatic updates", "Integrations"})
        EXPECT_FALSE(offered(gone)) << gone;
    for (const char* gone : {"Accessibility", "Automatic updates"}) EXPECT_FALSE(named(gone)) << gone;
    click("Privacy");
    EXPECT_FALSE(named("Excluded websites"));
    click("About");
    EXPECT_TRUE(named("Others update."));
}

TEST_F(SettingsTest, WithoutATrayClosingTheWindowIsAskedAboutOnceAndRemembered) {
    tray = false;
    openPane("about");
    const auto closed = [&] { return until([&] { return !interface->windows().mainOpen(); }); };
    main()->close();
    ASSERT_TRUE(until([&] { return named("Keep Running") != nullptr; }));
    press(Qt::Key_Escape);
    awaitNoPopup();
    EXPECT_EQ(stored().withoutTray, WithoutTray::ask) << "nothing was chosen";
    main()->close();
    ASSERT_TRUE(until([&] { return named("Cancel") && named("Cancel")->hasActiveFocus(); }));
    press(Qt::Key_Right);
    press(Qt::Key_Return);
    ASSERT_TRUE(closed());
    EXPECT_EQ(stored().withoutTray, WithoutTray::keepRunning);
    openPane("general");
    main()->close();
    ASSERT_TRUE(closed());
    EXPECT_EQ(quits, 0);

    openPane("general");
    click("Quit");
    EXPECT_EQ(stored().withoutTray, WithoutTray::quit);
    // What a restore does is not cut off.
    model.put({"Work"});
    model->restore(model.named("Work"), {});
    main()->close();
    ASSERT_TRUE(closed());
    settle();
    EXPECT_EQ(quits, 0);
    model.finishRestore();
    model->closeRestorePanel();  // which has the keyboard now, so it would stay
    EXPECT_TRUE(until([&] { return quits == 1; }));
    // In a tray it stays, whatever was chosen.
    tray = true;
    openPane("general");
    EXPECT_FALSE(named("When the window is closed"));
    main()->close();
    ASSERT_TRUE(closed());
    settle();
    EXPECT_EQ(quits, 1);
}

TEST_F(SettingsTest, ACombinationIsRecordedByKeysAlone) {
    openPane("general");
    named("Shortcut for saving: Ctrl+Alt+Super+S")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    ASSERT_EQ(keys.monitors(), 1U);
    EXPECT_EQ(model.hotKeys.registrations(), 0U) << "its own combinations would act instead of being heard";
    EXPECT_TRUE(named("Shortcut for saving: Press a new key combination"));
    keys.press({.keyCode = 0, .modifiers = modifier::shift, .characters = "a"});
    EXPECT_EQ(keys.monitors(), 1U) << "shift alone is no shortcut";
    keys.press({.keyCode = 0, .modifiers = modifier::option | modifier::shift, .characters = "a"});
    settle();
    EXPECT_EQ(stored().shortcut(HotKeyAction::save).label(), "⌥⇧A");
    EXPECT_TRUE(named("Shortcut for saving: Alt+Shift+A"));
    click("Shortcut for the switcher: Ctrl+Alt+Super+R");
    keys.press({.keyCode = 0, .modifiers = modifier::option | modifier::shift, .characters = "a"});
    settle();
    EXPECT_TRUE(named("Already another shortcut of Quillo — pick a different combination."));
    model.change([](AppSettings& settings) { settings.shortcuts.erase("2"); });

    click("Shortcut for saving: Alt+Shift+A");
    click("Shortcut for the switcher: Ctrl+Alt+Super+R");
    EXPECT_EQ(keys.monitors(), 1U) << "one records at a time";
    click("Privacy");
    EXPECT_EQ(keys.monitors(), 0U) << "nothing records unseen";
    EXPECT_EQ(model.hotKeys.registrations(), 2U);
}

TEST_F(SettingsTest, AWorkspaceGetsAndLosesAShortcutOnItsPage) {
    const Uuid id = keepExample();
    open();
    ui().openDetail(QString::fromStdString(id.lower()));
    settle();
    click("Shortcut and Automation…");
    settle();
    click("Shortcut for this workspace: None");
    keys.press({.keyCode = 1, .modifiers = 0x1900, .characters = "s"});
    settle();
    EXPECT_TRUE(named("Already another shortcut of Quillo — pick a different combination."));
    click("Shortcut for this workspace: Ctrl+Alt+Super+S");
    keys.press({.keyCode = 18, .modifiers = modifier::control, .characters = "1"});
    settle();
    EXPECT_EQ(stored().automationOf(id).shortcut, (Shortcut{18, modifier::control, "1"}));
    click("Shortcut for this workspace: Ctrl+1");
    keys.press({.keyCode = 51, .modifiers = 0, .characters = ""});
    settle();
    EXPECT_TRUE(named("Shortcut for this workspace: None"));
    EXPECT_TRUE(stored().automation.empty());
    for (const char* name : {"After login", "Weekdays", "When others ask, without a question"}) click(name);
    for (const auto& [typed, minute] : {std::pair{"7.45", 465}, {"noon", 465}, {"8", 480}}) {
        QQuickItem* const time = named("Time of day, as 09:30");
        ASSERT_TRUE(time);
        time->forceActiveFocus();
        time->setProperty("text", typed);
        press(Qt::Key_Return);
        EXPECT_EQ(stored().automationOf(id).minute, minute);
        EXPECT_EQ(named("“noon” is no time. Write it as 09:30.") != nullptr, QString(typed) == "noon");
    }
    WorkspaceAutomation chosen{.withoutAsking = true, .atLogin = true};
    chosen.days = Days::weekdays;
    chosen.minute = 480;
    EXPECT_EQ(stored().automationOf(id), chosen);
}

TEST_F(SettingsTest, OfTroubleIsToldOnEveryPaneUntilItIsDismissed) {
    ASSERT_TRUE(model.defaults.setData(AppSettings::defaultsKey, "{"));
    start();
    model->dismissToast();
    openPane("general");
    const QString told = settings().trouble().value(0);
    EXPECT_TRUE(named(told)) << told.toStdString();
    click("Privacy");
    click("Dismiss");
    EXPECT_FALSE(named(told) || model->settingsTrouble());
}

TEST_F(SettingsTest, AnEarlierSessionComesBack) {
    model.save("Desk");
    WorkspaceSnapshot snapshot = model->workspaces().front().snapshot;
    for (int i = 0; i < 3; ++i) {
        snapshot.capturedAt = Instant{std::chrono::hours{24 * (i + 1)}};
        ASSERT_TRUE(saveSession(model.history, model.known, snapshot, snapshot.capturedAt));
        snapshot.applications.front().windows.front().title = "Page " + std::to_string(i);
    }
    model.disk.tellWatchers();
    ASSERT_TRUE(until([&] { return model->sessions().size() == 3; }));
    openPane("general");
    const Workspace middle = model->sessions().at(1);
    named("Restore earlier…")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    press(Qt::Key_Return);
    ASSERT_TRUE(model->restoreRun());
    EXPECT_EQ(model->restoreRun()->workspace().id, middle.id);
    EXPECT_FALSE(named("Restore last session")) << "offered while one runs";
    model.finishRestore();
    awaitNoPopup();
    click("Restore last session");
    EXPECT_EQ(model->restoreRun()->workspace().id, SessionHistory::latestID);
}

TEST_F(SettingsTest, WhatIsOpenedOrReachedIsSeenWhole) {
    model.change([](AppSettings& settings) { settings.autoSnapshotMinutes = 10; });
    openPane("general", {760, 520});
    const auto place = [&](const QString& name) {
        QQuickItem* const item = named(name);
        return item ? placeOf(*item) : QRectF();
    };
    named("Automatic updates")->forceActiveFocus(Qt::TabFocusReason);
    const QString words = "Check hourly and prepare updates without interrupting your work.";
    EXPECT_TRUE(until([&] { return place(words).bottom() <= 500; }))
        << "the end of its group is below the window";
    const QString interval = "Snapshot interval: " + settings().intervals().at(settings().interval());
    named(interval)->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    ASSERT_TRUE(until([&] { return place("Every hour").isValid(); }));
    for (const QString& choice : {settings().intervals().front(), settings().intervals().back()}) {
        EXPECT_FALSE(place(choice).intersects(place(interval)))
            << choice.toStdString() << " is over its button";
    }
}

TEST_F(SettingsTest, FromRightToLeftEveryPageBeginsAtTheRight) {
    openPane("about");
    QQuickItem* const root = qobject_cast<QQuickView*>(main())->rootObject();
    for (const char* property : {"LayoutMirroring.enabled", "LayoutMirroring.childrenInherit"})
        QQmlProperty::write(root, property, true, qmlContext(root));
    settle();
    EXPECT_GT(named("Version " + settings().version())->mapToScene({0, 0}).x(), 540);
}

TEST_F(SettingsTest, ExclusionsAreAddedAndTakenAway) {
    openPane("privacy");
    click("Exclude a running app…");
    click("org.editor");
    awaitNoPopup();
    EXPECT_EQ(stored().excludedBundleIdentifiers, std::set<std::string>{"org.editor"});
    click("Exclude a running app…");
    EXPECT_FALSE(named("No other app is running")) << "it can be picked";
    press(Qt::Key_Escape);
    awaitNoPopup();
    click("Stop excluding org.editor");
    EXPECT_TRUE(stored().excludedBundleIdentifiers.empty());

    click("Website to exclude");
    type("https:///");
    press(Qt::Key_Return);
    EXPECT_TRUE(stored().excludedDomains.empty());
    EXPECT_EQ(named("Website to exclude")->property("text").toString(), "https:///") << "it can be mended";
    press(Qt::Key_A, Qt::ControlModifier);
    type("HTTPS://Bank.example/cart");
    click("Add");
    type("a.example");
    press(Qt::Key_Return);
    EXPECT_EQ(stored().excludedDomains, (std::set<std::string>{"a.example", "bank.example"}));
    EXPECT_EQ(named("Website to exclude")->property("text").toString(), "");
    click("Remove bank.example");
    EXPECT_EQ(stored().excludedDomains, std::set<std::string>{"a.example"});
}

TEST_F(SettingsTest, EverythingIsDeletedOnlyAfterAsking) {
    model.put({"One", "Two"});
    openPane("privacy");
    click("Delete all workspace data…");
    press(Qt::Key_Return);  // the harmless answer has the keyboard
    settle();
    EXPECT_EQ(model->workspaces().size(), 2U);
    awaitNoPopup();
    click("Delete all workspace data…");
    click("Delete Everything");
    EXPECT_TRUE(model->workspaces().empty());
}

TEST_F(SettingsTest, IntegrationsAndPanesByKeyboard) {
    openPane("general");
    named("General")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Down);
    EXPECT_EQ(ui().settingsPane(), "integrations");
    const auto first = Adapters::all().front();
    click(QString::fromStdString(first->name(model.desktop.access.platform)));
    EXPECT_EQ(stored().enabledAdapters, std::set<std::string>{first->id()});
    click(QString::fromStdString(first->name(model.desktop.access.platform)));
    EXPECT_TRUE(stored().enabledAdapters.empty());
    named("Integrations")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(ui().settingsPane(), "about");
    EXPECT_TRUE(named("Version " + settings().version()));
    updates.setAutomaticUpdates(true);
    updater.findUpdate("2.0");
    settle();
    EXPECT_TRUE(named("Update available · 2.0"));
    updater.finishDownload("2.0");
    model.put({"Work"});
    model->restore(model.named("Work"), {});
    settle();
    EXPECT_TRUE(named(AppModel::relaunchRefusal));
    EXPECT_FALSE(named("Relaunch to Update")) << "offered during a restore";
    model.finishRestore();
    settle();
    click("Relaunch to Update");
    EXPECT_EQ(updater.installed, std::vector<std::string>{"2.0"});
}

}  // namespace
}  // namespace quillo
