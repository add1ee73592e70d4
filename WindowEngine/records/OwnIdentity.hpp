// This program as an application among others: never captured, never hidden or quit, and the name of what a
// report says of a whole run.
#pragma once
#include <string_view>

namespace quillo {

inline constexpr std::string_view ownName = "Quillo";
inline constexpr std::string_view ownBundleIdentifier = "app.quillo.Quillo";

}  // namespace quillo
