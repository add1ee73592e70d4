// The disk, by the calls that Linux and macOS share.
#pragma once
#include <chrono>

#include "WindowEngine/services/FileSystem.hpp"

namespace quillo {

/// Files above 256 MiB are not read. Directories are locked with flock on the directory itself, so that no
/// lock file is left; on file systems that refuse this, on a file ".lock" inside it.
class PosixFileSystem final : public FileSystem {
  public:
    /// `lockPatience`: how long lock() waits for another holder.
    explicit PosixFileSystem(std::chrono::milliseconds lockPatience = std::chrono::seconds(5))
        : lockPatience_(lockPatience) {}

    Result<std::string> read(const Path& file) override;
    Result<void> createDirectories(const Path& directory) override;
    Result<void> createFile(const Path& file, std::string_view bytes) override;
    Result<void> copy(const Path& from, const Path& to) override;
    Result<void> rename(const Path& from, const Path& to) override;
    Result<void> remove(const Path& file) override;
    Result<void> removeTree(const Path& directory) override;
    Result<std::vector<std::string>> list(const Path& directory) override;
    Result<std::vector<EntryStamp>> stamps(const Path& directory) override;
    bool exists(const Path& file) override;
    Result<void> syncDirectory(const Path& directory) override;
    Result<std::unique_ptr<DirectoryLock>> lock(const Path& directory) override;
    Result<std::unique_ptr<FileWatch>> watch(const Path& directory, std::function<void()> changed) override;

  private:
    std::chrono::milliseconds lockPatience_;
};

}  // namespace quillo
