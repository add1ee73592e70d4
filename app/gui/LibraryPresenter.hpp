// The library as the main window shows it: the rows that match, the strip of the current desktop, and what is
// wrong with the storage.
#pragma once
#include <QStringList>
#include <functional>
#include <set>

#include "app/AppModel.hpp"
#include "app/LibraryState.hpp"
#include "app/gui/WorkspaceRows.hpp"

namespace quillo {

class LibraryPresenter final : public WorkspaceRows {
    Q_OBJECT
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY changed)
    Q_PROPERTY(QStringList orders READ orders CONSTANT)
    Q_PROPERTY(int order READ order WRITE setOrder NOTIFY changed)
    Q_PROPERTY(int cursor READ cursor NOTIFY changed)
    Q_PROPERTY(bool empty READ empty NOTIFY changed)  // no workspaces at all
    Q_PROPERTY(QString emptyTitle READ emptyTitle NOTIFY changed)
    Q_PROPERTY(QString emptyHint READ emptyHint NOTIFY changed)
    Q_PROPERTY(QStringList issues READ issues NOTIFY issuesChanged)
    Q_PROPERTY(QVariant currentMap READ currentMap NOTIFY currentSnapshotChanged)
    Q_PROPERTY(QString currentText READ currentText NOTIFY currentSnapshotChanged)
    Q_PROPERTY(bool accessibilityGranted READ accessibilityGranted NOTIFY accessChanged)
    Q_PROPERTY(QString accessReason READ accessReason NOTIFY accessChanged)
    Q_PROPERTY(bool canAllowAccess READ canAllowAccess CONSTANT)
    Q_PROPERTY(bool canSave READ canSave NOTIFY accessChanged)
    Q_PROPERTY(bool selecting READ selecting NOTIFY selectionChanged)
    /// By identifier; of those that are not shown at the moment too.
    Q_PROPERTY(QStringList selected READ selected NOTIFY selectionChanged)
    Q_PROPERTY(bool allSelected READ allSelected NOTIFY selectionChanged)  // of the rows

  public:
    LibraryPresenter(AppModel& model, LibraryState& state, QObject* parent = nullptr);

    QString query() const { return QString::fromStdString(state_.query()); }
    void setQuery(const QString& query) { state_.setQuery(query.toStdString()); }
    QStringList orders() const;
    int order() const { return static_cast<int>(state_.order()); }
    void setOrder(int order);
    int cursor() const { return static_cast<int>(state_.cursor()); }
    bool empty() const { return model_.workspaces().empty(); }
    QString emptyTitle() const;
    QString emptyHint() const;
    QStringList issues() const;
    QVariant currentMap() const;
    QString currentText() const;
    bool accessibilityGranted() const { return model_.accessibilityGranted(); }
    QString accessReason() const;
    bool canAllowAccess() const { return model_.canAllowAccess(); }
    bool canSave() const { return !model_.restoreRunning() && !model_.capturing(); }

    bool selecting() const { return selecting_; }
    QStringList selected() const { return {selected_.begin(), selected_.end()}; }
    bool allSelected() const;

    // Several workspaces are selected to be exported or deleted together; `selecting` until that is over.
    Q_INVOKABLE void beginSelecting();
    Q_INVOKABLE void endSelecting();
    Q_INVOKABLE void toggleSelected(const QString& id);
    /// All rows, or none of them where all are.
    Q_INVOKABLE void selectAll();
    Q_INVOKABLE void exportSelected();
    Q_INVOKABLE void removeSelected();

    Q_INVOKABLE void moveCursor(int steps);
    Q_INVOKABLE void setCursor(int row);
    Q_INVOKABLE QString idAt(int row) const;
    /// By its identifier, with the clean-slate mode that it stores.
    Q_INVOKABLE void resume(const QString& id);
    Q_INVOKABLE void update(const QString& id);
    Q_INVOKABLE void rename(const QString& id, const QString& name);
    Q_INVOKABLE void exportWorkspace(const QString& id);
    Q_INVOKABLE void duplicate(const QString& id);
    Q_INVOKABLE void remove(const QString& id);
    Q_INVOKABLE void importWorkspace() { model_.importWorkspace(); }
    Q_INVOKABLE void save() { model_.beginCapture(); }
    Q_INVOKABLE void showFiles() { model_.showLibraryFolder(); }
    Q_INVOKABLE void dismissIssues() { model_.dismissStorageIssues(); }
    Q_INVOKABLE void refreshCurrentSnapshot() { model_.refreshCurrentSnapshot(); }
    Q_INVOKABLE void followCurrentDesktop(bool follow) { model_.followCurrentDesktop(follow); }
    Q_INVOKABLE void requestAccessibility() { model_.requestAccessibility(); }

  Q_SIGNALS:
    void changed();
    void issuesChanged();
    void currentSnapshotChanged();
    void accessChanged();
    void selectionChanged();

  private:
    bool unlisted() const;
    std::vector<Uuid> selectedIds() const;
    void rowsChanged();
    void act(const QString& id, const std::function<void(const Workspace&)>& operation);

    AppModel& model_;
    LibraryState& state_;
    MapSource currentSnapshot_;
    bool selecting_ = false;
    std::set<QString> selected_;
};

}  // namespace quillo
