// The workspace document: one JSON object, keys sorted, slashes escaped, absent values omitted.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo::WorkspaceCoding {

/// A document beyond these is no person's desktop; reading it would cost seconds and hundreds of megabytes.
inline constexpr std::size_t mostBytes = 32 << 20;
inline constexpr std::int64_t mostEntries = 200'000;  // of all lists together

/// Document bytes. Fails (invalidData, naming the field) for a number that is not finite, and for what could
/// not be read again: a document larger than `mostBytes`.
Result<std::string> encode(const Workspace& workspace);
/// The same settings for a snapshot alone, for one window (change signatures).
Result<std::string> encode(const WorkspaceSnapshot& snapshot);
Result<std::string> encode(const WindowSnapshot& window);

/// Parses and migrates to the current schema. Errors name the field by its path in the document
/// (snapshot.applications[2].windows[0].frame); an unknown schema version has its fixed text. One that is too
/// large has std::errc::file_too_large as its code.
/// `readableBeyond`: how many bytes after the document may be read (not used); 64 spare it a copy.
Result<Workspace> decode(std::string_view bytes, std::size_t readableBeyond = 0);

/// The error of what goes beyond the limits, and whether one is that, or a file system's for the same reason.
std::unexpected<Error> tooLarge(std::string text);
bool isTooLarge(const Error& error);

}  // namespace quillo::WorkspaceCoding
