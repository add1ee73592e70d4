#include "WindowEngine/library/LibraryChanges.hpp"

#include <algorithm>

namespace quillo {
namespace {

const LibraryEntry* find(std::span<const LibraryEntry> entries, const Uuid& id) {
    const auto found = std::ranges::find(entries, id, &LibraryEntry::id);
    return found != entries.end() ? &*found : nullptr;
}

void addChanges(const LibraryEntry& before, const LibraryEntry& after, std::vector<LibraryChange>& changes) {
    using Kind = LibraryChange::Kind;
    const bool renamed = before.name != after.name;
    if (renamed) changes.push_back({Kind::renamed, after.id, after.name, before.name});
    const bool captured = before.capturedAt != after.capturedAt;
    if (captured || (!renamed && before.updatedAt != after.updatedAt))
        changes.push_back({Kind::saved, after.id, after.name, {}});
    if (after.lastRestoredAt && before.lastRestoredAt != after.lastRestoredAt)
        changes.push_back({Kind::restored, after.id, after.name, {}});
}

}  // namespace

std::vector<LibraryEntry> entriesOf(std::span<const Workspace> workspaces) {
    std::vector<LibraryEntry> entries;
    entries.reserve(workspaces.size());
    for (const Workspace& one : workspaces)
        entries.push_back({one.id, one.name, one.updatedAt, one.snapshot.capturedAt, one.lastRestoredAt});
    return entries;
}

std::vector<LibraryChange> changesBetween(std::span<const LibraryEntry> before,
                                          std::span<const LibraryEntry> after) {
    std::vector<LibraryChange> changes;
    for (const LibraryEntry& one : before)
        if (!find(after, one.id)) changes.push_back({LibraryChange::Kind::deleted, one.id, one.name, {}});
    for (const LibraryEntry& one : after) {
        if (const LibraryEntry* const former = find(before, one.id))
            addChanges(*former, one, changes);
        else
            changes.push_back({LibraryChange::Kind::saved, one.id, one.name, {}});
    }
    return changes;
}

}  // namespace quillo
