// Which key and which modifiers a press is, as each window system tells it to Qt.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QWindow>

#include "app/gui/QtKeyMonitor.hpp"

namespace quillo {
namespace {

class SameCodes final : public KeyboardLayout {
  public:
    std::optional<std::uint32_t> keyCode(std::uint32_t nativeKeyCode) const override { return nativeKeyCode; }
    std::string characters(std::uint32_t) const override { return "s"; }
};

TEST(QtKeyMonitorTest, EachSystemsKeysAreTheClassicOnes) {
    constexpr std::uint32_t scanCode = 39, virtualKey = 1;
    const struct {
        NativeKeys native;
        Qt::KeyboardModifiers held;
        KeyEvent heard;
    } cases[] = {
        {NativeKeys::x11, Qt::MetaModifier, {scanCode, modifier::command, "s"}},
        {NativeKeys::x11,
         Qt::ControlModifier | Qt::AltModifier,
         {scanCode, modifier::control | modifier::option, "s"}},
        {NativeKeys::mac, Qt::ControlModifier, {virtualKey, modifier::command, "s"}},
        {NativeKeys::mac,
         Qt::MetaModifier | Qt::ShiftModifier,
         {virtualKey, modifier::control | modifier::shift, "s"}},
    };
    const SameCodes layout;
    QWindow window;
    for (const auto& one : cases) {
        QtKeyMonitor monitors(layout, one.native);
        std::vector<KeyEvent> heard;
        const auto monitor = monitors.addKeyDownMonitor([&](const KeyEvent& event) {
            heard.push_back(event);
            return true;
        });
        QKeyEvent press(QEvent::KeyPress, Qt::Key_S, one.held, scanCode, virtualKey, 0);
        QCoreApplication::sendEvent(&window, &press);
        EXPECT_EQ(heard, std::vector{one.heard});
    }
}

}  // namespace
}  // namespace quillo
