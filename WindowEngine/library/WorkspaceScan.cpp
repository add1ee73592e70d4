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

bool isMissing(const Error& trouble) {
    return trouble.kind == ErrorKind::notFound;
}

// A file system's own words begin with the whole path, which the message's file name makes needless.
std::string reason(const Error& trouble, const std::filesystem::path& file) {
    const std::string opening = "Could not read " + file.string() + ": ";
    return trouble.text.starts_with(opening) ? trouble.text.substr(opening.size()) : trouble.text;
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

std::vector<std::string> WorkspaceScan::candidates() {
    const auto listed = files_.list(directory_);
    if (!listed) {
        if (!isMissing(listed.error())) result_.failure = listed.error();
        return {};
    }
    return WorkspaceFiles::primariesAmong(*listed);
}

std::vector<Result<Workspace>> WorkspaceScan::readAll(const std::vector<std::string>& names) const {
    std::vector<Result<Workspace>> read(names.size(), Result<Workspace>(std::unexpect));
    inParallel(names.size(),
               [&](std::size_t i) { read[i] = WorkspaceFiles::read(files_, directory_ / names[i]); });
    return read;
}

void WorkspaceScan::settle(const std::string& name, Result<Workspace> found) {
    if (found) {
        place(name, *std::move(found));
    } else {
        recover(name, found.error());
    }
}

void WorkspaceScan::recover(const std::string& name, const Error& trouble) {
    const auto primary = directory_ / name;
    auto backup = WorkspaceFiles::read(files_, directory_ / WorkspaceFiles::backupName(name));
    if (!backup) {
        if (isMissing(trouble) && isMissing(backup.error())) return;  // deleted since it was listed
        const Error& worse = isMissing(trouble) ? backup.error() : trouble;
        return report(Kind::unreadable, name, "Could not read " + name + " or its backup.",
                      reason(worse, primary));
    }
    // Anything else may be whole: a file that may not be read just now, one of a newer program, a link.
    if (!isMissing(trouble) && !WorkspaceFiles::isDamaged(trouble))
        return serve(name, *std::move(backup), trouble);
    auto repaired = readAgainOrRepair(name, *backup);
    if (!repaired && isMissing(repaired.error())) return;
    if (!repaired) return serve(name, *std::move(backup), repaired.error());
    if (*repaired == *backup) {
        report(Kind::recoveredBackup, name, "Recovered " + backup->name + " from its previous valid backup.",
               reason(trouble, primary));
    }
    place(name, *std::move(repaired));
}

// The lock keeps out a save or a deletion that is half done: what stands below it is at rest.
Result<Workspace> WorkspaceScan::readAgainOrRepair(const std::string& name, const Workspace& backup) {
    const Lock held = lock();
    if (!held) return std::unexpected(held.error());
    const auto primary = directory_ / name;
    auto again = WorkspaceFiles::read(files_, primary);
    if (again) return again;
    if (WorkspaceFiles::isDamaged(again.error())) {
        if (auto kept = WorkspaceFiles::keepDamaged(files_, primary, backup.id); !kept)
            return std::unexpected(kept.error());
    } else if (!isMissing(again.error()) || !files_.exists(directory_ / WorkspaceFiles::backupName(name))) {
        return again;
    }
    const auto bytes = WorkspaceCoding::encode(backup);
    if (!bytes) return std::unexpected(bytes.error());
    if (auto written = WorkspaceFiles::replace(files_, primary, backup.id, *bytes); !written)
        return std::unexpected(written.error());
    return backup;
}

// Lists the version before without touching anything.
void WorkspaceScan::serve(const std::string& name, Workspace backup, const Error& trouble) {
    report(Kind::unreadable, name, "Could not read " + name + ", so the version saved before it is listed.",
           reason(trouble, directory_ / name));
    accept(name, std::move(backup));
}

void WorkspaceScan::place(const std::string& name, Workspace workspace) {
    if (name == WorkspaceFiles::primaryName(workspace.id)) return accept(name, std::move(workspace));
    accept(name, workspace);
    moveLegacy(name, workspace);
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
    if (auto moved = moveLegacyFiles(name, workspace); !moved) {
        report(Kind::migrationFailed, name,
               "Could not migrate " + workspace.name + " to collision-safe storage.", moved.error().text);
    }
}

// The old file goes last, as when a workspace is deleted.
Result<void> WorkspaceScan::moveLegacyFiles(const std::string& name, const Workspace& workspace) {
    const auto primary = directory_ / WorkspaceFiles::primaryName(workspace.id);
    // The same in both places is a move that was interrupted.
    const auto taken = [&] {
        return files_.exists(primary) && WorkspaceFiles::read(files_, primary) != workspace;
    };
    if (taken()) return {};
    const auto bytes = WorkspaceCoding::encode(workspace);
    if (!bytes) return std::unexpected(bytes.error());
    const Lock held = lock();
    if (!held) return std::unexpected(held.error());
    if (taken()) return {};  // another program was faster
    Result<void> result;
    const bool isCopy = files_.exists(primary);
    if (!isCopy) result = WorkspaceFiles::save(files_, directory_, workspace.id, *bytes);
    if (result)
        result = WorkspaceFiles::removeDurably(files_, directory_, {WorkspaceFiles::backupName(name)});
    if (result) result = WorkspaceFiles::removeDurably(files_, directory_, {name});
    const std::string own = primary.filename().string();
    if (result)
        result_.moved.push_back(
            name + (isCopy ? ": removed, as " + own + " holds the same" : ": renamed to " + own));
    return result;
}

WorkspaceScan::Lock WorkspaceScan::lock() {
    if (lockRefused_) return std::unexpected(*lockRefused_);
    Lock held = files_.lock(directory_);
    if (!held) lockRefused_ = held.error();
    return held;
}

void WorkspaceScan::report(Kind kind, const std::string& name, std::string message, std::string detail) {
    result_.issues.push_back({kind, name, std::move(message), std::move(detail)});
}

}  // namespace quillo
