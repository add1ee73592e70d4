// The switcher panel: the library's matches as rows, and the keys of its field.
#pragma once
#include <QHash>
#include <QObject>
#include <QVariant>

#include "app/AppModel.hpp"
#include "app/Switcher.hpp"
#include "app/gui/KeyedList.hpp"
#include "app/gui/MapSource.hpp"

namespace quillo {

/// Values are made when a delegate asks for them: most rows are never seen.
class SwitcherRows final : public KeyedList {
    Q_OBJECT

  public:
    SwitcherRows(const LibraryIndex& index, const Switcher& switcher);

  private:
    struct Seen {
        Instant updatedAt;
        MapSource map;
    };

    QVariant value(const QString& key, int field) const override;
    MapSource mapOf(const QString& key, const Workspace& workspace) const;
    void reload();
    void follow(bool evenIfSame);

    const LibraryIndex& index_;
    const Switcher& switcher_;
    QHash<QString, std::size_t> places_;  // in the library, of the rows
    mutable QHash<QString, Seen> maps_;
};

class SwitcherPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QAbstractListModel* rows READ rows CONSTANT)  // name, apps, icon, colorName, source
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY changed)
    Q_PROPERTY(int highlighted READ highlighted NOTIFY changed)  // a row; their count for the save row
    Q_PROPERTY(bool focused READ focused WRITE setFocused NOTIFY changed)
    Q_PROPERTY(QString emptyText READ emptyText NOTIFY changed)
    Q_PROPERTY(QString prompt READ prompt CONSTANT)
    Q_PROPERTY(QString saveTitle READ saveTitle CONSTANT)
    Q_PROPERTY(QString saveDetail READ saveDetail CONSTANT)

  public:
    /// All must outlive it.
    SwitcherPresenter(AppModel& model, const LibraryIndex& index, Surfaces& surfaces,
                      QObject* parent = nullptr);

    QAbstractListModel* rows() { return &rows_; }
    QString query() const { return QString::fromStdString(switcher_.query()); }
    void setQuery(const QString& query) { switcher_.setQuery(query.toStdString()); }
    int highlighted() const { return static_cast<int>(switcher_.highlightedRow()); }
    bool focused() const { return switcher_.focused(); }
    void setFocused(bool focused) { switcher_.setFocused(focused); }
    QString emptyText() const { return QString::fromStdString(switcher_.emptyText()); }
    QString prompt() const;
    QString saveTitle() const;
    QString saveDetail() const;

    /// The panel has come up.
    Q_INVOKABLE void shown() { switcher_.shown(); }
    /// Whether the key means something to the switcher; `key` and `modifiers` are Qt's.
    Q_INVOKABLE bool press(int key, int modifiers);
    Q_INVOKABLE void pick(int row);

  Q_SIGNALS:
    void changed();

  private:
    Switcher switcher_;
    SwitcherRows rows_;
};

}  // namespace quillo
