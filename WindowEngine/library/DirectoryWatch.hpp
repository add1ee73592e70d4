// Notices that another program changed a directory, also one that does not exist yet or goes and comes back.
#pragma once
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "WindowEngine/services/FileSystem.hpp"
#include "WindowEngine/support/Job.hpp"

namespace quillo {

/// Where the system cannot watch, it stays silent, and where the directory is found as it was when last
/// looked at.
class DirectoryWatch {
  public:
    /// Creates the parent of `directory` where it is missing. `changed` is called on the executor's thread,
    /// once for changes that come close together.
    DirectoryWatch(Executor& executor, FileSystem& files, std::filesystem::path directory,
                   std::function<void()> changed);
    DirectoryWatch(const DirectoryWatch&) = delete;
    DirectoryWatch& operator=(const DirectoryWatch&) = delete;
    ~DirectoryWatch();

    /// The directory is about to be read: only what differs from now on is a change. Without this, reading
    /// that repairs, or tries to, would be told of itself.
    void look();

  private:
    using Stamps = std::optional<std::vector<EntryStamp>>;  // nothing where the directory cannot be listed

    Stamps stamps() const;
    void watch();
    void noticed();
    Task<> settle();

    Executor& executor_;
    FileSystem& files_;
    std::filesystem::path directory_;
    std::function<void()> changed_;
    std::shared_ptr<DirectoryWatch*> self_;  // null from its destruction on
    Stamps seen_;
    std::unique_ptr<FileWatch> watch_;
    std::optional<Job<>> settling_;  // last: it works on the above
};

}  // namespace quillo
