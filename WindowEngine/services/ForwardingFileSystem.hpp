// Hands every call on to another file system, so that a fault test overrides one and inherits the rest.
#pragma once
#include <utility>

#include "WindowEngine/services/FileSystem.hpp"

namespace quillo {

class ForwardingFileSystem : public FileSystem {
  public:
    explicit ForwardingFileSystem(FileSystem& target) : target_(&target) {}

    Result<std::string> read(const Path& file) override { return target_->read(file); }
    Result<void> createDirectories(const Path& directory) override {
        return target_->createDirectories(directory);
    }
    Result<void> createFile(const Path& file, std::string_view bytes) override {
        return target_->createFile(file, bytes);
    }
    Result<void> copy(const Path& from, const Path& to) override { return target_->copy(from, to); }
    Result<void> rename(const Path& from, const Path& to) override { return target_->rename(from, to); }
    Result<void> remove(const Path& file) override { return target_->remove(file); }
    Result<void> removeTree(const Path& directory) override { return target_->removeTree(directory); }
    Result<std::vector<std::string>> list(const Path& directory) override { return target_->list(directory); }
    Result<std::vector<EntryStamp>> stamps(const Path& directory) override {
        return target_->stamps(directory);
    }
    bool exists(const Path& file) override { return target_->exists(file); }
    Result<void> syncDirectory(const Path& directory) override { return target_->syncDirectory(directory); }
    Result<std::unique_ptr<DirectoryLock>> lock(const Path& directory) override {
        return target_->lock(directory);
    }
    Result<std::unique_ptr<FileWatch>> watch(const Path& directory, std::function<void()> changed) override {
        return target_->watch(directory, std::move(changed));
    }

  private:
    FileSystem* target_;
};

}  // namespace quillo
