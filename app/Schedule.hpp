// When a workspace is due by the clock on the wall. Pure.
#pragma once
#include <QTimeZone>
#include <optional>

#include "WindowEngine/support/Instant.hpp"
#include "settings/WorkspaceAutomation.hpp"

namespace quillo {

/// The first moment after `after` at which clocks in that zone show the time, on a day that counts. A time
/// that the day leaves out, as clocks go forward, comes by as much later. Absent where it never is, or the
/// minute is none of a day.
std::optional<Instant> nextDue(const WorkspaceAutomation& chosen, Instant after, const QTimeZone& zone);

}  // namespace quillo
