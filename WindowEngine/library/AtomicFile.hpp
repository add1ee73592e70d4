// Files that the person names, outside the store.
#pragma once
#include <filesystem>
#include <string_view>

#include "WindowEngine/services/FileSystem.hpp"

namespace quillo {

/// Writes `file` (absolute; an existing one is replaced) under another name first and renames it: nobody ever
/// sees half a file, and on failure all is as before. Only its owner can read it.
Result<void> writeAtomically(FileSystem& files, const std::filesystem::path& file, std::string_view bytes);

}  // namespace quillo
