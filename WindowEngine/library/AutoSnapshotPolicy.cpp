#include "WindowEngine/library/AutoSnapshotPolicy.hpp"

#include <algorithm>

namespace quillo::AutoSnapshotPolicy {

std::int64_t interval(std::optional<std::int64_t> minutes) {
    const bool known = minutes && std::ranges::find(intervals, *minutes) != intervals.end();
    return known ? *minutes : 0;
}

bool shouldCapture(const Situation& situation) {
    return interval(situation.minutes) > 0 && situation.onboarded && situation.trusted && !situation.busy;
}

bool captureImmediately(std::int64_t previousMinutes, std::int64_t minutes) {
    return previousMinutes == 0 && interval(minutes) > 0;
}

}  // namespace quillo::AutoSnapshotPolicy
