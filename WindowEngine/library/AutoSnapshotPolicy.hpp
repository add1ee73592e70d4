// When the session is captured by itself: the intervals there are, and whether a capture may run now. Pure;
// the application owns the timer.
#pragma once
#include <array>
#include <cstdint>
#include <optional>

namespace quillo::AutoSnapshotPolicy {

/// In minutes; 0 is off.
inline constexpr std::array<std::int64_t, 5> intervals{0, 5, 10, 30, 60};

/// A stored setting as it counts: one of `intervals`; anything else, or none, is off.
std::int64_t interval(std::optional<std::int64_t> minutes);

struct Situation {
    std::int64_t minutes = 0;  // the setting as stored
    bool onboarded = false;    // the introduction of the first start is done
    bool trusted = false;      // other applications' windows may be read
    bool busy = false;         // a capture or restore is running
};
bool shouldCapture(const Situation& situation);

/// Whether the change of the setting has just switched automatic captures on. The value before is taken as it
/// stands: an unknown one that only counted as off was a choice too, and does not start a capture.
bool captureImmediately(std::int64_t previousMinutes, std::int64_t minutes);

}  // namespace quillo::AutoSnapshotPolicy
