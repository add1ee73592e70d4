#include "WindowEngine/library/WorkspaceScan.hpp"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>
#include <utility>

#include "WindowEngine/library/WorkspaceFiles.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/support/StableSort.hpp"

namespace quillo {
namespace {

using Kind = WorkspaceLoadIssue::Kind;

// Calls work(i) for every i below `count`, on this thread and as many others as pay off.
template <class Work>
void inParallel(std::size_t count, const Work& work) {
    constexpr std::size_t worthAThread = 16, mostThreads = 4;
    std::atomic<std::size_t> next{0};
    const auto drain = [&] {
        for (std::size_t i = next++; i < count; i = next++) work(i);
    };
    const std::size_t useful =
        std::min({count / worthAThread, mostThreads, std::size_t{std::thread::hardware_concurrency()}});
    std::vector<std::thread> helpers;
    try {
        while (helpers.size() + 1 < useful) helpers.emplace_back(drain);
    } catch (const std::system_error&) {  // no more threads to be had: fewer do it as well
    }
    drain();
    for (std::thread& helper : helpers) helper.join();
}

Result<void> removeIfPresent(FileSystem& files, const std::filesystem::path& file) {
    auto removed = files.remove(file);
    return !removed && removed.error().kind == ErrorKind::notFound ? Result<void>() : removed;
}

}  // namespace

WorkspaceScanResult WorkspaceScan::run() {
    const std::vector<std::string> names = candidates();
    std::vector<Result<Workspace>> read = readAll(names);
    result_.workspaces.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) settle(names[i], std::move(read[i]));
    sortStably(result_.workspaces,
               [](const Workspace& a, const Workspace& b) { return b.updatedAt <=> a.updatedAt; });
    return std::move(result_);
}

// Names of primaries in ascending order, also of those that are missing and have a backup.
std::vector<std::string> WorkspaceScan::candidates() const {
    std::vector<std::string> names;
    for (const std::string& name : files_.list(directory_).value_or(std::vector<std::string>())) {
        if (WorkspaceFiles::hasExtension(name, "json")) names.push_back(name);
        if (!WorkspaceFiles::hasExtension(name, "bak")) continue;
        std::string primary = name.substr(0, name.size() - std::string_view(".bak").size());
        if (WorkspaceFiles::hasExtension(primary, "json")) names.push_back(std::move(primary));
    }
    std::ranges::sort(names);
    const auto repeated = std::ranges::unique(names);
    names.erase(repeated.begin(), repeated.end());
    return names;
}

std::vector<Result<Workspace>> WorkspaceScan::readAll(const std::vector<std::string>& names) const {
    std::vector<Result<Workspace>> read(names.size(), Result<Workspace>(std::unexpect));
    inParallel(names.size(),
               [&](std::size_t i) { read[i] = WorkspaceFiles::read(files_, directory_ / names[i]); });
    return read;
}

void WorkspaceScan::settle(const std::string& name, Result<Workspace> found) {
    if (!found) found = recover(name, std::move(found.error()));
    if (!found) return;
    if (name == WorkspaceFiles::primaryName(found->id)) return accept(name, *std::move(found));
    accept(name, *found);
    moveLegacy(name, *found);
}

// The lock keeps out a save or a deletion that is half done: what we see below it is at rest. Without it
// (a directory held by another program) the backup still serves, but nothing is written.
Result<Workspace> WorkspaceScan::recover(const std::string& name, Error trouble) {
    const Lock lock = files_.lock(directory_);
    const auto primary = directory_ / name, backup = directory_ / WorkspaceFiles::backupName(name);
    if (lock) {
        auto again = WorkspaceFiles::read(files_, primary);
        if (again) return again;
        trouble = std::move(again.error());
        if (!files_.exists(primary) && !files_.exists(backup)) return std::unexpected(std::move(trouble));
    }
    auto saved = WorkspaceFiles::read(files_, backup);
    if (!saved) {
        if (trouble.kind == ErrorKind::notFound) trouble = std::move(saved.error());
        report(Kind::unreadable, name, "Could not read " + name + " or its backup.", trouble.text);
        return std::unexpected(std::move(trouble));
    }
    // What is only too large for this program may be whole.
    if (lock && !WorkspaceCoding::isTooLarge(trouble)) repair(name, *saved);
    report(Kind::recoveredBackup, name, "Recovered " + saved->name + " from its previous valid backup.",
           trouble.text);
    return saved;
}

// Its failure changes nothing for the person: the backup stands, and the next scan tries again.
void WorkspaceScan::repair(const std::string& name, const Workspace& workspace) const {
    const auto bytes = WorkspaceCoding::encode(workspace);
    if (bytes) (void)WorkspaceFiles::replace(files_, directory_ / name, workspace.id, *bytes);
}

void WorkspaceScan::accept(const std::string& name, Workspace workspace) {
    const auto [entry, isNew] = accepted_.try_emplace(workspace.id, result_.workspaces.size());
    if (isNew) {
        result_.workspaces.push_back(std::move(workspace));
        return;
    }
    report(Kind::duplicateIdentity, name, "Found duplicate files for workspace " + workspace.name + ".");
    Workspace& earlier = result_.workspaces[entry->second];
    if (workspace.updatedAt > earlier.updatedAt) earlier = std::move(workspace);
}

// Files from before there was one file per identifier, or put there by hand.
void WorkspaceScan::moveLegacy(const std::string& name, const Workspace& workspace) {
    if (files_.exists(directory_ / WorkspaceFiles::primaryName(workspace.id))) return;
    if (auto moved = moveLegacyFiles(name, workspace); !moved) {
        report(Kind::migrationFailed, name,
               "Could not migrate " + workspace.name + " to collision-safe storage.", moved.error().text);
    }
}

Result<void> WorkspaceScan::moveLegacyFiles(const std::string& name, const Workspace& workspace) {
    const auto bytes = WorkspaceCoding::encode(workspace);
    if (!bytes) return std::unexpected(bytes.error());
    const Lock lock = files_.lock(directory_);
    if (!lock) return std::unexpected(lock.error());
    if (files_.exists(directory_ / WorkspaceFiles::primaryName(workspace.id)))
        return {};  // another program was faster
    auto result = WorkspaceFiles::save(files_, directory_, workspace.id, *bytes);
    if (result) result = removeIfPresent(files_, directory_ / name);
    if (result) result = removeIfPresent(files_, directory_ / WorkspaceFiles::backupName(name));
    return result;
}

void WorkspaceScan::report(Kind kind, const std::string& name, std::string message, std::string detail) {
    result_.issues.push_back({kind, name, std::move(message), std::move(detail)});
}

}  // namespace quillo
