// Wall-clock instants and their ISO 8601 form.
#pragma once
#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace quillo {

/// A moment in UTC. Documents keep whole seconds only.
using Instant = std::chrono::sys_time<std::chrono::nanoseconds>;

/// Internet date-time in UTC with whole seconds, floored: 2025-03-14T09:26:53Z.
std::string formatInstant(Instant instant);

/// Accepts exactly the form that formatInstant writes (no fraction, no offset but Z, a real calendar date);
/// anything else is absent.
std::optional<Instant> parseInstant(std::string_view text);

/// "HH:mm" on the person's clock: in the system's time zone as it is now, with the digits of the locale.
std::string formatTimeOfDay(Instant instant);

}  // namespace quillo
