#include "WindowEngine/restore/DocumentSafety.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <string>

#include "WindowEngine/support/Text.hpp"

namespace quillo::DocumentSafety {
namespace {

// What an editor opens (.sh, .py) is not here: where such a file would be run, its mode says so.
constexpr auto files = std::to_array<std::string_view>({
    "apk",          "app",        "appimage",    "appinstaller", "applescript",
    "application",  "appref-ms",  "appx",        "bat",          "class",
    "cmd",          "command",    "cpl",         "crx",          "deb",
    "desktop",      "directory",  "dmg",         "exe",          "fileloc",
    "flatpak",      "flatpakref", "flatpakrepo", "hta",          "inetloc",
    "love",         "pyc",        "rdp",         "remmina",      "ipa",
    "jar",          "jnlp",       "jse",         "kdelnk",       "lnk",
    "mobileconfig", "mpkg",       "msc",         "msi",          "msix",
    "msixbundle",   "osax",       "oxt",         "pif",          "pkg",
    "ps1",          "psm1",       "pyz",         "pyzw",         "reg",
    "rpm",          "scpt",       "scptd",       "scr",          "settingcontent-ms",
    "snap",         "terminal",   "tool",        "vbe",          "vbs",
    "wflow",        "wsf",        "wsh",         "xpi",
});
constexpr std::array<std::string_view, 15> folders{
    "action",   "app",         "bundle", "framework", "kext",    "mpkg",     "pkg", "plugin",
    "prefpane", "qlgenerator", "saver",  "scptd",     "service", "workflow", "xpc",
};

bool endsInOneOf(std::string_view path, std::span<const std::string_view> endings) {
    while (path.ends_with('/')) path.remove_suffix(1);
    const auto name = path.substr(path.rfind('/') + 1);
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos) return false;
    return std::ranges::find(endings, text::lowercase(name.substr(dot + 1))) != endings.end();
}

}  // namespace

bool isProgramFile(std::string_view path) {
    return endsInOneOf(path, files);
}

bool isProgramFolder(std::string_view path) {
    return endsInOneOf(path, folders);
}

}  // namespace quillo::DocumentSafety
