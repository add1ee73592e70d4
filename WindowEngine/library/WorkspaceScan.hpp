// One pass over a store directory: every workspace in it, what was repaired, and what could not be read.
#pragma once
#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include "WindowEngine/library/WorkspaceStore.hpp"

namespace quillo {

class WorkspaceScan {
  public:
    WorkspaceScan(FileSystem& files, std::filesystem::path directory)
        : files_(files), directory_(std::move(directory)) {}

    /// Reads on several threads; results and issues come in ascending order of file name all the same.
    WorkspaceScanResult run();

  private:
    using Lock = Result<std::unique_ptr<DirectoryLock>>;

    std::vector<std::string> candidates() const;
    std::vector<Result<Workspace>> readAll(const std::vector<std::string>& names) const;
    void settle(const std::string& name, Result<Workspace> found);
    Result<Workspace> recover(const std::string& name, Error trouble);
    void repair(const std::string& name, const Workspace& workspace) const;
    void accept(const std::string& name, Workspace workspace);
    void moveLegacy(const std::string& name, const Workspace& workspace);
    Result<void> moveLegacyFiles(const std::string& name, const Workspace& workspace);
    void report(WorkspaceLoadIssue::Kind kind, const std::string& name, std::string message,
                std::string detail = {});

    FileSystem& files_;
    std::filesystem::path directory_;
    WorkspaceScanResult result_;
    std::map<Uuid, std::size_t> accepted_;  // identity to place in result_.workspaces
};

}  // namespace quillo
