// The capture under review, as its page shows it.
#pragma once
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include "app/AppModel.hpp"
#include "app/PlatformTexts.hpp"
#include "app/gui/MapSource.hpp"
#include "app/gui/ReviewRows.hpp"

namespace quillo {

/// The state that a map gives the windows which are left out, by CaptureFilter::windowKey.
QVariantMap untickedWindows(const CaptureDraft& draft);

class ReviewPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(bool capturing READ capturing NOTIFY capturingChanged)
    Q_PROPERTY(bool present READ present NOTIFY draftChanged)    // something is under review
    Q_PROPERTY(bool updating READ updating NOTIFY draftChanged)  // it will take a saved workspace's place
    Q_PROPERTY(QStringList notes READ notes NOTIFY draftChanged)
    Q_PROPERTY(QVariant map READ map NOTIFY draftChanged)
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY changed)
    Q_PROPERTY(QString icon READ icon WRITE setIcon NOTIFY changed)
    Q_PROPERTY(QString color READ color WRITE setColor NOTIFY changed)
    Q_PROPERTY(QStringList icons READ icons CONSTANT)
    Q_PROPERTY(QStringList colors READ colors CONSTANT)
    Q_PROPERTY(QVariantMap states READ states NOTIFY exclusionsChanged)  // of the map's windows
    Q_PROPERTY(QString savedText READ savedText NOTIFY exclusionsChanged)
    Q_PROPERTY(QString leftOutText READ leftOutText NOTIFY exclusionsChanged)  // empty: nothing is
    Q_PROPERTY(QString counts READ counts NOTIFY exclusionsChanged)
    Q_PROPERTY(QAbstractItemModel* rows READ rows CONSTANT)

  public:
    ReviewPresenter(AppModel& model, TextVariant variant, QObject* parent = nullptr);

    bool capturing() const { return model_.capturing(); }
    bool present() const { return model_.draft() != nullptr; }
    bool updating() const { return present() && model_.draft()->updating(); }
    /// What its capture remarked, and which applications could not be started again.
    QStringList notes() const { return notes_; }
    QVariant map() const;
    QString name() const;
    void setName(const QString& name);
    QString icon() const;
    void setIcon(const QString& icon);
    QString color() const;
    void setColor(const QString& color);
    QStringList icons() const;
    QStringList colors() const;
    QVariantMap states() const;
    QString savedText() const;
    QString leftOutText() const;
    QString counts() const;
    QAbstractItemModel* rows() { return &rows_; }

    /// Whether something would be lost that the person typed or unticked.
    Q_INVOKABLE bool touched() const;
    Q_INVOKABLE void toggle(int row) { rows_.toggle(row); }
    Q_INVOKABLE void setOpen(int row, bool open) { rows_.setOpen(row, open); }
    // As ReviewRows has them.
    Q_INVOKABLE int reveal(const QString& windowKey) { return rows_.reveal(windowKey); }
    Q_INVOKABLE int rowOf(const QString& windowKey) const { return rows_.rowOf(windowKey); }
    Q_INVOKABLE QStringList windowKeys(int row) const { return rows_.windowKeys(row); }
    Q_INVOKABLE QStringList allWindowKeys() const { return rows_.windowKeys(); }
    Q_INVOKABLE void save();
    Q_INVOKABLE void cancel();
    /// The window is about to be closed, which cancels. Where something would be lost the person is asked
    /// first: false.
    bool mayClose();

  Q_SIGNALS:
    void closeAsked();
    void capturingChanged();
    void draftChanged();
    void changed();
    void exclusionsChanged();

  private:
    struct Amount {
        std::int64_t apps = 0, windows = 0, tabs = 0, folders = 0;
    };

    static Amount amountOf(const WorkspaceSnapshot& snapshot);
    void draftReplaced();
    void countAnew();
    QStringList notesOf(const WorkspaceSnapshot& snapshot) const;

    AppModel& model_;
    const TextVariant variant_;
    ReviewRows rows_;
    QStringList notes_;
    MapSource map_;
    Amount all_, kept_;
};

}  // namespace quillo
