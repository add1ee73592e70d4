// Texts that name a system or its keys, in the words of the system that the program runs on.
#pragma once
#include <string>
#include <string_view>

namespace quillo {

enum class TextVariant { onMac, onLinux };

/// `text` as it is written for macOS, in its variant for the other system; unchanged where it has none.
std::string platformText(std::string_view text, TextVariant variant);

/// The name of a modifier on this system's key caps, for its glyph ⌃ ⌥ ⇧ ⌘: "Ctrl"; empty where the glyph
/// itself is on the cap.
std::string modifierName(std::string_view glyph, TextVariant variant);

/// A shortcut's label as people read it there: "⌃⌥⌘S" is "Ctrl+Alt+Super+S".
std::string shortcutText(std::string_view label, TextVariant variant);

}  // namespace quillo
