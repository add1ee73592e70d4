// The files of a store directory: their names, and the writes that leave a complete copy at every moment.
// Whoever writes holds the directory's lock.
#pragma once
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/services/FileSystem.hpp"

namespace quillo::WorkspaceFiles {

std::string primaryName(const Uuid& id);               // 6f1c...60.json
std::string backupName(std::string_view primaryName);  // 6f1c...60.json.bak
std::string temporaryName(const Uuid& id);             // .6f1c...60.<random>.next, another one each time
bool hasExtension(std::string_view name,
                  std::string_view extension);  // as file browsers see it: not ".json" itself

/// Names of primaries among those of a directory, in ascending order; also of primaries that are missing and
/// have a backup.
std::vector<std::string> primariesAmong(const std::vector<std::string>& names);

/// Reads and decodes one file; decoding errors do not name the file.
Result<Workspace> read(FileSystem& files, const std::filesystem::path& file);

/// Whether reading failed because of what the file says. Not so for one that is too large, that a newer
/// program wrote or that cannot be opened: those may be whole.
bool isDamaged(const Error& error);

/// Keeps the damaged contents of `file` beside the primary of `id`, for the person to mend: as
/// `<primary>.damaged`, and three of them at most, of which the first kept goes first. What is kept already
/// is not kept again. Durable when it returns.
Result<void> keepDamaged(FileSystem& files, const std::filesystem::path& file, const Uuid& id);
/// The names that `keepDamaged` gives for the primary of `id`, the first kept first.
std::vector<std::string> damagedNames(const Uuid& id);
bool isDamagedName(std::string_view name);

/// Removes those of the files that are there, and returns when they are gone for good.
Result<void> removeDurably(FileSystem& files, const std::filesystem::path& directory,
                           const std::vector<std::string>& names);

/// Writes `bytes` under `file`, which is complete (old or new) at every moment. `id` names the temporary
/// file.
Result<void> replace(FileSystem& files, const std::filesystem::path& file, const Uuid& id,
                     std::string_view bytes);

/// Writes the document as the primary of `id` and keeps the version before as its backup, or beside it where
/// it is damaged. First removes temporary files that interrupted saves left.
Result<void> save(FileSystem& files, const std::filesystem::path& directory, const Uuid& id,
                  std::string_view bytes);

}  // namespace quillo::WorkspaceFiles
