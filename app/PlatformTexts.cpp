#include "app/PlatformTexts.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace quillo {
namespace {

using Pair = std::pair<std::string_view, std::string_view>;

constexpr std::array linuxTexts{
    Pair{"Settings · ⌘,", "Settings · Ctrl+,"},
    Pair{"⌘S", "Ctrl+S"},
    Pair{" · ⌘Z", " · Ctrl+Z"},
    Pair{" · ⇧⌘Z", " · Ctrl+Shift+Z"},
    Pair{"Import Workspace… · ⌘I", "Import Workspace… · Ctrl+I"},
    Pair{"Save workspace · ⌘S (", "Save workspace · Ctrl+S ("},
    Pair{
        "Quillo uses Accessibility to restore window positions. Your workspace data stays on this Mac.",
        "Quillo uses Accessibility to restore window positions. Your workspace data stays on this computer."},
    Pair{" Open documents are saved too.", " Open documents and folders are saved too."},
    Pair{" Tabs and folders are optional in Settings.", " Browser tabs are optional in Settings."},
    Pair{"Finish setup — Accessibility needed", "Windows cannot be read — see why"},
    Pair{"Keep Quillo handy in the menu bar after you log in.",
         "Keep Quillo handy in the tray after you log in."},
    Pair{
        "Off by default. When enabled, saves changed sessions on this Mac and keeps the latest five. Uses "
        "your "
        "app exclusions and enabled integrations. Sleep and shutdown captures are best-effort; periodic "
        "saves "
        "provide recovery after a crash.",
        "Off by default. When enabled, saves changed sessions on this computer and keeps the latest five. "
        "Uses "
        "your app exclusions and enabled integrations. Sleep and shutdown captures are best-effort; periodic "
        "saves provide recovery after a crash."},
    Pair{"Updates download in the background and install when you quit Quillo. Closing a window keeps Quillo "
         "running in the menu bar.",
         "Closing a window keeps Quillo running in the tray."},
    Pair{"Each integration is off by default. macOS will ask for permission the first time one is used. "
         "Window "
         "positions work without any of these.",
         "Each integration is off by default. Window positions work without any of these."},
    Pair{
        "Documents and folders that apps report themselves (TextEdit, Preview, Xcode, Ghostty…) are reopened "
        "without an integration.",
        "Documents and folders that apps show (in their window title, or the location bar of a file manager) "
        "are saved with their windows, and opened again."},
    Pair{"Workspaces are plain JSON on this Mac. Nothing is uploaded, and window titles, paths and URLs are "
         "never written to logs.",
         "Workspaces are plain JSON on this computer. Nothing is uploaded, and window titles, paths and URLs "
         "are never written to logs."},
    Pair{"Try a workspace name or an app, like Safari or Xcode.",
         "Try a workspace name or an app, like Firefox."},
    Pair{
        "Quit asks other regular apps to close normally. Apps with unsaved changes may stay open. Finder and "
        "Quillo stay open.",
        "Quit asks other apps to close normally. Apps with unsaved changes may stay open. Quillo stays "
        "open."},
    Pair{"Click a shortcut and press a new combination. Include ⌘, ⌃ or ⌥. Press ⌫ while recording to go "
         "back to "
         "the default.",
         "Click a shortcut and press a new combination. Include Super, Ctrl or Alt. Press Backspace while "
         "recording to go back to the default."},
    Pair{"In any app. Include ⌘, ⌃ or ⌥; ⌫ removes it.",
         "In any app. Include Super, Ctrl or Alt; Backspace removes it."},
    Pair{"Password managers and system security windows are always excluded. You can also leave out single "
         "windows when saving.",
         "Password managers are always excluded. You can also leave out single windows when saving."},
    Pair{"Allow Quillo in System Settings to finish enabling this.",
         "Your desktop has switched this off. Switch it off and on again here to allow it."},
};

constexpr std::array linuxModifiers{Pair{"⌃", "Ctrl"}, Pair{"⌥", "Alt"}, Pair{"⇧", "Shift"},
                                    Pair{"⌘", "Super"}};

}  // namespace

std::string platformText(std::string_view text, TextVariant variant) {
    if (variant == TextVariant::onLinux) {
        const auto found = std::ranges::find(linuxTexts, text, &Pair::first);
        if (found != linuxTexts.end()) return std::string(found->second);
    }
    return std::string(text);
}

std::string modifierName(std::string_view glyph, TextVariant variant) {
    const auto found = std::ranges::find(linuxModifiers, glyph, &Pair::first);
    return variant == TextVariant::onLinux && found != linuxModifiers.end() ? std::string(found->second) : "";
}

std::string shortcutText(std::string_view label, TextVariant variant) {
    if (variant == TextVariant::onMac) return std::string(label);
    std::string text;
    for (bool found = true; found;) {
        found = false;
        for (const auto& [glyph, name] : linuxModifiers) {
            if (!label.starts_with(glyph) || label.size() == glyph.size()) continue;
            text += std::string(name) + "+";
            label.remove_prefix(glyph.size());
            found = true;
        }
    }
    return text + std::string(label);
}

}  // namespace quillo
