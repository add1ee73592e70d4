// What a display says about itself.
#pragma once
#include <cstddef>
#include <optional>
#include <span>
#include <string>

namespace quillo::x11 {

/// "VENDOR-PRODUCT-SERIAL" (three letters, four hexadecimal digits, and the serial text or number) of an EDID
/// block; absent when the block is damaged or names no vendor. Identical displays that carry no serial, or
/// all the same one, share it.
std::optional<std::string> edidIdentity(std::span<const std::byte> edid);

}  // namespace quillo::x11
