// The restore panel: one run while it happens, and what came of it.
#pragma once
#include <QObject>
#include <QPointer>
#include <QSortFilterProxyModel>
#include <QTimer>
#include <QVariantMap>

#include "app/AppModel.hpp"
#include "app/gui/KeyedList.hpp"
#include "app/gui/MapSource.hpp"

namespace quillo {

class RestorePresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title NOTIFY changed)
    Q_PROPERTY(QString subtitle READ subtitle NOTIFY changed)
    Q_PROPERTY(QString icon READ icon NOTIFY runChanged)
    Q_PROPERTY(QString colorName READ colorName NOTIFY runChanged)
    Q_PROPERTY(QVariant source READ source NOTIFY runChanged)  // MapSource
    /// By window key: pending, landing, restored, failed or skipped.
    Q_PROPERTY(QVariantMap states READ states NOTIFY changed)
    Q_PROPERTY(bool running READ running NOTIFY changed)
    Q_PROPERTY(bool clean READ clean NOTIFY changed)          // over, with everything back
    Q_PROPERTY(double progress READ progress NOTIFY changed)  // of all windows, 0 to 1
    /// app, identifier, text (all of it in words), heading (its first line), reason (as a person says it),
    /// word (where it comes with neither a count nor a reason), outcome (RestoreOutcome::name), windowState
    /// (as the map has it), trouble (empty: none), desktop ("Desktop 2", where it is worth a word), exact
    /// (the reason as the command line has it); in the order they came, as many as a person may read.
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    /// How many there will be, as far as can be known beforehand and is seen without scrolling.
    Q_PROPERTY(int expectedRows READ expectedRows NOTIFY runChanged)
    Q_PROPERTY(QString more READ more NOTIFY changed)              // "and 9,800 more"; empty: these are all
    Q_PROPERTY(int rowCount READ rowCount NOTIFY changed)          // of all, listed or not
    Q_PROPERTY(int troubleCount READ troubleCount NOTIFY changed)  // failed and skipped ones
    Q_PROPERTY(bool undoable READ undoable NOTIFY runChanged)      // canPutBack() may come to hold at its end
    Q_PROPERTY(bool canPutBack READ canPutBack NOTIFY undoChanged)
    Q_PROPERTY(QString putBackLimits READ putBackLimits NOTIFY undoChanged)  // what that leaves; may be empty
    Q_PROPERTY(
        QString closing READ closing NOTIFY undoChanged)  // "Quit Editor", of closeLaunched(); or empty
    Q_PROPERTY(
        QString awaited READ awaited NOTIFY awaitedChanged)  // "2 windows…", of stopWaiting(); or empty
    Q_PROPERTY(bool onlyTrouble READ onlyTrouble WRITE setOnlyTrouble NOTIFY changed)

  public:
    /// The model must outlive it.
    explicit RestorePresenter(AppModel& model, QObject* parent = nullptr);

    QString title() const;
    QString subtitle() const;
    QString icon() const;
    QString colorName() const;
    QVariant source() const { return mapVariant(source_); }
    QVariantMap states() const { return states_; }
    bool running() const { return run_ && !run_->report(); }
    bool clean() const { return run_ && run_->clean(); }
    double progress() const { return progress_; }
    QAbstractItemModel* rows() { return &shown_; }
    int expectedRows() const;
    QString more() const;
    int rowCount() const { return rowCount_; }
    int troubleCount() const { return troubleCount_; }
    bool onlyTrouble() const { return onlyTrouble_; }
    void setOnlyTrouble(bool only);

    bool undoable() const { return run_ && run_->kind() == RestoreRun::Kind::restore; }
    bool canPutBack() const;
    QString putBackLimits() const;
    QString closing() const;
    QString awaited() const;
    Q_INVOKABLE void stopWaiting() { model_.stopWaiting(); }
    Q_INVOKABLE void putBack() { model_.putBack(); }
    Q_INVOKABLE void closeLaunched() { model_.closeLaunched(); }

    /// The panel's close control: stops what still runs.
    Q_INVOKABLE void close() { model_.closeRestorePanel(); }

  Q_SIGNALS:
    void changed();
    void runChanged();
    void undoChanged();
    void awaitedChanged();

  private:
    void followRun();
    void follow();
    void followEnd();
    void followAnew();

    AppModel& model_;
    QPointer<RestoreRun> run_;
    MapSource source_;
    QVariantMap states_;
    double progress_ = 0;
    QTimer due_;  // for items that wait to be shown
    std::vector<RowList::Row> rows_;
    RowList all_{{"app", "identifier", "text", "heading", "reason", "word", "outcome", "windowState",
                  "trouble", "desktop", "exact"}};
    QSortFilterProxyModel shown_;
    int rowCount_ = 0, troubleCount_ = 0;
    bool onlyTrouble_ = false;
};

}  // namespace quillo
