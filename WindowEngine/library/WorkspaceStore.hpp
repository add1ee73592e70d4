// One JSON file per workspace in a directory of its own: crash-safe saves with a backup, scans that recover
// and report damage instead of failing.
#pragma once
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/services/FileSystem.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo {

struct WorkspaceLoadIssue {
    enum class Kind { recoveredBackup, unreadable, duplicateIdentity, migrationFailed };
    Kind kind;
    std::string fileName;  // last path component
    std::string message;   // for the person
    std::string detail;    // the reason: which field is wrong, or what the system said; may be empty

    /// What to show: it names the file, and the reason where there is one.
    std::string text() const;

    bool operator==(const WorkspaceLoadIssue&) const = default;
};

struct WorkspaceScanResult {
    std::vector<Workspace> workspaces;  // newest updatedAt first
    std::vector<WorkspaceLoadIssue> issues;
    /// Why the directory could not be listed: then nothing is known of what it holds. One that does not exist
    /// is an empty one.
    std::optional<Error> failure = {};
    /// Files that stood under other names than their identifiers', and what was done with each: "My
    /// Work.json: renamed to 6f1c...60.json". Nothing is wrong with them.
    std::vector<std::string> moved = {};

    bool operator==(const WorkspaceScanResult&) const = default;
};

/// Stateless: every operation goes to the file system. Writes hold the directory's advisory lock.
class WorkspaceStore {
  public:
    WorkspaceStore(FileSystem& files, std::filesystem::path directory)
        : files_(&files), directory_(std::move(directory)) {}

    const std::filesystem::path& directory() const { return directory_; }
    std::filesystem::path url(const Uuid& id) const;
    std::filesystem::path backupURL(const Uuid& id) const;

    Result<void> save(const Workspace& workspace) const;
    /// Saves one that is new under its name or, where that is taken, the first free one after it
    /// (uniqueName): chosen under the lock, so that two that save at once never take one name. Gives what was
    /// saved. `library` is what a scan found: of what cannot be read only that tells the name.
    Result<Workspace> saveAsNew(Workspace workspace, std::span<const Workspace> library) const;
    /// `base`, or the first free name after it, as things stand now. For a `change`, which holds the lock.
    std::string freeName(std::string_view base, std::span<const Workspace> library) const;
    WorkspaceScanResult scan() const;
    Result<Workspace> load(const Uuid& id) const;  // primary file only
    /// With its backup and damaged versions, and with all files of other names that hold it. notFound when
    /// there is no primary. After another error the workspace is still there, or gone for good: an older
    /// version never comes back in its place.
    Result<void> remove(const Uuid& id) const;
    /// Names of damaged versions that were kept beside repaired ones, in ascending order.
    std::vector<std::string> damagedFiles() const;
    Result<bool> updateLastRestored(const Uuid& id, Instant at) const;

    struct Changed {
        Workspace before, after;
    };
    /// Changes what is stored, under one lock: nothing that another program saves is lost. Where `change`
    /// fails, or changes nothing, nothing is written.
    Result<Changed> change(const Uuid& id, const std::function<Result<void>(Workspace&)>& change) const;

  private:
    Result<std::vector<std::string>> filesOf(const Uuid& id) const;

    FileSystem* files_;
    std::filesystem::path directory_;
};

}  // namespace quillo
