// One workspace in the main window.
#pragma once
#include <QObject>
#include <QVariantList>
#include <QVariantMap>
#include <memory>
#include <optional>

#include "app/AppModel.hpp"
#include "app/gui/MapSource.hpp"
#include "app/gui/ReviewRows.hpp"
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
    Q_PROPERTY(QString saved READ saved NOTIFY changed)    // from the desktop, at first or anew
    Q_PROPERTY(QString edited READ edited NOTIFY changed)  // since then; empty: not at all
    Q_PROPERTY(QString lastResumed READ lastResumed NOTIFY changed)
    Q_PROPERTY(QVariant map READ map NOTIFY changed)
    /// { count, noun } of applications, windows, displays and, where known, desktops.
    Q_PROPERTY(QVariantList counts READ counts NOTIFY changed)
    Q_PROPERTY(QString leftOutText READ leftOutText NOTIFY changed)  // "2 left out"; empty: nothing is
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(QVariantMap states READ states NOTIFY statesChanged)  // of the map's windows
    /// "Leave Out Mail"; empty: there is nothing to undo, or to do again.
    Q_PROPERTY(QString undoWords READ undoWords NOTIFY editsChanged)
    Q_PROPERTY(QString redoWords READ redoWords NOTIFY editsChanged)
    /// { key, name } of the applications that an address may be added to, and why there is none.
    Q_PROPERTY(QVariantList browsers READ browsers NOTIFY changed)
    Q_PROPERTY(QString addressRefusal READ addressRefusal NOTIFY changed)
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
    QString edited() const;
    QString lastResumed() const;  // empty: never
    QVariant map() const { return QVariant::fromValue(map_); }
    QVariantList counts() const;
    QString leftOutText() const;
    QAbstractItemModel* rows() { return &rows_; }
    QVariantMap states() const;
    QString undoWords() const { return line(model_.undoWords(shown().id)); }
    QString redoWords() const { return line(model_.redoWords(shown().id)); }
    QVariantList browsers() const;
    QString addressRefusal() const;
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
    Q_INVOKABLE void setIcon(const QString& icon);
    Q_INVOKABLE void setColor(const QString& color);
    /// Leaves out what the row says, or brings it back.
    Q_INVOKABLE void toggle(int row);
    Q_INVOKABLE void setOpen(int row, bool open) { rows_.setOpen(row, open); }
    Q_INVOKABLE int reveal(const QString& windowKey) { return rows_.reveal(windowKey); }
    Q_INVOKABLE int rowOf(const QString& windowKey) const { return rows_.rowOf(windowKey); }
    Q_INVOKABLE QStringList windowKeys(int row) const { return rows_.windowKeys(row); }
    Q_INVOKABLE QStringList allWindowKeys() const { return rows_.windowKeys(); }
    /// { key, name, running } of the applications that may be added, by name.
    Q_INVOKABLE QVariantList addableApps() const;
    Q_INVOKABLE void addApp(const QString& key);
    /// Why it cannot be added; empty: it was.
    Q_INVOKABLE QString addAddress(const QString& browser, const QString& typed);
    /// What is to be known before: empty, or that the integration is off.
    Q_INVOKABLE QString addressNote(const QString& browser) const;
    Q_INVOKABLE void undo();
    Q_INVOKABLE void redo();

  Q_SIGNALS:
    void changed();
    void statesChanged();
    void editsChanged();
    void busyChanged();
    void reportChanged();

  private:
    void reload();
    void showContents(bool another);
    const Workspace& shown() const;

    AppModel& model_;
    Ui& ui_;
    std::optional<Workspace> workspace_;
    LeftOut::Whole whole_;                    // of workspace_
    std::unique_ptr<CaptureDraft> contents_;  // its ticks, under the names that applications have
    ReviewRows rows_;
    MapSource map_;  // of all, with what is left out
};

}  // namespace quillo
