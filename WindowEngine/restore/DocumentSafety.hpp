// Which documents may be opened that a workspace names. A workspace file may come from a stranger, and for
// some files opening means running.
#pragma once
#include <string_view>

namespace quillo::DocumentSafety {

/// Whether a file of this name is, by its ending alone and on whatever system, something that opening runs or
/// installs: a program, a script, a shortcut to a program.
bool isProgramFile(std::string_view path);

/// The same of a folder: an application, or another folder that a Mac opens as one thing. The path may end in
/// a slash.
bool isProgramFolder(std::string_view path);

}  // namespace quillo::DocumentSafety
