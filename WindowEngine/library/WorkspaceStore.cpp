#include "WindowEngine/library/WorkspaceStore.hpp"

#include <simdjson.h>

#include <algorithm>
#include <map>

#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "WindowEngine/library/WorkspaceFiles.hpp"
#include "WindowEngine/library/WorkspaceScan.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"

namespace quillo {
namespace {

/// Of a document, without looking at the rest of it.
std::optional<std::string> nameIn(const std::string& bytes) {
    simdjson::ondemand::parser parser;
    simdjson::ondemand::document document;
    const simdjson::padded_string padded(bytes);
    std::string_view name;
    if (parser.iterate(padded).get(document) || document["name"].get_string().get(name)) return std::nullopt;
    return std::string(name);
}

}  // namespace

std::string WorkspaceLoadIssue::text() const {
    std::string text = message.contains(fileName) ? message : fileName + ": " + message;
    if (!detail.empty()) text += " (" + detail + ")";
    return text;
}

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

Result<Workspace> WorkspaceStore::saveAsNew(Workspace workspace, std::span<const Workspace> library) const {
    if (auto created = files_->createDirectories(directory_); !created)
        return std::unexpected(created.error());
    const auto lock = files_->lock(directory_);
    if (!lock) return std::unexpected(lock.error());
    workspace.name = freeName(workspace.name, library);
    const auto bytes = WorkspaceCoding::encode(workspace);
    if (!bytes) return std::unexpected(bytes.error());
    if (auto saved = WorkspaceFiles::save(*files_, directory_, workspace.id, *bytes); !saved)
        return std::unexpected(std::move(saved.error()));
    return workspace;
}

std::string WorkspaceStore::freeName(std::string_view base, std::span<const Workspace> library) const {
    std::map<Uuid, std::string> names;
    for (const std::string& file : files_->list(directory_).value_or(std::vector<std::string>())) {
        const auto id = Uuid::parse(std::filesystem::path(file).stem().string());
        if (!id || file != WorkspaceFiles::primaryName(*id)) continue;
        const Result<std::string> bytes = files_->read(directory_ / file);
        if (const auto name = bytes ? nameIn(*bytes) : std::nullopt) names.emplace(*id, *name);
    }
    for (const Workspace& workspace : library)
        if (files_->exists(url(workspace.id))) names.try_emplace(workspace.id, workspace.name);
    std::vector<std::string> taken;
    for (auto& [id, name] : names) taken.push_back(std::move(name));
    return uniqueName(base, taken);
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

// The primary goes last: whatever interrupts this, no older version comes to stand for what was deleted.
Result<void> WorkspaceStore::remove(const Uuid& id) const {
    const auto lock = files_->lock(directory_);
    if (!lock) return std::unexpected(lock.error());
    if (!files_->exists(url(id))) {
        return fail(ErrorKind::notFound, "There is no workspace file " + WorkspaceFiles::primaryName(id));
    }
    std::vector<std::string> versions = WorkspaceFiles::damagedNames(id);
    versions.push_back(backupURL(id).filename().string());
    if (auto removed = WorkspaceFiles::removeDurably(*files_, directory_, versions); !removed) return removed;
    return WorkspaceFiles::removeDurably(*files_, directory_, {WorkspaceFiles::primaryName(id)});
}

std::vector<std::string> WorkspaceStore::damagedFiles() const {
    std::vector<std::string> names = files_->list(directory_).value_or(std::vector<std::string>());
    std::erase_if(names, [](const std::string& name) { return !WorkspaceFiles::isDamagedName(name); });
    std::ranges::sort(names);
    return names;
}

Result<WorkspaceStore::Changed> WorkspaceStore::change(
    const Uuid& id, const std::function<Result<void>(Workspace&)>& change) const {
    const auto lock = files_->lock(directory_);
    if (!lock) return std::unexpected(lock.error());
    auto stored = load(id);
    if (!stored) return std::unexpected(std::move(stored.error()));
    Changed changed{*stored, *std::move(stored)};
    if (auto done = change(changed.after); !done) return std::unexpected(std::move(done.error()));
    if (changed.after == changed.before) return changed;
    const auto bytes = WorkspaceCoding::encode(changed.after);
    if (!bytes) return std::unexpected(bytes.error());
    if (auto saved = WorkspaceFiles::save(*files_, directory_, id, *bytes); !saved)
        return std::unexpected(std::move(saved.error()));
    return changed;
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
