// The switcher panel: the library's matches as rows, and the keys of its field.
#pragma once
#include <QObject>
#include <QVariant>

#include "app/AppModel.hpp"
#include "app/Switcher.hpp"
#include "app/gui/WorkspaceRows.hpp"

namespace quillo {

class SwitcherPresenter final : public QObject {
    Q_OBJECT
    Q_PROPERTY(QAbstractListModel* rows READ rows CONSTANT)  // WorkspaceRows
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
    void follow();

    Switcher switcher_;
    WorkspaceRows rows_;
    std::vector<std::size_t> shown_;
};

}  // namespace quillo
