#include "app/gui/WorkspaceRows.hpp"

#include <algorithm>
#include <set>

#include "app/gui/Words.hpp"

namespace quillo {

WorkspaceRows::WorkspaceRows(const LibraryIndex& index, QObject* parent)
    : KeyedList({"name", "icon", "colorName", "apps", "when", "map"}, parent), index_(index) {
    connect(&index, &LibraryIndex::reloaded, this, &WorkspaceRows::dropMapsOfOthers);
}

void WorkspaceRows::setPlaces(const std::vector<std::size_t>& places) {
    QHash<QString, Row> rows;
    std::vector<QString> keys;
    for (const std::size_t place : places) {
        const Uuid& id = index_.workspaces()[place].id;
        keys.push_back(QString::fromStdString(id.lower()));
        rows.insert(keys.back(), {id, place});
    }
    rows_.insert(rows);  // those that go are needed until they are gone
    setKeys(keys);
    rows_ = std::move(rows);
}

QVariant WorkspaceRows::value(const QString& key, int field) const {
    const auto row = rows_.constFind(key);
    if (row == rows_.cend()) return {};
    // While the library is read again, places mean others: the identity counts.
    const auto& all = index_.workspaces();
    const bool inPlace = row->place < all.size() && all[row->place].id == row->id;
    const auto found = inPlace ? all.begin() + static_cast<std::ptrdiff_t>(row->place)
                               : std::ranges::find(all, row->id, &Workspace::id);
    if (found == all.end()) return {};
    switch (NameRole + field) {
        case NameRole:
            return line(found->name);
        case IconRole:
            return qt(found->icon);
        case ColorRole:
            return qt(found->color);
        case AppsRole:
            return applicationNames(found->snapshot);
        case WhenRole:
            return shortDate(found->lastRestoredAt.value_or(found->updatedAt),
                             std::chrono::system_clock::now());
        default:
            return mapVariant(map(*found));
    }
}

/// The same handle for as long as the workspace is the same: a map draws anew for another one.
MapSource WorkspaceRows::map(const Workspace& workspace) const {
    CachedMap& cached = maps_[workspace.id];
    if (!cached.source || cached.updatedAt != workspace.updatedAt)
        cached = {workspace.updatedAt, drawnPart(workspace.snapshot)};
    return cached.source;
}

void WorkspaceRows::dropMapsOfOthers() {
    std::set<Uuid> known;
    for (const Workspace& workspace : index_.workspaces()) known.insert(workspace.id);
    std::erase_if(maps_, [&](const auto& one) { return !known.contains(one.first); });
}

}  // namespace quillo
