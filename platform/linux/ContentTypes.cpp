#include "platform/linux/ContentTypes.hpp"

#include <fcntl.h>
#include <gio/gio.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>

#include "platform/linux/GObjectPtr.hpp"
#include "platform/posix/Descriptor.hpp"

namespace quillo::ContentTypes {
namespace {

/// Opened by whatever declares them, these are started, installed or followed to something else. Scripts are
/// not here: an editor opens them, and one that may be run is refused for its mode.
constexpr auto programTypes = std::to_array<const char*>({
    "application/java-archive",
    "application/vnd.appimage",
    "application/vnd.debian.binary-package",
    "application/vnd.flatpak",
    "application/vnd.flatpak.ref",
    "application/vnd.flatpak.repo",
    "application/vnd.microsoft.portable-executable",
    "application/vnd.snap",
    "application/x-desktop",
    "application/x-iso9660-appimage",
    "application/x-java-jnlp-file",
    "application/x-love-game",
    "application/x-ms-dos-executable",
    "application/x-ms-shortcut",
    "application/x-msdownload",
    "application/x-msi",
    "application/x-remmina",
    "application/x-rpm",
    "application/x-sharedlib",
});

bool isOneOfThese(const char* type) {
    // Scripts are kinds of this one too, and an editor opens them.
    if (g_content_type_equals(type, "application/x-executable")) return true;
    return std::ranges::any_of(programTypes,
                               [&](const char* program) { return g_content_type_is_a(type, program); });
}

}  // namespace

std::optional<std::string> of(const std::string& path) {
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    struct stat status{};
    if (!file || ::fstat(file.get(), &status) != 0) return std::nullopt;
    if (S_ISDIR(status.st_mode)) return "inode/directory";
    if (!S_ISREG(status.st_mode)) return std::nullopt;
    std::array<guchar, 4096> bytes{};
    const auto count = std::max<ssize_t>(::pread(file.get(), bytes.data(), bytes.size(), 0), 0);
    const auto name = path.substr(path.rfind('/') + 1);
    const GText type(g_content_type_guess(name.c_str(), bytes.data(), static_cast<gsize>(count), nullptr));
    if (!type || isOneOfThese(type.get())) return std::nullopt;
    const std::string_view said = type.get();
    return count == 0 && (said == "application/x-zerosize" || said == "application/octet-stream")
               ? "text/plain"
               : std::string(said);
}

bool declares(std::span<const std::string> declared, std::string_view type) {
    const std::string wanted(type);
    return std::ranges::any_of(
        declared, [&](const std::string& one) { return g_content_type_is_a(wanted.c_str(), one.c_str()); });
}

}  // namespace quillo::ContentTypes
