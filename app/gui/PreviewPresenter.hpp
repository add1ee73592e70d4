// What resuming a workspace would do, on its page in the main window.
#pragma once
#include <QObject>
#include <QPointer>
#include <QStringList>
#include <QVariantMap>

#include "app/AppModel.hpp"
#include "app/gui/MapSource.hpp"
#include "app/gui/ReviewRows.hpp"
#include "app/gui/Words.hpp"

namespace quillo {

class PreviewPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString name READ name NOTIFY changed)
    Q_PROPERTY(QString icon READ icon NOTIFY changed)
    Q_PROPERTY(QString colorName READ colorName NOTIFY changed)
    Q_PROPERTY(QVariant map READ map NOTIFY planned)           // of the desktop as it will be
    Q_PROPERTY(QVariantMap states READ states NOTIFY planned)  // of its windows
    /// Applications with their windows, then the others that are hidden or asked to quit.
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)
    Q_PROPERTY(bool ready READ ready NOTIFY planned)           // the first plan has come
    Q_PROPERTY(QStringList totals READ totals NOTIFY planned)  // sentences
    /// What cannot come back and why, as many as a person may read; "and 20 more".
    Q_PROPERTY(QStringList troubles READ troubles NOTIFY planned)
    Q_PROPERTY(QString moreTroubles READ moreTroubles NOTIFY planned)
    Q_PROPERTY(QString leftOutText READ leftOutText NOTIFY planned)  // "2 left out"; empty: nothing is
    Q_PROPERTY(int cleanSlate READ cleanSlate NOTIFY planned)
    Q_PROPERTY(QStringList cleanSlateLabels READ cleanSlateLabels CONSTANT)
    Q_PROPERTY(bool canResume READ canResume NOTIFY busyChanged)

  public:
    /// The model must outlive it.
    explicit PreviewPresenter(AppModel& model, QObject* parent = nullptr);

    QString name() const { return line(shown().name); }
    QString icon() const { return qt(shown().icon); }
    QString colorName() const { return qt(shown().color); }
    QVariant map() const { return mapVariant(map_); }
    QVariantMap states() const { return states_; }
    QAbstractItemModel* rows() { return &rows_; }
    bool ready() const { return preview_ && preview_->plan(); }
    QStringList totals() const { return totals_; }
    QStringList troubles() const { return troubles_; }
    QString moreTroubles() const { return moreTroubles_; }
    QString leftOutText() const;
    int cleanSlate() const {
        return static_cast<int>(preview_ ? preview_->cleanSlate() : CleanSlateMode::keep);
    }
    QStringList cleanSlateLabels() const;
    bool canResume() const;

    Q_INVOKABLE void toggle(int row) { rows_.toggle(row); }
    Q_INVOKABLE void setOpen(int row, bool open) { rows_.setOpen(row, open); }
    Q_INVOKABLE int reveal(const QString& windowKey) { return rows_.reveal(windowKey); }
    Q_INVOKABLE int rowOf(const QString& windowKey) const { return rows_.rowOf(windowKey); }
    Q_INVOKABLE QStringList windowKeys(int row) const { return rows_.windowKeys(row); }
    Q_INVOKABLE QStringList allWindowKeys() const { return rows_.windowKeys(); }
    Q_INVOKABLE void setCleanSlate(int mode);
    Q_INVOKABLE void resume() { model_.resumePreview(); }

  Q_SIGNALS:
    void changed();
    void planned();
    void busyChanged();

  private:
    void follow();
    void followTicks(bool another);
    void followPlan();
    void reword();
    const Workspace& shown() const;

    AppModel& model_;
    QPointer<ResumePreview> preview_;  // the last one: a page that fades out keeps its words
    Workspace workspace_;              // of it
    ReviewRows rows_;
    MapSource map_;
    QVariantMap states_;
    QStringList totals_, troubles_;
    QString moreTroubles_;
};

}  // namespace quillo
