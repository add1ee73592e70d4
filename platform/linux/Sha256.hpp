// Digests, by GLib.
#pragma once
#include <string>
#include <string_view>

namespace quillo {

/// 64 hexadecimal digits.
std::string sha256(std::string_view bytes);

}  // namespace quillo
