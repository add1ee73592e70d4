#include "app/gui/QtKeyMonitor.hpp"

#include <QGuiApplication>
#include <array>

namespace quillo {
namespace {

bool isModifier(int key) {
    switch (key) {
        case Qt::Key_Shift:
        case Qt::Key_Control:
        case Qt::Key_Alt:
        case Qt::Key_AltGr:
        case Qt::Key_Meta:
        case Qt::Key_Super_L:
        case Qt::Key_Super_R:
        case Qt::Key_Hyper_L:
        case Qt::Key_Hyper_R:
        case Qt::Key_CapsLock:
        case Qt::Key_NumLock:
        case Qt::Key_ScrollLock:
        case Qt::Key_Mode_switch:
            return true;
        default:
            return false;
    }
}

std::uint32_t modifiersOf(Qt::KeyboardModifiers held, NativeKeys native) {
    const bool exchanged = native == NativeKeys::mac;
    const std::array<std::pair<Qt::KeyboardModifier, std::uint32_t>, 4> masks{
        {{exchanged ? Qt::ControlModifier : Qt::MetaModifier, modifier::command},
         {Qt::AltModifier, modifier::option},
         {Qt::ShiftModifier, modifier::shift},
         {exchanged ? Qt::MetaModifier : Qt::ControlModifier, modifier::control}}};
    std::uint32_t all = 0;
    for (const auto& [flag, mask] : masks) all |= held.testFlag(flag) ? mask : 0;
    return all;
}

}  // namespace

QtKeyMonitor::QtKeyMonitor(const KeyboardLayout& layout, NativeKeys native)
    : layout_(layout), native_(native) {
    qGuiApp->installEventFilter(this);
}

bool QtKeyMonitor::eventFilter(QObject* watched, QEvent* event) {
    if (monitors_.count() == 0) return false;
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept();
        return true;
    }
    // The window hears of a key first, and hands it on to what has the focus in it.
    if (event->type() != QEvent::KeyPress || !watched->isWindowType()) return false;
    return consume(*static_cast<const QKeyEvent*>(event));
}

bool QtKeyMonitor::consume(const QKeyEvent& event) const {
    if (isModifier(event.key())) return false;
    if (event.isAutoRepeat()) return true;
    const auto number = native_ == NativeKeys::mac ? event.nativeVirtualKey() : event.nativeScanCode();
    const auto keyCode = layout_.keyCode(number);
    return monitors_.consume({keyCode.value_or(KeyEvent::noKeyCode), modifiersOf(event.modifiers(), native_),
                              keyCode ? layout_.characters(*keyCode) : std::string()});
}

}  // namespace quillo
