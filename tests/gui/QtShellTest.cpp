// Where the system has a shell of its own, it is told of what Qt cannot do there, and the theme follows all
// the same.
#include <gtest/gtest.h>

#include "app/gui/QtShell.hpp"
#include "platform/simulated/SimulatedShell.hpp"

namespace quillo {
namespace {

TEST(QtShellTest, TheSystemsOwnShellIsToldBesideTheTheme) {
    Theme theme;
    SystemAppearance system;
    DesktopNotifier notifier;
    SimulatedShell native;
    QtShell shell(theme, system, notifier, &native);
    shell.setActivationPolicy(ActivationPolicy::regular);
    shell.setAppearance(Appearance::dark);
    shell.notify("title", "text");
    EXPECT_TRUE(shell.canOpenSystemSettings());
    shell.openSystemSettings("x-apple.systempreferences:page");

    EXPECT_EQ(native.policies, std::vector{ActivationPolicy::regular});
    EXPECT_EQ(native.appearances, std::vector{Appearance::dark});
    EXPECT_EQ(native.notifications, (std::vector<SimulatedShell::Notification>{{"title", "text"}}));
    EXPECT_EQ(native.openedPages, std::vector<std::string>{"x-apple.systempreferences:page"});
    EXPECT_TRUE(theme.dark());

    int clicks = 0;
    shell.messageClicked = [&] { ++clicks; };
    native.messageClicked();
    notifier.clicked();
    EXPECT_EQ(clicks, 2);
    for (const bool reduced : {true, false}) {
        native.reduced = reduced;
        native.reducedMotionChanged();
        EXPECT_EQ(theme.reducedMotion(), reduced);
    }
    EXPECT_FALSE(QtShell(theme, system, notifier).canOpenSystemSettings());
}

}  // namespace
}  // namespace quillo
