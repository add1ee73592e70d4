#include "app/ShortcutRecorder.hpp"

#include <utility>

namespace quillo {
namespace {

constexpr std::uint32_t escapeKey = 53, deleteKey = 51;

}  // namespace

ShortcutRecorder::ShortcutRecorder(KeyMonitorService& monitors, Shortcut shortcut, Shortcut defaultShortcut,
                                   QObject* parent)
    : QObject(parent),
      monitors_(monitors),
      shortcut_(std::move(shortcut)),
      defaultShortcut_(std::move(defaultShortcut)) {}

void ShortcutRecorder::setShortcut(const Shortcut& shortcut) {
    if (std::exchange(shortcut_, shortcut) != shortcut) Q_EMIT shortcutChanged();
}

void ShortcutRecorder::start() {
    if (!enabled_ || recording()) return;
    monitor_ = monitors_.addKeyDownMonitor([this](const KeyEvent& event) {
        keyDown(event);
        return true;
    });
    Q_EMIT recordingChanged();
}

void ShortcutRecorder::stop() {
    if (!recording()) return;
    monitor_.reset();
    Q_EMIT recordingChanged();
}

void ShortcutRecorder::setEnabled(bool enabled) {
    if (std::exchange(enabled_, enabled) == enabled) return;
    const bool stopped = !enabled && std::exchange(monitor_, nullptr) != nullptr;
    Q_EMIT enabledChanged();
    if (stopped) Q_EMIT recordingChanged();
}

void ShortcutRecorder::keyDown(const KeyEvent& event) {
    if (event.keyCode == escapeKey) return stop();
    const bool commanded =
        (event.modifiers & (modifier::command | modifier::control | modifier::option)) != 0;
    if (event.keyCode == deleteKey && !commanded) return finish(defaultShortcut_);
    if (const auto shortcut = Shortcut::fromEvent(event)) finish(*shortcut);
}

void ShortcutRecorder::finish(const Shortcut& shortcut) {
    monitor_.reset();
    const bool changed = std::exchange(shortcut_, shortcut) != shortcut;
    Q_EMIT recordingChanged();
    if (changed) Q_EMIT shortcutChanged();
    Q_EMIT recorded(shortcut_);
}

}  // namespace quillo
