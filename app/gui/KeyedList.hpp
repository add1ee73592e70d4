// Lists for views whose rows have a key each. They change by differences: delegates, the focus in them and
// the place where a view stands stay with the rows that remain.
#pragma once
#include <QAbstractListModel>
#include <QHash>
#include <QString>
#include <QVariant>
#include <cstdint>
#include <vector>

namespace quillo {

class KeyedList : public QAbstractListModel {
    Q_OBJECT
    Q_PROPERTY(int count READ count NOTIFY countChanged)

  public:
    int count() const { return static_cast<int>(keys_.size()); }
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : count(); }
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override { return roles_; }

    const std::vector<QString>& keys() const { return keys_; }

  Q_SIGNALS:
    void countChanged();

  protected:
    /// Delegates see the row's key as "key", and these fields.
    explicit KeyedList(const QList<QByteArray>& fields, QObject* parent = nullptr);

    /// Of a row whose key was given last; `field` is a place in the fields.
    virtual QVariant value(const QString& key, int field) const = 0;
    /// The rows from now on; each key once. Values of rows that stay count as changed too. Of rows in a new
    /// order as few as possible move; where nearly everything changes, a row may stand for another key.
    void setKeys(const std::vector<QString>& keys);

  private:
    enum class Fate : std::uint8_t { stays, moves, comes };

    void replace(const std::vector<QString>& keys);
    void removeOthers(const QHash<QString, std::size_t>& kept);
    void insertAndMove(const std::vector<QString>& keys, const std::vector<Fate>& fates);

    QHash<int, QByteArray> roles_;
    std::vector<QString> keys_;
};

/// A list that holds its values.
class RowList final : public KeyedList {
    Q_OBJECT

  public:
    struct Row {
        QString key;
        QVariantList values;  // in the order of the fields
    };

    explicit RowList(const QList<QByteArray>& fields, QObject* parent = nullptr)
        : KeyedList(fields, parent) {}

    void setRows(const std::vector<Row>& rows);

  private:
    QVariant value(const QString& key, int field) const override { return values_.value(key).value(field); }

    QHash<QString, QVariantList> values_;
};

}  // namespace quillo
