// Messages and appearance over the services of a mocked desktop.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QPalette>
#include <QTest>

#include "app/gui/QtShell.hpp"
#include "tests/gui/session/MockedService.hpp"

namespace quillo::x11test {
namespace {

constexpr auto notifications = "org.freedesktop.Notifications";

std::vector<std::string> shown(MockedService& service) {
    std::vector<std::string> shown;
    for (const QVariantList& call : service.calls("Notify")) {
        shown.push_back((call.at(1).toString() + ": " + call.at(3).toString() + "/" + call.at(4).toString())
                            .toStdString());
    }
    return shown;
}

TEST(DesktopNotifier, ShowsPlainTextsOneInThePlaceOfTheOther) {
    using Texts = std::vector<std::string>;
    DesktopNotifier notifier;
    int clicks = 0;
    notifier.clicked = [&] { ++clicks; };
    notifier.notify("Nobody", "is there");
    QTest::qWait(50);

    MockedService desktop(notifications, "/org/freedesktop/Notifications", "notification_daemon");
    notifier.notify("Work & play is back", "<b> & more");
    ASSERT_TRUE(untilQt([&] { return shown(desktop).size() == 1; }));
    QTest::qWait(20);
    notifier.notify("Again", "");
    ASSERT_TRUE(untilQt([&] { return shown(desktop).size() == 2; }));
    EXPECT_EQ(shown(desktop), (Texts{"0: Work & play is back/&lt;b&gt; &amp; more", "1: Again/"}));

    for (const uint id : {7U, 1U}) desktop.emitSignal("ActionInvoked", "us", {id, "default"});
    ASSERT_TRUE(untilQt([&] { return clicks > 0; }));
    EXPECT_EQ(clicks, 1);
}

/// The portal's answer: a{sa{sv}}.
const char* const portalSettings =
    "ret = dbus.Dictionary({'org.freedesktop.appearance': dbus.Dictionary({'color-scheme': dbus.UInt32(1)}, "
    "signature='sv'), 'org.gnome.desktop.interface': dbus.Dictionary({'enable-animations': False}, "
    "signature='sv')}, signature='sa{sv}')";

TEST(QtShell, LooksAsThePersonChoseAndElseAsTheDesktopLive) {
    const QPalette original = QGuiApplication::palette();
    Theme theme;
    {
        SystemAppearance system;  // without a portal
        DesktopNotifier notifier;
        QtShell shell(theme, system, notifier);
        for (const bool dark : {true, false}) {
            QPalette palette;
            palette.setColor(QPalette::Window, dark ? Qt::black : Qt::white);
            palette.setColor(QPalette::WindowText, dark ? Qt::white : Qt::black);
            QGuiApplication::setPalette(palette);
            QCoreApplication::processEvents();
            EXPECT_EQ(theme.dark(), dark);
        }
    }
    MockedService portal("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop");
    constexpr auto interface = "org.freedesktop.portal.Settings";
    ask("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", "org.freedesktop.DBus.Mock",
        "AddMethod", {interface, "ReadAll", "as", "a{sa{sv}}", portalSettings});
    SystemAppearance system;
    DesktopNotifier notifier;
    QtShell shell(theme, system, notifier);
    EXPECT_TRUE(untilQt([&] { return theme.dark() && theme.reducedMotion(); }));

    const auto change = [&](uint scheme) {
        ask("org.freedesktop.portal.Desktop", "/org/freedesktop/portal/desktop", "org.freedesktop.DBus.Mock",
            "EmitSignal",
            {interface, "SettingChanged", "ssv",
             QVariantList{"org.freedesktop.appearance", "color-scheme", scheme}});
    };
    change(2);
    EXPECT_TRUE(untilQt([&] { return !theme.dark(); }));
    shell.setAppearance(Appearance::dark);
    EXPECT_TRUE(theme.dark());
    change(1);
    ASSERT_TRUE(untilQt([&] { return system.dark(); }));
    shell.setAppearance(Appearance::light);
    EXPECT_FALSE(theme.dark());
    shell.setAppearance(Appearance::system);
    EXPECT_TRUE(theme.dark());
    change(0);
    EXPECT_TRUE(untilQt([&] { return !theme.dark(); }));
    EXPECT_FALSE(shell.canOpenSystemSettings());
    QGuiApplication::setPalette(original);
}

}  // namespace
}  // namespace quillo::x11test
