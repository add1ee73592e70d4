// Which of the eight modifiers of an X server are command, option and the lock keys, by the keys that the
// person's keyboard has on them.
#pragma once
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/x11/X11Connection.hpp"

namespace quillo::x11 {

/// Masks of XCB_MOD_MASK bits; 0 where no key does that.
struct ModifierMap {
    std::uint16_t command = 0;                // Super
    std::uint16_t option = 0;                 // Alt, else Meta
    std::uint16_t locks = XCB_MOD_MASK_LOCK;  // Caps Lock, Num Lock, Scroll Lock

    bool operator==(const ModifierMap&) const = default;

    /// One round trip; absent when the server went away.
    static std::optional<ModifierMap> read(const X11Connection& connection);

    /// For a mask of command, shift, option and control; absent where the keyboard lacks one of them.
    std::optional<std::uint16_t> maskOf(std::uint32_t modifiers) const;
    /// Every state of the lock keys beside a mask: each wanted combination is grabbed once for each.
    std::vector<std::uint16_t> withLocks(std::uint16_t mask) const;
    /// What of the state in a key event chooses the combination.
    std::uint16_t withoutLocks(std::uint16_t state) const {
        return static_cast<std::uint16_t>(state & 0xFF & ~locks);
    }
};

}  // namespace quillo::x11
