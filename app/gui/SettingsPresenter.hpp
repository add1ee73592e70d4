// The settings' panes General and About.
#pragma once
#include <QObject>
#include <QStringList>
#include <QVariantList>

#include "app/AppModel.hpp"
#include "app/UpdateController.hpp"

namespace quillo {

class SettingsPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QStringList trouble READ trouble NOTIFY changed)  // what became of unreadable settings
    Q_PROPERTY(bool openAtLogin READ openAtLogin WRITE setOpenAtLogin NOTIFY loginChanged)
    Q_PROPERTY(bool loginNeedsApproval READ loginNeedsApproval NOTIFY loginChanged)
    Q_PROPERTY(QString loginError READ loginError NOTIFY loginChanged)
    Q_PROPERTY(QString loginRefusal READ loginRefusal NOTIFY loginChanged)  // why it cannot be at all
    Q_PROPERTY(bool canOpenLoginSettings READ canOpenLoginSettings CONSTANT)
    Q_PROPERTY(int appearance READ appearance WRITE setAppearance NOTIFY changed)  // system, light, dark

    Q_PROPERTY(bool accessGranted READ accessGranted NOTIFY changed)
    Q_PROPERTY(QString accessRefusal READ accessRefusal NOTIFY changed)
    Q_PROPERTY(bool canAllowAccess READ canAllowAccess CONSTANT)

    Q_PROPERTY(bool savesSessions READ savesSessions WRITE setSavesSessions NOTIFY changed)
    Q_PROPERTY(QStringList intervals READ intervals CONSTANT)
    Q_PROPERTY(int interval READ interval WRITE setInterval NOTIFY changed)  // a place in `intervals`
    Q_PROPERTY(QString sessionError READ sessionError NOTIFY changed)
    Q_PROPERTY(QString sessionSkipped READ sessionSkipped NOTIFY changed)  // why there is none of late
    Q_PROPERTY(int sessionCount READ sessionCount NOTIFY changed)
    Q_PROPERTY(bool canRestore READ canRestore NOTIFY busyChanged)

    Q_PROPERTY(QStringList lateChoices READ lateChoices CONSTANT)
    Q_PROPERTY(int lateChoice READ lateChoice WRITE setLateChoice NOTIFY changed)  // a place in lateChoices

    Q_PROPERTY(QString updatesRefusal READ updatesRefusal CONSTANT)  // what keeps it up to date instead of us
    Q_PROPERTY(bool automaticUpdates READ automaticUpdates WRITE setAutomaticUpdates NOTIFY updatesChanged)
    Q_PROPERTY(bool canCheckForUpdates READ canCheckForUpdates NOTIFY updatesChanged)
    Q_PROPERTY(QString readyVersion READ readyVersion NOTIFY updatesChanged)
    Q_PROPERTY(QString availableVersion READ availableVersion NOTIFY updatesChanged)
    Q_PROPERTY(QString relaunchRefusal READ relaunchRefusal NOTIFY busyChanged)  // empty: it may relaunch now
    Q_PROPERTY(QString version READ version CONSTANT)

  public:
    /// All must outlive it.
    SettingsPresenter(AppModel& model, UpdateController& updates, LoginItemService& loginItem,
                      QObject* parent = nullptr);

    QStringList trouble() const;
    Q_INVOKABLE void dismissTrouble() { model_.dismissSettingsTrouble(); }

    bool openAtLogin() const;
    void setOpenAtLogin(bool on) { model_.loginItem().setEnabled(on); }
    bool loginNeedsApproval() const;
    QString loginError() const;
    QString loginRefusal() const { return QString::fromStdString(loginItem_.capability().reason()); }
    bool canOpenLoginSettings() const { return loginItem_.hasSystemSettings(); }
    Q_INVOKABLE void openLoginSettings() { loginItem_.openSystemSettings(); }

    int appearance() const { return static_cast<int>(model_.settings().appearance); }
    void setAppearance(int appearance);

    bool accessGranted() const { return model_.accessibilityGranted(); }
    QString accessRefusal() const;
    bool canAllowAccess() const { return model_.canAllowAccess(); }
    Q_INVOKABLE void allowAccess() { model_.requestAccessibility(); }

    bool savesSessions() const { return model_.settings().autoSnapshotMinutes >= 1; }
    void setSavesSessions(bool on);
    QStringList intervals() const;
    int interval() const;
    void setInterval(int place);
    QString sessionError() const;
    QString sessionSkipped() const;
    int sessionCount() const { return static_cast<int>(model_.sessions().size()); }
    bool canRestore() const;
    /// { key, text } of each session but the last, newest first.
    Q_INVOKABLE QVariantList earlierSessions() const;
    Q_INVOKABLE void restoreLastSession();
    /// Nothing where the history no longer has it.
    Q_INVOKABLE void restoreSession(const QString& key);

    QStringList lateChoices() const;
    int lateChoice() const;
    void setLateChoice(int place);

    QString updatesRefusal() const { return QString::fromStdString(updates_.capability().reason()); }
    bool automaticUpdates() const { return updates_.automaticUpdates(); }
    void setAutomaticUpdates(bool on) { updates_.setAutomaticUpdates(on); }
    bool canCheckForUpdates() const { return updates_.canCheckForUpdates(); }
    QString readyVersion() const { return QString::fromStdString(updates_.readyVersion().value_or("")); }
    QString availableVersion() const;
    QString relaunchRefusal() const;
    Q_INVOKABLE void checkForUpdates() { updates_.checkForUpdates(); }
    Q_INVOKABLE void relaunch();
    QString version() const;

  Q_SIGNALS:
    void changed();
    void loginChanged();
    void updatesChanged();
    void busyChanged();

  private:
    void setMinutes(std::int64_t minutes);

    AppModel& model_;
    UpdateController& updates_;
    LoginItemService& loginItem_;
};

}  // namespace quillo
