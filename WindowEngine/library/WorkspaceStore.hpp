// One JSON file per workspace in a directory of its own: crash-safe saves with a backup, scans that recover
// and report damage instead of failing.
#pragma once
#include <filesystem>
#include <string>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/services/FileSystem.hpp"

namespace quillo {

struct WorkspaceLoadIssue {
    enum class Kind { recoveredBackup, unreadable, duplicateIdentity, migrationFailed };
    Kind kind;
    std::string fileName;  // last path component
    std::string message;   // for the person
    std::string detail;    // which field is wrong, for unreadable files; may be empty

    bool operator==(const WorkspaceLoadIssue&) const = default;
};

struct WorkspaceScanResult {
    std::vector<Workspace> workspaces;  // newest updatedAt first
    std::vector<WorkspaceLoadIssue> issues;

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
    WorkspaceScanResult scan() const;
    Result<Workspace> load(const Uuid& id) const;  // primary file only
    Result<void> remove(const Uuid& id) const;     // notFound when there is no primary
    Result<bool> updateLastRestored(const Uuid& id, Instant at) const;

  private:
    FileSystem* files_;
    std::filesystem::path directory_;
};

}  // namespace quillo
