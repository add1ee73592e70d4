#include "app/StorageIssues.hpp"

#include <algorithm>
#include <utility>

namespace quillo {
namespace {

bool contains(const std::vector<WorkspaceLoadIssue>& issues, const WorkspaceLoadIssue& issue) {
    return std::ranges::find(issues, issue) != issues.end();
}

}  // namespace

bool StorageIssues::update(const WorkspaceScanResult& found) {
    std::erase_if(dismissed_,
                  [&](const WorkspaceLoadIssue& issue) { return !contains(found.issues, issue); });
    std::vector<WorkspaceLoadIssue> now = shown_;
    std::erase_if(now, [&](const WorkspaceLoadIssue& issue) {
        return issue.kind != WorkspaceLoadIssue::Kind::recoveredBackup || contains(found.issues, issue);
    });
    for (const WorkspaceLoadIssue& issue : found.issues)
        if (!contains(dismissed_, issue)) now.push_back(issue);
    if (found.failure) now.push_back({WorkspaceLoadIssue::Kind::unreadable, {}, found.failure->text, {}});
    moved_.insert(moved_.end(), found.moved.begin(), found.moved.end());
    const bool wasUnlisted = std::exchange(unlisted_, found.failure.has_value());
    return std::exchange(shown_, std::move(now)) != shown_ || wasUnlisted != unlisted_ ||
           !found.moved.empty();
}

bool StorageIssues::dismiss() {
    dismissed_.insert(dismissed_.end(), shown_.begin(), shown_.end());
    const bool movedAny = !std::exchange(moved_, {}).empty();
    return !std::exchange(shown_, {}).empty() || movedAny;
}

}  // namespace quillo
