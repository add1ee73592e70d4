// Digests, by the system's library.
#pragma once
#include <string>
#include <string_view>

namespace quillo {

/// 64 hexadecimal digits. `bytes` must be fewer than 4 GiB.
std::string macSha256(std::string_view bytes);

}  // namespace quillo
