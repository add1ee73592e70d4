// The two numberings of the positions on a keyboard: the classic virtual key codes, which shortcuts are
// stored with, and the key codes of X11. Both name a position, whatever the layout writes there. Pure.
#pragma once
#include <xcb/xproto.h>

#include <cstdint>
#include <optional>

namespace quillo::x11 {

/// Absent for a classic code that no position of an ANSI, ISO or JIS keyboard has.
std::optional<xcb_keycode_t> keyOfClassicCode(std::uint32_t classicCode);
/// Absent for keys that classic keyboards never had (Print Screen, multimedia keys).
std::optional<std::uint32_t> classicCodeOfKey(std::uint32_t key);

}  // namespace quillo::x11
