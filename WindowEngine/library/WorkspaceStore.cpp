#include "WindowEngine/library/WorkspaceStore.hpp"

#include <simdjson.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <tuple>

#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "WindowEngine/library/WorkspaceFiles.hpp"
#include "WindowEngine/library/WorkspaceScan.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"

namespace quillo {
namespace {

/// A field of a document, without looking at the rest of it.
std::optional<std::string> textIn(const std::string& bytes, std::string_view field) {
    simdjson::ondemand::parser parser;
    simdjson::ondemand::document document;
    const simdjson::padded_string padded(bytes);
    std::string_view text;
    if (parser.iterate(padded).get(document) || document[field].get_string().get(text)) return std::nullopt;
    return std::string(text);
}

/// When the version was saved that a scan would take `file` for: its own or, where it is damaged or gone, its
/// backup's. Absent where that is none of this workspace.
std::optional<Instant> savedAt(FileSystem& files, const std::filesystem::path& file, const Uuid& id) {
    for (const auto& version : {file, std::filesystem::path(WorkspaceFiles::backupName(file.string()))}) {
        const Result<std::string> bytes = files.read(version);
        if (!bytes && bytes.error().kind == ErrorKind::notFound) continue;
        const std::optional<std::string> written = bytes ? textIn(*bytes, "id") : std::nullopt;
        if (!bytes || (written && Uuid::parse(*written) != id)) return std::nullopt;
        const Result<Workspace> found = WorkspaceCoding::decode(*bytes);
        if (found) return found->id == id ? std::optional(found->updatedAt) : std::nullopt;
        if (!WorkspaceFiles::isDamaged(found.error())) return std::nullopt;
    }
    return std::nullopt;
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
        if (const auto name = bytes ? textIn(*bytes, "name") : std::nullopt) names.emplace(*id, *name);
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

// The names of its primary and of those that stand for it under other names, as a copy made by hand does: the
// version that a scan lists comes last.
Result<std::vector<std::string>> WorkspaceStore::filesOf(const Uuid& id) const {
    const auto names = files_->list(directory_);
    if (!names) return std::unexpected(names.error());
    std::vector<std::tuple<Instant, bool, std::string>> found;
    for (const std::string& name : WorkspaceFiles::primariesAmong(*names)) {
        const bool isPrimary = name == WorkspaceFiles::primaryName(id);
        const std::optional<Instant> saved = savedAt(*files_, directory_ / name, id);
        if (saved || isPrimary) found.emplace_back(saved.value_or(Instant::min()), isPrimary, name);
    }
    std::ranges::sort(found);
    std::vector<std::string> ordered;
    for (auto& [saved, isPrimary, name] : found) ordered.push_back(std::move(name));
    return ordered;
}

// Whatever interrupts this, no older version comes to stand for what was deleted.
Result<void> WorkspaceStore::remove(const Uuid& id) const {
    const auto lock = files_->lock(directory_);
    if (!lock) return std::unexpected(lock.error());
    if (!files_->exists(url(id))) {
        return fail(ErrorKind::notFound, "There is no workspace file " + WorkspaceFiles::primaryName(id));
    }
    const auto files = filesOf(id);
    if (!files) return std::unexpected(files.error());
    std::vector<std::string> versions = WorkspaceFiles::damagedNames(id);
    std::ranges::transform(*files, std::back_inserter(versions), WorkspaceFiles::backupName);
    if (auto removed = WorkspaceFiles::removeDurably(*files_, directory_, versions); !removed) return removed;
    for (const std::string& name : *files) {
        if (auto removed = WorkspaceFiles::removeDurably(*files_, directory_, {name}); !removed)
            return removed;
    }
    return {};
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
