#include "app/gui/KeyedList.hpp"

#include <algorithm>

namespace quillo {
namespace {

constexpr int keyRole = Qt::UserRole;
constexpr std::size_t mostSteps = 64;

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

void KeyedList::setKeys(const std::vector<QString>& keys) {
    const int before = count();
    QHash<QString, std::size_t> places;
    for (std::size_t i = 0; i < keys.size(); ++i) places.insert(keys[i], i);
    std::vector<Fate> fates(keys.size(), Fate::comes);
    std::vector<std::size_t> remaining;
    std::size_t steps = 0;
    for (bool going = false; const QString& key : keys_) {
        const auto place = places.constFind(key);
        const bool goes = place == places.cend();
        steps += goes && !going;
        going = goes;
        if (goes) continue;
        remaining.push_back(*place);
        fates[*place] = Fate::moves;
    }
    const std::vector<std::size_t> staying = longestRising(remaining);
    for (const std::size_t place : staying) fates[place] = Fate::stays;
    steps += keys.size() - staying.size();
    if (steps > mostSteps) {
        replace(keys);
    } else {
        removeOthers(places);
        insertAndMove(keys, fates);
    }
    if (count() > 0) Q_EMIT dataChanged(index(0), index(count() - 1));
    if (count() != before) Q_EMIT countChanged();
}

/// Another list altogether, as a letter typed makes it: its rows take the places of those before, whose
/// delegates show them. Step by step would take longer than a frame may, as would new delegates.
void KeyedList::replace(const std::vector<QString>& keys) {
    const int before = count(), after = static_cast<int>(keys.size());
    if (before > after) {
        beginRemoveRows({}, after, before - 1);
        keys_.resize(keys.size());
        endRemoveRows();
    }
    std::ranges::copy_n(keys.begin(), std::min(before, after), keys_.begin());
    if (after > before) {
        beginInsertRows({}, before, after - 1);
        keys_ = keys;
        endInsertRows();
    }
}

void KeyedList::removeOthers(const QHash<QString, std::size_t>& kept) {
    const auto goes = [&](int row) { return !kept.contains(keys_[static_cast<std::size_t>(row)]); };
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

/// Rows that wait for their move are passed over.
void KeyedList::insertAndMove(const std::vector<QString>& keys, const std::vector<Fate>& fates) {
    auto at = keys_.begin();  // behind the row of the last key
    const auto row = [&](auto place) { return static_cast<int>(place - keys_.begin()); };
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (fates[i] == Fate::stays) {
            at = std::next(std::find(at, keys_.end(), keys[i]));
        } else if (fates[i] == Fate::comes) {
            beginInsertRows({}, row(at), row(at));
            at = std::next(keys_.insert(at, keys[i]));
            endInsertRows();
        } else if (const auto from = std::ranges::find(keys_, keys[i]); from < at) {
            beginMoveRows({}, row(from), row(from), {}, row(at));
            std::rotate(from, from + 1, at);
            endMoveRows();
        } else {
            if (from != at) {
                beginMoveRows({}, row(from), row(from), {}, row(at));
                std::rotate(at, from, from + 1);
                endMoveRows();
            }
            ++at;
        }
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
    setKeys(keys);
    values_ = std::move(values);
}

}  // namespace quillo
