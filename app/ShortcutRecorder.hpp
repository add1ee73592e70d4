// The control of the settings that records a key combination, without any view.
#pragma once
#include <QObject>
#include <QString>
#include <memory>
#include <string_view>

#include "platform/services/KeyMonitorService.hpp"
#include "settings/Shortcut.hpp"

namespace quillo {

namespace ShortcutTexts {
/// Under the controls.
inline constexpr std::string_view hint =
    "Click a shortcut and press a new combination. Include ⌘, ⌃ or ⌥. Press ⌫ while recording to go back to "
    "the "
    "default.";
/// Beside an action whose combination was refused.
inline constexpr std::string_view taken = "Taken by another app — pick a different combination.";
/// Beside what has a combination that another of Quillo's shortcuts has.
inline constexpr std::string_view own = "Already another shortcut of Quillo — pick a different combination.";
/// The control's own help.
inline constexpr std::string_view help = "Activate, then press a new key combination";
}  // namespace ShortcutTexts

class ShortcutRecorder final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString label READ label NOTIFY shortcutChanged)
    Q_PROPERTY(bool recording READ recording NOTIFY recordingChanged)
    Q_PROPERTY(bool enabled READ enabled WRITE setEnabled NOTIFY enabledChanged)

  public:
    /// The service must outlive it. A shortcut without a key, which may be the default, is none.
    ShortcutRecorder(KeyMonitorService& monitors, Shortcut shortcut, Shortcut defaultShortcut,
                     QObject* parent = nullptr);

    const Shortcut& shortcut() const { return shortcut_; }
    /// What the settings hold now; is not told as recorded.
    void setShortcut(const Shortcut& shortcut);
    QString label() const { return QString::fromStdString(shortcut_.label()); }

    bool recording() const { return monitor_ != nullptr; }
    /// The control was clicked: from now on every key that goes down in our windows is consumed, until one
    /// ends the recording. Nothing while it is disabled or records already.
    Q_INVOKABLE void start();
    /// Without a change.
    Q_INVOKABLE void stop();

    bool enabled() const { return enabled_; }
    /// Disabling it ends a recording without a change.
    void setEnabled(bool enabled);

  Q_SIGNALS:
    void shortcutChanged();
    void recordingChanged();
    void enabledChanged();
    /// The person has set it, the same as before included: to be stored under the action's number.
    void recorded(const quillo::Shortcut& shortcut);

  private:
    void keyDown(const KeyEvent& event);
    void finish(const Shortcut& shortcut);

    KeyMonitorService& monitors_;
    Shortcut shortcut_;
    const Shortcut defaultShortcut_;
    bool enabled_ = true;
    std::unique_ptr<KeyMonitor> monitor_;  // while recording
};

}  // namespace quillo
