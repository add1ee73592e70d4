// The one record of a desktop before a restore: a file in a folder of its own, which each restore replaces
// and no list of workspaces shows.
#pragma once
#include <filesystem>
#include <optional>

#include "WindowEngine/records/UndoRecord.hpp"
#include "WindowEngine/services/FileSystem.hpp"

namespace quillo {

/// Stateless. Several programs may share it: whoever restored last wrote it.
class UndoFile {
  public:
    /// `directory` is undo/ in the data folder; `id` is what the desktop before is known by.
    UndoFile(FileSystem& files, std::filesystem::path directory, const Uuid& id = UndoRecord::beforeID)
        : files_(&files), directory_(std::move(directory)), id_(id) {}

    const std::filesystem::path& directory() const { return directory_; }
    const Uuid& id() const { return id_; }
    /// Only its owner can read it, as a workspace; on failure what was there before stays.
    Result<void> save(const UndoRecord& record) const;
    /// Absent where there is none; an error where there is one that cannot be read.
    Result<std::optional<UndoRecord>> load() const;
    /// One that does not exist is success.
    Result<void> remove() const;

  private:
    std::filesystem::path file() const { return directory_ / "desktop.json"; }

    FileSystem* files_;
    std::filesystem::path directory_;
    Uuid id_;
};

}  // namespace quillo
