// What kind of document stands on the disk, in the words of the shared MIME database
// (freedesktop.org, "Shared MIME-info Database"), and whether a menu entry declares that it opens that kind.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quillo::ContentTypes {

/// Of a folder or regular file, by its name and its first bytes; an empty file counts as plain text where its
/// name says nothing. Absent for what cannot be read, for links and whatever else is no ordinary file, and
/// for the types that desktops start or install. Blocks for the disk only. For any thread.
std::optional<std::string> of(const std::string& path);

/// Whether `type` is one of `declared` or a kind of one (C++ source is plain text).
bool declares(std::span<const std::string> declared, std::string_view type);

}  // namespace quillo::ContentTypes
