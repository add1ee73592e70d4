// The workspace document: one JSON object, keys sorted, slashes escaped, absent values omitted.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

#include "WindowEngine/Workspace.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo::WorkspaceCoding {

/// Document bytes. Fails (invalidData, naming the field) for a number that is not finite.
Result<std::string> encode(const Workspace& workspace);
/// The same settings for a snapshot alone, for one window (change signatures).
Result<std::string> encode(const WorkspaceSnapshot& snapshot);
Result<std::string> encode(const WindowSnapshot& window);

/// Parses and migrates to the current schema. Errors name the field by its path in the document
/// (snapshot.applications[2].windows[0].frame); an unknown schema version has its fixed text.
/// `readableBeyond`: how many bytes after the document may be read (not used); 64 spare it a copy.
Result<Workspace> decode(std::string_view bytes, std::size_t readableBeyond = 0);

}  // namespace quillo::WorkspaceCoding
