// What is wrong with the files of the library, until somebody has seen it.
#pragma once
#include <string>
#include <vector>

#include "WindowEngine/library/WorkspaceStore.hpp"

namespace quillo {

class StorageIssues {
  public:
    /// After each scan. A repair is told by the one scan that made it, and kept; what a scan no longer finds
    /// is forgotten, and told again if it comes back. True if `shown` has changed.
    bool update(const WorkspaceScanResult& found);
    /// Shows none of them again as long as they last. True if there were any.
    bool dismiss();

    const std::vector<WorkspaceLoadIssue>& shown() const { return shown_; }
    /// What scans did with files of other names, WorkspaceScanResult::moved, each told by one scan only.
    const std::vector<std::string>& moved() const { return moved_; }
    /// Whether the last scan could not list the library: then it is not known to be empty.
    bool unlisted() const { return unlisted_; }

  private:
    std::vector<WorkspaceLoadIssue> shown_;
    std::vector<WorkspaceLoadIssue> dismissed_;
    std::vector<std::string> moved_;
    bool unlisted_ = false;
};

}  // namespace quillo
