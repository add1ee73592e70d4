#include "platform/posix/DocumentOnDisk.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <string>
#include <string_view>

#include "WindowEngine/restore/DocumentSafety.hpp"
#include "platform/posix/Descriptor.hpp"

namespace quillo {
namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

constexpr auto couldRun = "opening it could run a program";

/// Programs of Linux (AppImages among them), of Windows and of a Mac. Some helpers run these without asking
/// the mode; scripts are run by their mode only.
bool beginsAsProgram(std::string_view start) {
    for (const auto magic : {"\x7f"
                             "ELF"sv,
                             "\xcf\xfa\xed\xfe"sv, "\xce\xfa\xed\xfe"sv, "\xca\xfe\xba\xbe"sv}) {
        if (start.starts_with(magic)) return true;
    }
    return start.starts_with("MZ") && start.contains('\0');  // not a text that begins so
}

/// A menu entry under whatever name: desktops start what it names. Comments and empty lines may come first.
bool beginsAsLauncher(std::string_view start) {
    if (start.starts_with("\xef\xbb\xbf")) start.remove_prefix(3);
    while (!start.empty()) {
        const auto end = std::min(start.find('\n'), start.size());
        auto line = start.substr(0, end);
        start.remove_prefix(std::min(end + 1, start.size()));
        line.remove_prefix(std::min(line.find_first_not_of(" \t\r\f\v"), line.size()));
        if (line.empty() || line.starts_with('#')) continue;
        return line.starts_with("[Desktop Entry]") || line.starts_with("[KDE Desktop Entry]");
    }
    return false;
}

Result<void> judgeFile(const std::string& path) {
    // Not waited for: by now it might be a pipe.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status{};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))
        return fail(ErrorKind::refused, "it cannot be read");
    std::array<char, 4096> bytes{};
    const auto count = ::pread(file.get(), bytes.data(), bytes.size(), 0);
    const std::string_view start(bytes.data(), count > 0 ? static_cast<std::size_t>(count) : 0);
    const bool executable = (status.st_mode & (S_IXUSR | S_IXGRP | S_IXOTH)) != 0;
    if (executable || beginsAsProgram(start) || beginsAsLauncher(start))
        return fail(ErrorKind::refused, couldRun);
    return {};
}

bool liesIn(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || path[folder.size()] == '/');
}

bool isOfTheSystem(std::string_view path) {
    static constexpr std::array folders{"/proc"sv, "/sys"sv, "/dev"sv};
    return std::ranges::any_of(folders, [&](std::string_view folder) { return liesIn(path, folder); });
}

}  // namespace

Result<Url> openableDocument(const Url& document) {
    const auto path = document.filePath();
    if (!path || document.string().find_first_of("?#") != std::string::npos)
        return fail(ErrorKind::refused, "its address is not one of a file on this computer");
    if (liesIn(fs::path(*path).lexically_normal().string(), "/net"))
        return fail(ErrorKind::refused, "it lies on another computer");
    std::error_code error;
    const auto real = fs::canonical(*path, error).string();
    if (error) return fail(ErrorKind::notFound, "it is not there any more");
    if (isOfTheSystem(real)) return fail(ErrorKind::refused, "it belongs to the system");
    const auto oneOf = [&](auto isProgram) { return isProgram(*path) || isProgram(real); };
    switch (fs::status(real, error).type()) {
        case fs::file_type::directory:
            if (oneOf(DocumentSafety::isProgramFolder)) return fail(ErrorKind::refused, couldRun);
            return Url::file(real, true);
        case fs::file_type::regular:
            if (oneOf(DocumentSafety::isProgramFile)) return fail(ErrorKind::refused, couldRun);
            if (auto judged = judgeFile(real); !judged) return std::unexpected(std::move(judged.error()));
            return Url::file(real);
        default:
            return fail(ErrorKind::refused, "it is neither a file nor a folder");
    }
}

}  // namespace quillo
