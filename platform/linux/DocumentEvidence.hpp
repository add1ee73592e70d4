// Which document a window shows, as far as its title and its process tell. A title is text from a stranger (a
// page, a mail, a file): it can name a document that exists, and nothing more.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quillo::DocumentEvidence {

struct DocumentOnDisk {
    std::string path;  // absolute
    bool isFolder = false;
    bool operator==(const DocumentOnDisk&) const = default;
};

/// What stands at an absolute path: a regular file or a folder, links followed.
std::optional<DocumentOnDisk> onDisk(const std::string& path);

/// The file or folder that a title begins with, whole ("*/home/u/a.txt - Editor", "~/a.txt"), or names with
/// its folder ("a.txt (~/letters) - Editor", "a.txt - ~/letters - Editor"). `home` stands for "~".
std::optional<DocumentOnDisk> inTitle(std::string_view title, const std::string& home);

/// The first of a program's arguments that names an existing document whose base name the title mentions;
/// else the only one whose base name the title begins with, less its ending. Nothing executable, for the
/// script an interpreter runs is an argument too.
std::optional<DocumentOnDisk> inArguments(std::span<const std::string> arguments,
                                          const std::string& directory, std::string_view title);

/// The one of these files, which a program has open, whose name the title begins with ("a.odt — Writer").
/// Absent where two are named so. Nothing executable.
std::optional<DocumentOnDisk> inOpenFiles(std::span<const std::string> files, std::string_view title);

/// Whether the last component of `path` stands in the title as a word of its own.
bool mentions(std::string_view title, std::string_view path);

}  // namespace quillo::DocumentEvidence
