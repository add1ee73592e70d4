// What a person may have meant by a name that there is not.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace quillo::ctl {

/// The one of `names` that is the fewest letters away from `typed` (left out, added, changed or swapped with
/// the next), ignoring case; none where a third of the letters and more would have to change. Of several the
/// first.
std::optional<std::string> nearestName(std::string_view typed, std::span<const std::string> names);

/// "; did you mean Work?", or nothing.
std::string suggestion(std::string_view typed, std::span<const std::string> names);

}  // namespace quillo::ctl
