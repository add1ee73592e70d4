// Terminals: which programs are, how each is told the folder that its shell begins in, and in which folder
// the shells of one are. Nothing here starts anything.
#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/services/AccessibilityService.hpp"

namespace quillo::Terminals {

/// How the terminal that an Exec line starts is told a folder: what is added to the line, with %f in the
/// folder's place, or nothing where it begins in its process's own working directory. Absent for whatever is
/// no terminal known here, and for a line that makes it run something in particular. `program` is the path of
/// the program, `command` the line without its fields.
std::optional<std::string_view> folderOption(std::string_view program, std::string_view command);

/// The folder of the shell in front of each terminal line that `terminal` has, a process: an absolute path of
/// an existing folder that the person may enter, absent where that is not known. Reads /proc, and blocks for
/// the disk.
std::vector<std::optional<std::string>> shellFolders(ProcessID terminal);

/// How many it has; of those nothing more is read.
std::int64_t shellCount(ProcessID terminal);

/// What spells a path in a title.
struct Spelling {
    std::string home;  // "~"
    std::string host;  // behind the "@" of a person's name: on another one the path names another folder
};

/// The folders of all windows of one process, given their titles and what shellFolders() tells of it. Known
/// are those of windows whose title has a folder in full in which one of the shells is, unless more windows
/// name it than shells are there; and, where there are as many windows as shells, of the others too, if the
/// shells that are left are all in one folder: so a window alone with one shell is in that shell's. Pure.
std::vector<std::optional<std::string>> windowFolders(std::span<const std::string> titles,
                                                      std::span<const std::optional<std::string>> shells,
                                                      const Spelling& spelling);

}  // namespace quillo::Terminals
