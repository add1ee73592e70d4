// A key that goes down, in the words of the classic event manager.
#pragma once
#include <cstdint>
#include <string>

namespace quillo {

/// Bits of a modifier mask.
namespace modifier {
inline constexpr std::uint32_t command = 0x100, shift = 0x200, option = 0x800, control = 0x1000;
}

/// A key that went down while a window of ours had the keyboard.
struct KeyEvent {
    static constexpr std::uint32_t noKeyCode = 0xFFFF;  // of a key whose position has no classic code

    std::uint32_t keyCode = 0;  // classic virtual key code: a position on the keyboard
    std::uint32_t modifiers = 0;
    std::string characters;  // what the key writes without modifiers, UTF-8

    bool operator==(const KeyEvent&) const = default;
};

}  // namespace quillo
