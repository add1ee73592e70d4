// One pass over a store directory: every workspace in it, what was repaired, and what could not be read.
#pragma once
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "WindowEngine/library/WorkspaceStore.hpp"

namespace quillo {

class WorkspaceScan {
  public:
    WorkspaceScan(FileSystem& files, std::filesystem::path directory)
        : files_(files), directory_(std::move(directory)) {}

    /// Writes nothing but what repairs damaged and missing primaries and moves legacy files; whatever cannot
    /// be read for another reason stays untouched. Reads on several threads; results and issues come in
    /// ascending order of file name all the same.
    WorkspaceScanResult run();

  private:
    using Lock = Result<std::unique_ptr<DirectoryLock>>;

    std::vector<std::string> candidates();
    std::vector<Result<Workspace>> readAll(const std::vector<std::string>& names) const;
    void settle(const std::string& name, Result<Workspace> found);
    void recover(const std::string& name, const Error& trouble);
    Result<Workspace> readAgainOrRepair(const std::string& name, const Workspace& backup);
    void serve(const std::string& name, Workspace backup, const Error& trouble);
    void place(const std::string& name, Workspace workspace);
    void accept(const std::string& name, Workspace workspace);
    void moveLegacy(const std::string& name, const Workspace& workspace);
    Result<void> moveLegacyFiles(const std::string& name, const Workspace& workspace);
    Lock lock();
    void report(WorkspaceLoadIssue::Kind kind, const std::string& name, std::string message,
                std::string detail = {});

    FileSystem& files_;
    std::filesystem::path directory_;
    WorkspaceScanResult result_;
    std::optional<Error> lockRefused_;      // waiting for it once is enough for one scan
    std::map<Uuid, std::size_t> accepted_;  // identity to place in result_.workspaces
};

}  // namespace quillo
