#include "WindowEngine/library/WorkspaceStore.hpp"

#include "WindowEngine/library/WorkspaceFiles.hpp"
#include "WindowEngine/library/WorkspaceScan.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"

namespace quillo {

std::filesystem::path WorkspaceStore::url(const Uuid& id) const {
    return directory_ / WorkspaceFiles::primaryName(id);
}

std::filesystem::path WorkspaceStore::backupURL(const Uuid& id) const {
    return directory_ / WorkspaceFiles::backupName(WorkspaceFiles::primaryName(id));
}

Result<void> WorkspaceStore::save(const Workspace& workspace) const {
    if (auto created = files_->createDirectories(directory_); !created) return created;
    const auto bytes = WorkspaceCoding::encode(workspace);
    if (!bytes) return std::unexpected(bytes.error());
    const auto lock = files_->lock(directory_);
    if (!lock) return std::unexpected(lock.error());
    return WorkspaceFiles::save(*files_, directory_, workspace.id, *bytes);
}

WorkspaceScanResult WorkspaceStore::scan() const {
    return WorkspaceScan(*files_, directory_).run();
}

Result<Workspace> WorkspaceStore::load(const Uuid& id) const {
    auto workspace = WorkspaceFiles::read(*files_, url(id));
    if (workspace) return workspace;
    Error error = std::move(workspace.error());
    const bool aboutContents =
        error.kind == ErrorKind::invalidData || error.kind == ErrorKind::unsupportedSchema;
    if (aboutContents) error.text = WorkspaceFiles::primaryName(id) + ": " + error.text;
    return std::unexpected(std::move(error));
}

Result<void> WorkspaceStore::remove(const Uuid& id) const {
    const auto lock = files_->lock(directory_);
    if (!lock) return std::unexpected(lock.error());
    if (auto removed = files_->remove(url(id)); !removed) return removed;
    (void)files_->remove(backupURL(id));
    (void)files_->syncDirectory(directory_);
    return {};
}

// Reading and writing under one lock: a save by another process in between would be undone.
Result<bool> WorkspaceStore::updateLastRestored(const Uuid& id, Instant at) const {
    if (!files_->exists(url(id))) return false;
    const auto lock = files_->lock(directory_);
    if (!lock) return std::unexpected(lock.error());
    auto workspace = WorkspaceFiles::read(*files_, url(id));
    if (!workspace) return false;
    workspace->lastRestoredAt = at;
    const auto bytes = WorkspaceCoding::encode(*workspace);
    if (!bytes) return std::unexpected(bytes.error());
    if (auto saved = WorkspaceFiles::save(*files_, directory_, id, *bytes); !saved) {
        return std::unexpected(std::move(saved.error()));
    }
    return true;
}

}  // namespace quillo
