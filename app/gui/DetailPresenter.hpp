// One workspace in the main window.
#pragma once
#include <QObject>
#include <QVariantList>

#include "app/AppModel.hpp"
#include "app/gui/MapSource.hpp"
#include "app/gui/Ui.hpp"
#include "app/gui/Words.hpp"

namespace quillo {

class DetailPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool known READ known NOTIFY changed)
    Q_PROPERTY(QString workspaceId READ workspaceId NOTIFY changed)
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString icon READ icon NOTIFY changed)
    Q_PROPERTY(QString colorName READ colorName NOTIFY changed)
    Q_PROPERTY(QString saved READ saved NOTIFY changed)
    Q_PROPERTY(QString lastResumed READ lastResumed NOTIFY changed)
    Q_PROPERTY(QVariant map READ map NOTIFY changed)
    /// { count, noun } of applications, windows, displays and, where known, desktops.
    Q_PROPERTY(QVariantList counts READ counts NOTIFY changed)
    /// { identifier, name, what } of each application, as many as a page may hold.
    Q_PROPERTY(QVariantList apps READ apps NOTIFY changed)
    Q_PROPERTY(QString moreApps READ moreApps NOTIFY changed)  // "and 9,800 more"; empty: these are all
    Q_PROPERTY(int cleanSlate READ cleanSlate NOTIFY changed)
    Q_PROPERTY(QStringList cleanSlateLabels READ cleanSlateLabels CONSTANT)
    Q_PROPERTY(bool canResume READ canResume NOTIFY busyChanged)
    Q_PROPERTY(bool hasReport READ hasReport NOTIFY reportChanged)  // of its last restore

  public:
    DetailPresenter(AppModel& model, Ui& ui, QObject* parent = nullptr);

    bool known() const { return workspace_.has_value(); }
    QString workspaceId() const { return QString::fromStdString(shown().id.lower()); }
    QString name() const { return line(shown().name); }
    QString icon() const { return QString::fromStdString(shown().icon); }
    QString colorName() const { return QString::fromStdString(shown().color); }
    QString saved() const;
    QString lastResumed() const;  // empty: never
    QVariant map() const { return QVariant::fromValue(map_); }
    QVariantList counts() const;
    QVariantList apps() const;
    QString moreApps() const;
    int cleanSlate() const { return static_cast<int>(shown().cleanSlate.value_or(CleanSlateMode::keep)); }
    QStringList cleanSlateLabels() const;
    bool canResume() const {
        return !model_.restoreRunning() && !model_.capturing() && !model_.snapshotting();
    }
    bool hasReport() const { return workspace_ && model_.hasReport(workspace_->id); }

    Q_INVOKABLE void rename(const QString& name);
    Q_INVOKABLE void setCleanSlate(int mode);
    Q_INVOKABLE void resume();
    Q_INVOKABLE void showReport();

  Q_SIGNALS:
    void changed();
    void busyChanged();
    void reportChanged();

  private:
    void reload();
    const Workspace& shown() const;

    AppModel& model_;
    Ui& ui_;
    std::optional<Workspace> workspace_;
    MapSource map_;
};

}  // namespace quillo
