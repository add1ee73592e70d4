// What only the person may read: every folder and file that we create comes from here. Folders have mode 0700
// and files 0600 whatever the umask takes or leaves, and older ones of the person's that are open to others
// are closed. A file system without modes has what it has.
#pragma once
#include <filesystem>

#include "WindowEngine/support/Error.hpp"
#include "platform/posix/Descriptor.hpp"

namespace quillo::PrivateFiles {

using Path = std::filesystem::path;

/// The directory with every parent that is missing; parents that exist stay as they are, for others may share
/// them. `made` hears of each folder in which a name was added.
Result<void> createDirectories(const Path& directory, void (*made)(const Path& within) = nullptr);
/// Takes from others what they may do with a directory that is the person's own; nothing where it is not,
/// where it is sticky (and so meant to be shared) or missing.
void narrow(const Path& directory);
/// Whether this is a directory of the person's that nobody else may enter.
bool isPrivate(const Path& directory);
/// Creates the file, or opens the one that is there; `flags` as for open(2), which also leaves errno. A
/// symbolic link is not followed, and children do not inherit the descriptor.
Descriptor open(const Path& file, int flags);

}  // namespace quillo::PrivateFiles
