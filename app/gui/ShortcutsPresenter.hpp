// The global shortcuts: the two that settings and introduction show, and that of the workspace on its page.
#pragma once
#include <QObject>
#include <array>
#include <optional>

#include "app/AppModel.hpp"
#include "app/ShortcutRecorder.hpp"
#include "app/gui/Ui.hpp"

namespace quillo {

class ShortcutsPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool enabled READ enabled WRITE setEnabled NOTIFY changed)
    Q_PROPERTY(
        QString refusal READ refusal NOTIFY changed)  // why there can be none here; empty where there can
    Q_PROPERTY(QObject* save READ save CONSTANT)      // ShortcutRecorder
    Q_PROPERTY(QObject* switcher READ switcher CONSTANT)
    Q_PROPERTY(QObject* workspace READ workspace CONSTANT)
    Q_PROPERTY(QString saveRefusal READ saveRefusal NOTIFY changed)  // why it does not work; empty: it does
    Q_PROPERTY(QString switcherRefusal READ switcherRefusal NOTIFY changed)
    Q_PROPERTY(QString workspaceRefusal READ workspaceRefusal NOTIFY changed)
    Q_PROPERTY(QString hint READ hint CONSTANT)  // as written for macOS, as the next
    Q_PROPERTY(QString help READ help CONSTANT)

  public:
    /// All must outlive it.
    ShortcutsPresenter(AppModel& model, Ui& ui, const HotKeyService& hotKeys, KeyMonitorService& monitors,
                       QObject* parent = nullptr);

    bool enabled() const { return model_.settings().shortcutsEnabled; }
    void setEnabled(bool enabled);
    QString refusal() const { return QString::fromStdString(hotKeys_.capability().reason()); }
    QObject* save() { return &save_; }
    QObject* switcher() { return &switcher_; }
    QObject* workspace() { return &workspace_; }
    QString saveRefusal() const { return refusalOf(HotKeyAction::save); }
    QString switcherRefusal() const { return refusalOf(HotKeyAction::switcher); }
    QString workspaceRefusal() const { return shown_ ? refusalOf(*shown_) : QString(); }
    QString hint() const;
    QString help() const;

    /// Ends a recording without a change: what shows it has gone.
    Q_INVOKABLE void stopRecording();

  Q_SIGNALS:
    void changed();

  private:
    void storeActionOf(ShortcutRecorder& recorder, HotKeyAction action);
    void pauseHotKeys();
    void follow();
    QString refusalOf(const HotKeyTarget& target) const;

    AppModel& model_;
    Ui& ui_;
    const HotKeyService& hotKeys_;
    ShortcutRecorder save_, switcher_, workspace_;
    const std::array<ShortcutRecorder*, 3> recorders_{&save_, &switcher_, &workspace_};
    std::optional<Uuid> shown_;  // whose the last is
};

}  // namespace quillo
