#include "platform/linux/DocumentEvidence.hpp"

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <vector>

#include "WindowEngine/support/Url.hpp"
#include "platform/posix/DocumentOnDisk.hpp"

namespace quillo::DocumentEvidence {
namespace {

constexpr std::size_t longestPath = 4096;
constexpr std::size_t mostEnds = 16;  // looked at in one title

/// What editors put before the name of a document that is not saved.
std::string_view withoutMarks(std::string_view title) {
    static constexpr std::array<std::string_view, 8> marks{" ", "*", "•", "●", "+", "!", "[+]", "[modified]"};
    for (bool found = true; found;) {
        found = false;
        for (const auto mark : marks) {
            if (!title.starts_with(mark)) continue;
            title.remove_prefix(mark.size());
            found = true;
        }
    }
    return title;
}

/// Where a path at the beginning of `text` may end, the longest first: at the end, and before what editors
/// put after it.
std::vector<std::size_t> possibleEnds(std::string_view text) {
    static constexpr std::array<std::string_view, 9> after{" - ", " – ", " — ", " (", " [",
                                                           "*",   " +",  ": ",  " | "};
    std::vector<std::size_t> ends{text.size()};
    for (const auto separator : after) {
        for (auto at = text.find(separator); at != std::string_view::npos; at = text.find(separator, at + 1))
            ends.push_back(at);
    }
    std::ranges::sort(ends, std::greater());
    if (ends.size() > mostEnds) ends.resize(mostEnds);
    return ends;
}

/// Absent unless `text` is an absolute path or begins with "~/".
std::optional<std::string> expanded(std::string_view text, const std::string& home) {
    while (text.ends_with(' ')) text.remove_suffix(1);
    if (text.size() > longestPath || text.contains('\0')) return std::nullopt;
    if (text.starts_with('/')) return std::string(text);
    const bool inHome = text == "~" || text.starts_with("~/");
    return inHome && home.starts_with('/') ? std::optional(home + std::string(text.substr(1))) : std::nullopt;
}

std::optional<DocumentOnDisk> pathAtBeginning(std::string_view text, const std::string& home) {
    if (!expanded(text.substr(0, 2), home)) return std::nullopt;
    for (const auto end : possibleEnds(text)) {
        const auto path = expanded(text.substr(0, end), home);
        if (auto document = path ? onDisk(*path) : std::nullopt) return document;
    }
    return std::nullopt;
}

/// "name (folder) - Editor"; the name may itself hold parentheses.
std::optional<DocumentOnDisk> nameWithFolder(std::string_view text, const std::string& home) {
    std::size_t tried = 0;
    for (auto open = text.find(" ("); open != std::string_view::npos && tried < mostEnds;
         open = text.find(" (", open + 1), ++tried) {
        const auto name = text.substr(0, open);
        const auto rest = text.substr(open + 2);
        auto folder = expanded(rest.substr(0, rest.rfind(')')), home);
        if (!folder || name.empty() || name.contains('/') || !rest.contains(')')) continue;
        if (!folder->ends_with('/')) *folder += '/';
        if (auto document = onDisk(*folder + std::string(name))) return document;
    }
    return std::nullopt;
}

/// "name - folder - Editor"; either may itself hold the hyphen.
std::optional<DocumentOnDisk> nameBeforeFolder(std::string_view text, const std::string& home) {
    constexpr std::string_view separator = " - ";
    std::size_t tried = 0;
    for (auto at = text.find(separator); at != std::string_view::npos && tried < mostEnds;
         at = text.find(separator, at + 1), ++tried) {
        const auto name = text.substr(0, at);
        const auto rest = text.substr(at + separator.size());
        if (name.empty() || name.contains('/') || !expanded(rest.substr(0, 2), home)) continue;
        for (const auto end : possibleEnds(rest)) {
            auto folder = expanded(rest.substr(0, end), home);
            if (!folder) continue;
            if (!folder->ends_with('/')) *folder += '/';
            if (auto document = onDisk(*folder + std::string(name))) return document;
        }
    }
    return std::nullopt;
}

/// Bytes of letters beyond ASCII belong to a word.
bool isWordByte(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || std::isalnum(byte) || c == '_';
}

/// "[picture] (imported) - Editor": whether the title begins with the name of a file less its ending, and
/// not with one of another ending.
bool beginsWithStem(std::string_view title, const std::string& path) {
    const std::string stem = std::filesystem::path(path).stem().string();
    auto text = withoutMarks(title);
    if (text.starts_with('[')) text.remove_prefix(1);
    if (stem.empty() || !text.starts_with(stem)) return false;
    text.remove_prefix(stem.size());
    if (text.starts_with('.')) text.remove_prefix(1);
    return text.empty() || !isWordByte(text.front());
}

std::optional<std::string> pathOfArgument(const std::string& argument, const std::string& directory) {
    if (argument.empty() || argument.starts_with('-') || argument.size() > longestPath) return std::nullopt;
    if (argument.starts_with("file:")) {
        const auto url = Url::parse(argument);
        return url ? url->filePath() : std::nullopt;
    }
    const auto path = (std::filesystem::path(directory) / argument).lexically_normal().string();
    return path.starts_with('/') ? std::optional(path) : std::nullopt;
}

}  // namespace

std::optional<DocumentOnDisk> onDisk(const std::string& path) {
    struct stat status{};
    if (::stat(path.c_str(), &status) != 0) return std::nullopt;
    if (!S_ISREG(status.st_mode) && !S_ISDIR(status.st_mode)) return std::nullopt;
    DocumentOnDisk document{path, S_ISDIR(status.st_mode)};
    while (document.path.size() > 1 && document.path.ends_with('/')) document.path.pop_back();
    return document;
}

std::optional<DocumentOnDisk> inTitle(std::string_view title, const std::string& home) {
    const auto text = withoutMarks(title);
    if (auto document = pathAtBeginning(text, home)) return document;
    auto document = nameWithFolder(text, home);
    return document ? document : nameBeforeFolder(text, home);
}

std::optional<DocumentOnDisk> inOpenFiles(std::span<const std::string> files, std::string_view title) {
    const auto text = withoutMarks(title);
    const auto ends = possibleEnds(text);
    const std::string* found = nullptr;
    for (const std::string& file : files) {
        const auto name = std::string_view(file).substr(file.rfind('/') + 1);
        const bool named =
            std::ranges::any_of(ends, [&](std::size_t end) { return text.substr(0, end) == name; });
        if (!named || name.empty() || (found && *found == file)) continue;
        if (found) return std::nullopt;
        found = &file;
    }
    if (!found || !openableDocument(Url::file(*found))) return std::nullopt;
    auto document = onDisk(*found);
    return document && !document->isFolder ? document : std::nullopt;
}

std::optional<DocumentOnDisk> inArguments(std::span<const std::string> arguments,
                                          const std::string& directory, std::string_view title) {
    std::optional<DocumentOnDisk> withoutEnding;
    bool several = false;
    for (const auto& argument : arguments) {
        const auto path = pathOfArgument(argument, directory);
        const bool named = path && mentions(title, *path);
        if (!named && (!path || !beginsWithStem(title, *path))) continue;
        auto document = openableDocument(Url::file(*path)) ? onDisk(*path) : std::nullopt;
        if (!document) continue;
        if (named) return document;
        several |= withoutEnding && withoutEnding != document;
        withoutEnding = std::move(document);
    }
    return several ? std::nullopt : withoutEnding;
}

bool mentions(std::string_view title, std::string_view path) {
    while (path.ends_with('/')) path.remove_suffix(1);
    const auto name = path.substr(path.rfind('/') + 1);
    if (name.empty()) return false;
    for (auto at = title.find(name); at != std::string_view::npos; at = title.find(name, at + 1)) {
        const bool begins = at == 0 || !isWordByte(title[at - 1]) || !isWordByte(name.front());
        const auto after = at + name.size();
        const bool ends = after == title.size() || !isWordByte(title[after]) || !isWordByte(name.back());
        if (begins && ends) return true;
    }
    return false;
}

}  // namespace quillo::DocumentEvidence
