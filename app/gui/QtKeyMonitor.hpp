// Keys that go down in the application's windows, as Qt delivers them.
#pragma once
#include <QKeyEvent>
#include <QObject>

#include "platform/services/HotKeyService.hpp"
#include "platform/services/KeyMonitors.hpp"

namespace quillo {

/// What Qt's events carry of a key, by window system.
enum class NativeKeys {
    x11,  // nativeScanCode is the X11 key code, a position; the Super key is Qt's MetaModifier
    mac,  // nativeVirtualKey is the classic code; Qt calls the Command key Control, and the Control key Meta
};

/// Filters the events of the QGuiApplication, which must exist before it. In Qt's events
/// - key() and text() depend on layout and modifiers, so what a key writes is asked of the layout;
/// - a key is offered twice, as a ShortcutOverride for whoever has the focus, then to the window. Who accepts
/// the first
///   keeps it from the application's shortcuts; only the second is told;
/// - a modifier key alone is a key press like any other, with key() naming it; it is left to the window;
/// - a held key repeats with isAutoRepeat set. Repeats are swallowed: a key held since before the monitor
/// came must not
///   count as pressed, nor act in the window.
class QtKeyMonitor final : public QObject, public KeyMonitorService {
  public:
    /// The layout must outlive it.
    QtKeyMonitor(const KeyboardLayout& layout, NativeKeys native);

    std::unique_ptr<KeyMonitor> addKeyDownMonitor(KeyDown keyDown) override {
        return monitors_.add(std::move(keyDown));
    }

  private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool consume(const QKeyEvent& event) const;

    const KeyboardLayout& layout_;
    NativeKeys native_;
    KeyMonitors monitors_;
};

}  // namespace quillo
