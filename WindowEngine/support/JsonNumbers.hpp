// Numbers of a JSON document that are valid, yet larger than the parser can hold.
#pragma once
#include <optional>
#include <string>
#include <string_view>

namespace quillo {

/// The document with such numbers written in another way, line for line; nothing where it has none. A whole
/// number beyond 64 bits becomes a floating-point one, and one beyond a double's range an empty text, so that
/// a reader still refuses it where it wants a number and skips it where it wants nothing. The rest may be
/// damaged.
std::optional<std::string> withNumbersInRange(std::string_view json);

}  // namespace quillo
