// Recording by real key events in a real window.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <QKeyEvent>
#include <QShortcut>
#include <QWindow>

#include "app/QtExecutor.hpp"
#include "app/ShortcutRecorder.hpp"
#include "app/gui/QtKeyMonitor.hpp"
#include "platform/x11/X11Connection.hpp"
#include "platform/x11/X11KeyboardLayout.hpp"
#include "tests/platform/x11/PrivateDesktop.hpp"

namespace quillo::x11test {
namespace {

using namespace std::chrono_literals;
using namespace modifier;

struct ListeningWindow final : QWindow {
    std::vector<int> pressed;  // Qt's names
    void keyPressEvent(QKeyEvent* event) override { pressed.push_back(event->key()); }
};

class KeyMonitorX11 : public testing::Test {
  protected:
    KeyMonitorX11() {
        window.resize(300, 200);
        window.show();
        window.requestActivate();
        EXPECT_TRUE(eventually([&] { return QGuiApplication::focusWindow() == &window; }));
    }
    ~KeyMonitorX11() override { tool({"setxkbmap", "-layout", "us", "-option", ""}); }

    bool eventually(const std::function<bool()>& condition) { return executor.runUntil(condition, 10s); }
    void tool(const std::vector<std::string>& command) { EXPECT_EQ(desktop.run(command), 0) << command[0]; }
    void press(const std::string& keys) { tool({"xdotool", "key", keys}); }

    PrivateDesktop desktop;
    int noArguments = 1;
    std::array<char*, 2> arguments{const_cast<char*>("test"), nullptr};
    bool onX11 = qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication application{noArguments, arguments.data()};
    QtExecutor executor;
    std::unique_ptr<x11::X11Connection> connection = *x11::X11Connection::open(desktop.display());
    X11KeyboardLayout layout{*connection};
    QtKeyMonitor monitor{layout, NativeKeys::x11};
    ListeningWindow window;
    const Shortcut byDefault{1, 0x1900, "S"};
};

TEST_F(KeyMonitorX11, RecordsWhatIsPressedAndTheWindowSeesNothingOfIt) {
    struct Case {
        std::string layout, keys;
        std::optional<Shortcut> recorded;  // else it stops without
    };
    QShortcut applications(QKeySequence("Ctrl+Q"), &window);
    int applicationsRan = 0;
    QObject::connect(&applications, &QShortcut::activated, [&] { ++applicationsRan; });
    ShortcutRecorder recorder(monitor, {2, command, "D"}, byDefault);
    std::optional<Shortcut> recorded;
    QObject::connect(&recorder, &ShortcutRecorder::recorded, [&](const Shortcut& set) { recorded = set; });

    for (const auto& [layoutName, keys, expected] : {
             Case{"us", "alt+shift+38", Shortcut{0, option | shift, "A"}},
             {"us", "super+BackSpace", Shortcut{51, command, "⌫"}},
             {"us", "BackSpace", byDefault},
             {"us", "ctrl+shift+F5", Shortcut{96, control | shift, "F5"}},  // Ctrl+F5 is a key of xfwm4
             {"us", "ctrl+q", Shortcut{12, control, "Q"}},
             {"us", "ctrl+alt+shift+super+space", Shortcut{49, 0x1B00, "Space"}},
             {"us", "Escape", std::nullopt},
             {"fr", "super+38", Shortcut{0, command, "Q"}},
             {"de", "ctrl+29", Shortcut{16, control, "Z"}},
             {"dvorak", "alt+39", Shortcut{1, option, "O"}},
         }) {
        tool({"setxkbmap", "-layout", layoutName});
        recorded.reset();
        recorder.start();
        press("shift+38");  // not enough, nor are a bare key and one without a classic code
        press("38");
        press("ctrl+107");
        press(keys);
        EXPECT_TRUE(eventually([&] { return !recorder.recording(); })) << layoutName << " " << keys;
        EXPECT_EQ(recorded, expected) << layoutName << " " << keys;
    }
    std::erase_if(window.pressed, [](int key) {
        return key == Qt::Key_Shift || key == Qt::Key_Alt || key == Qt::Key_Meta || key == Qt::Key_Control ||
               key == Qt::Key_Super_L;
    });
    EXPECT_TRUE(window.pressed.empty());
    EXPECT_EQ(applicationsRan, 0);

    tool({"setxkbmap", "-layout", "us"});
    press("ctrl+q");
    press("Escape");
    EXPECT_TRUE(eventually(
        [&] { return std::ranges::find(window.pressed, Qt::Key_Escape) != window.pressed.end(); }));
    EXPECT_EQ(applicationsRan, 1);
}

TEST_F(KeyMonitorX11, AKeyHeldSinceBeforeIsNotRecorded) {
    tool({"xset", "r", "rate", "50", "100"});
    tool({"xdotool", "keydown", "ctrl", "keydown", "38"});
    EXPECT_TRUE(eventually([&] { return std::ranges::count(window.pressed, Qt::Key_A) > 2; })) << "repeats";
    ShortcutRecorder recorder(monitor, {2, command, "D"}, byDefault);
    recorder.start();
    const auto seen = window.pressed;
    tool({"xdotool", "sleep", "0.2", "keyup", "38", "keyup", "ctrl", "key", "Escape"});
    EXPECT_TRUE(eventually([&] { return !recorder.recording(); }));
    EXPECT_EQ(recorder.shortcut(), (Shortcut{2, command, "D"}));
    EXPECT_EQ(window.pressed, seen);
}

}  // namespace
}  // namespace quillo::x11test
