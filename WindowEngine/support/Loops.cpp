#include "WindowEngine/support/Loops.hpp"

#include <algorithm>

namespace quillo {

bool Loop::runUntil(const Condition& condition, Duration limit) {
    const TimePoint deadline = timeAfter(limit);
    while (!condition())
        if (!advance(deadline)) return false;
    return true;
}

bool Loop::shutDown(Duration limit) {
    rootStop().requestStop();
    return runUntil([this] { return idle(); }, limit);
}

void VirtualExecutor::runUntil(TimePoint limit) {
    while (runTurn() || rest(limit)) {
    }
}

bool VirtualExecutor::advance(TimePoint deadline) {
    const TimePoint began = now_;
    if (!runTurn()) return rest(deadline);
    longestTurn_ = std::max(longestTurn_, now_ - began);
    return true;
}

bool VirtualExecutor::rest(TimePoint deadline) {
    if (ready().waitWhileClockHeld()) return true;
    const TimePoint next = nextTimer();
    if (next <= deadline && next != TimePoint::max()) {
        now_ = std::max(now_, next);
        return true;
    }
    if (deadline != TimePoint::max()) now_ = std::max(now_, deadline);
    return false;
}

void LoopExecutor::run() {
    stopped_ = false;
    while (!stopped_) advance(TimePoint::max());
}

void LoopExecutor::stop() {
    post([this] { stopped_ = true; });
}

bool LoopExecutor::rest(TimePoint deadline) {
    const TimePoint next = nextTimer();
    return ready().waitUntil(std::min(next, deadline)) || next <= deadline;
}

}  // namespace quillo
