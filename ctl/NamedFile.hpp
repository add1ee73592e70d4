// Files that the person names on the command line. Unlike those of the library they may be links, and "-" is
// standard input or output.
#pragma once
#include <filesystem>
#include <string>

#include "ctl/CommandContext.hpp"

namespace quillo::ctl {

constexpr std::string_view standardStream = "-";

/// `path` seen from the working directory, with the links in it followed, also where what the last one
/// leads to is not there yet; as it is where that can't be told.
std::filesystem::path namedFile(const std::filesystem::path& path);

/// The FILE argument; an empty one is a usage error.
Result<std::filesystem::path, Failure> fileArgument(const Arguments& arguments);

/// The bytes of FILE. A failure names it.
Result<std::string, Failure> readNamedFile(CommandContext& context, const Arguments& arguments);

/// A failed read or decode with the file's name in front, unless the text has it already.
std::unexpected<Failure> badFile(const std::string& file, const Error& error);

/// How messages call FILE.
std::string fileName(const std::string& file);

}  // namespace quillo::ctl
