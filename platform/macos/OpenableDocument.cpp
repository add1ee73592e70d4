#include "platform/macos/OpenableDocument.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <string_view>

#include "platform/posix/DocumentOnDisk.hpp"

namespace quillo {
namespace {

/// Types that opening runs, installs or takes for settings; what conforms to one of them counts as well.
/// Scripts that an editor opens are not here: one that may be run is refused for its mode.
constexpr std::array<std::string_view, 15> runningTypes{
    "com.apple.application",
    "com.apple.applescript.script",
    "com.apple.applescript.script-bundle",
    "com.apple.applescript.text",
    "com.apple.bundle",
    "com.apple.disk-image",
    "com.apple.installer-package",
    "com.apple.installer-package-archive",
    "com.apple.internet-location",
    "com.apple.mobileconfig",
    "com.apple.terminal.settings",
    "com.apple.terminal.shell-script",
    "com.sun.java-archive",
    "public.executable",
    "public.disk-image",
};

/// A folder of any name that is laid out as a program.
bool holdsProgram(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path + "/Contents/MacOS", error) || error;
}

}  // namespace

Result<Url> openableDocumentOnMac(const Url& document, WorkspaceShell& shell) {
    auto openable = openableDocument(document);
    if (!openable) return openable;
    std::error_code error;
    const std::filesystem::path real = openable->filePath().value();
    // Of the file itself: the system would call a symbolic link an alias.
    const auto facts = shell.facts(Url::file(real.string()));
    if (!facts) return fail(ErrorKind::refused, "the system does not say what it is");
    if (facts->isAlias) return fail(ErrorKind::refused, "it stands for something else");
    if ((std::filesystem::is_directory(real, error) && holdsProgram(real.string())) || facts->isApplication ||
        std::ranges::find_first_of(facts->types, runningTypes) != facts->types.end())
        return fail(ErrorKind::refused, "opening it could run a program");
    return openable;
}

}  // namespace quillo
