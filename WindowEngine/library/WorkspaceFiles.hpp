// The files of a store directory: their names, and the writes that leave a complete copy at every moment.
// Whoever writes holds the directory's lock.
#pragma once
#include <filesystem>
#include <string>
#include <string_view>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/services/FileSystem.hpp"

namespace quillo::WorkspaceFiles {

std::string primaryName(const Uuid& id);               // 6f1c...60.json
std::string backupName(std::string_view primaryName);  // 6f1c...60.json.bak
std::string temporaryName(const Uuid& id);             // .6f1c...60.<random>.next, another one each time
bool hasExtension(std::string_view name,
                  std::string_view extension);  // as file browsers see it: not ".json" itself

/// Reads and decodes one file; decoding errors do not name the file.
Result<Workspace> read(FileSystem& files, const std::filesystem::path& file);

/// Writes `bytes` under `file`, which is complete (old or new) at every moment. `id` names the temporary
/// file.
Result<void> replace(FileSystem& files, const std::filesystem::path& file, const Uuid& id,
                     std::string_view bytes);

/// Writes the document as the primary of `id` and keeps the version before as its backup. First removes
/// temporary files that interrupted saves left.
Result<void> save(FileSystem& files, const std::filesystem::path& directory, const Uuid& id,
                  std::string_view bytes);

}  // namespace quillo::WorkspaceFiles
