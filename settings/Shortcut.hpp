// One key combination, as it is stored, shown and recorded. Pure.
#pragma once
#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "platform/services/KeyEvent.hpp"

namespace quillo {

/// What a global shortcut does. The number names it to the system and is its key in the settings.
enum class HotKeyAction : std::uint8_t { save, switcher };
inline constexpr std::array allHotKeyActions{HotKeyAction::save, HotKeyAction::switcher};
constexpr std::uint32_t number(HotKeyAction action) {
    return static_cast<std::uint32_t>(action) + 1;
}

struct Shortcut {
    std::uint32_t keyCode = 0;    // classic virtual key code
    std::uint32_t modifiers = 0;  // mask of `modifier` bits
    std::string key;              // what the key cap shows: "S", "F5", "Space", "↩"

    /// The glyphs of the modifiers, ⌃ ⌥ ⇧ ⌘ in this order, then the key: "⌃⌥⌘S".
    std::string label() const;
    /// Absent without command, control or option, and for a key that has no text.
    static std::optional<Shortcut> fromEvent(const KeyEvent& event);

    bool operator==(const Shortcut&) const = default;
};

/// ⌃⌥⌘S saves, ⌃⌥⌘R opens the switcher.
Shortcut defaultShortcut(HotKeyAction action);

}  // namespace quillo
