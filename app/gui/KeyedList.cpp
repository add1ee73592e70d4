#include "app/gui/KeyedList.hpp"

#include <algorithm>

namespace quillo {
namespace {

constexpr int keyRole = Qt::UserRole;

/// Of the numbers, each there once, which belong to a longest rising sequence of them.
std::vector<std::size_t> longestRising(const std::vector<std::size_t>& numbers) {
    std::vector<std::size_t> ends;                       // places of the smallest end of each length
    std::vector<std::size_t> before(numbers.size(), 0);  // place of the one before; meaningless for a first
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const auto at =
            std::ranges::lower_bound(ends, numbers[i], {}, [&](auto place) { return numbers[place]; });
        if (at != ends.begin()) before[i] = *std::prev(at);
        if (at == ends.end()) {
            ends.push_back(i);
        } else {
            *at = i;
        }
    }
    std::vector<std::size_t> rising(ends.size());
    for (std::size_t length = ends.size(), place = ends.empty() ? 0 : ends.back(); length > 0; --length) {
        rising[length - 1] = numbers[place];
        place = before[place];
    }
    return rising;
}

}  // namespace

KeyedList::KeyedList(const QList<QByteArray>& fields, QObject* parent)
    : QAbstractListModel(parent), roles_{{keyRole, "key"}} {
    int role = keyRole;
    for (const QByteArray& field : fields) roles_.insert(++role, field);
}

QVariant KeyedList::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= count()) return {};
    const QString& key = keys_[static_cast<std::size_t>(index.row())];
    if (role == keyRole) return key;
    return role > keyRole ? value(key, role - keyRole - 1) : QVariant();
}

void KeyedList::setKeys(std::vector<QString> keys) {
    const int before = count();
    QHash<QString, std::size_t> places;
    for (std::size_t i = 0; i < keys.size(); ++i) places.insert(keys[i], i);
    std::vector<std::size_t> remaining;
    for (const QString& key : keys_) {
        if (const auto place = places.constFind(key); place != places.cend()) remaining.push_back(*place);
    }
    std::vector<bool> stays(keys.size());
    for (const std::size_t place : longestRising(remaining)) stays[place] = true;
    removeRowsBut(places, stays);
    insertMissing(keys, stays);
    if (count() > 0) Q_EMIT dataChanged(index(0), index(count() - 1));
    if (count() != before) Q_EMIT countChanged();
}

void KeyedList::removeRowsBut(const QHash<QString, std::size_t>& places, const std::vector<bool>& stays) {
    const auto goes = [&](int row) {
        const auto place = places.constFind(keys_[static_cast<std::size_t>(row)]);
        return place == places.cend() || !stays[*place];
    };
    for (int last = count() - 1; last >= 0; --last) {
        if (!goes(last)) continue;
        int first = last;
        while (first > 0 && goes(first - 1)) --first;
        beginRemoveRows({}, first, last);
        keys_.erase(keys_.begin() + first, keys_.begin() + last + 1);
        endRemoveRows();
        last = first;
    }
}

void KeyedList::insertMissing(const std::vector<QString>& keys, const std::vector<bool>& stays) {
    for (std::size_t first = 0; first < keys.size(); ++first) {
        if (stays[first]) continue;
        std::size_t end = first + 1;
        while (end < keys.size() && !stays[end]) ++end;
        const auto at = static_cast<std::ptrdiff_t>(first), stop = static_cast<std::ptrdiff_t>(end);
        beginInsertRows({}, static_cast<int>(first), static_cast<int>(end) - 1);
        keys_.insert(keys_.begin() + at, keys.begin() + at, keys.begin() + stop);
        endInsertRows();
        first = end;
    }
}

void RowList::setRows(const std::vector<Row>& rows) {
    QHash<QString, QVariantList> values;
    std::vector<QString> keys;
    for (const Row& row : rows) {
        keys.push_back(row.key);
        values.insert(row.key, row.values);
    }
    values_.insert(values);  // those of rows that go are needed until they are gone
    setKeys(std::move(keys));
    values_ = std::move(values);
}

}  // namespace quillo
