// The file operations of the store. Every one can fail, and a fault test overrides just the one it needs
// (ForwardingFileSystem). All calls block for the disk only; any thread may call them.
#pragma once
#include <compare>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/support/Error.hpp"

namespace quillo {

/// Held while a directory is written; released by its destructor.
class DirectoryLock {
  public:
    virtual ~DirectoryLock() = default;
};

class FileWatch {
  public:
    virtual ~FileWatch() = default;  // stops watching
};

/// What tells one state of a directory's entry from another without reading it.
struct EntryStamp {
    std::string name;
    std::uint64_t file = 0;    // the system's number of it: another one after each renaming into place
    std::int64_t size = 0;     // bytes
    std::int64_t changed = 0;  // nanoseconds: contents or permissions

    auto operator<=>(const EntryStamp&) const = default;
};

class FileSystem {
  public:
    using Path = std::filesystem::path;

    virtual ~FileSystem() = default;

    /// The whole file. A symbolic link as last component is refused, as is anything but a regular file; one
    /// that is larger than 32 MB is invalidData, its code std::errc::file_too_large.
    virtual Result<std::string> read(const Path& file) = 0;
    /// Creates the directory and its parents, each with mode 0700 whatever the umask. One that exists and is
    /// the person's own is closed to others; its parents keep their modes.
    virtual Result<void> createDirectories(const Path& directory) = 0;
    /// Creates a new file (mode 0600; an existing one is an error), writes and syncs it. On failure no file
    /// remains.
    virtual Result<void> createFile(const Path& file, std::string_view bytes) = 0;
    /// Copies a regular file to a new name (mode 0600), synced. On failure no copy remains.
    virtual Result<void> copy(const Path& from, const Path& to) = 0;
    /// Renames atomically; an existing `to` is replaced. On failure both are as before.
    virtual Result<void> rename(const Path& from, const Path& to) = 0;
    /// Removes a file or a symbolic link itself; `notFound` when there is none.
    virtual Result<void> remove(const Path& file) = 0;
    /// Removes a directory with everything in it without following links; a missing one is success.
    virtual Result<void> removeTree(const Path& directory) = 0;
    /// Names (not paths) of all entries but "." and "..", in no order.
    virtual Result<std::vector<std::string>> list(const Path& directory) = 0;
    /// All entries as they are now, in ascending order of name. Two equal answers: nothing has changed
    /// between.
    virtual Result<std::vector<EntryStamp>> stamps(const Path& directory) = 0;
    /// Whether anything stands under this name; a dangling link counts.
    virtual bool exists(const Path& file) = 0;
    /// Makes renames and removals in the directory durable.
    virtual Result<void> syncDirectory(const Path& directory) = 0;
    /// An advisory lock that excludes other processes and other holders in this one; waits a few seconds
    /// at most, then `locked`.
    virtual Result<std::unique_ptr<DirectoryLock>> lock(const Path& directory) = 0;
    /// Calls `changed` (on any thread) after entries of the directory change.
    virtual Result<std::unique_ptr<FileWatch>> watch(const Path& directory,
                                                     std::function<void()> changed) = 0;
};

}  // namespace quillo
