// The profiles that a browser's process has open, and what their session files say. A process that runs tells
// itself which files are its own; names and dates do not, for after a crash the newest file is the dead
// session's.
#pragma once
#include <vector>

#include "WindowEngine/services/BrowserFiles.hpp"

namespace quillo::OpenProfiles {

/// Of one process. Blocks for the disk, and reads at most `largestSessionFile` bytes of regular files that
/// are not reached through a link. Nothing is told of a process that is another person's.
std::vector<BrowserProfile> of(ProcessID pid, BrowserFamily family);

}  // namespace quillo::OpenProfiles
