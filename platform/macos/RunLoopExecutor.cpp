#include "platform/macos/RunLoopExecutor.hpp"

#include <algorithm>

namespace quillo {
namespace {

constexpr CFTimeInterval century = 3.2e9;
constexpr CFIndex afterAllOthers = 1'000'000;  // with turns always ready, other sources would starve

CFTimeInterval secondsOf(Duration duration) {
    return std::chrono::duration<CFTimeInterval>(duration).count();
}

}  // namespace

RunLoopExecutor::RunLoopExecutor() : runLoop_(CFRef<CFRunLoopRef>::retained(CFRunLoopGetCurrent())) {
    CFRunLoopSourceContext source{};
    source.info = this;
    source.perform = [](void* self) { static_cast<RunLoopExecutor*>(self)->dispatch(); };
    source_ = CFRef<CFRunLoopSourceRef>::created(
        CFRunLoopSourceCreate(kCFAllocatorDefault, afterAllOthers, &source));
    CFRunLoopAddSource(runLoop_.get(), source_.get(), kCFRunLoopCommonModes);

    // One timer for all, and a repeating one, because another would be invalid once it has fired.
    CFRunLoopTimerContext timer{};
    timer.info = this;
    // A timer's function does not make CFRunLoopRunInMode return, and is not called again while it runs,
    // which a turn with a loop of its own would need: the source does the work.
    const CFRunLoopTimerCallBack fired = [](CFRunLoopTimerRef, void* self) {
        auto& executor = *static_cast<RunLoopExecutor*>(self);
        executor.armedFor_ = TimePoint::max();  // it may have fired early: armTimer() asks again
        executor.wake();
    };
    timer_ = CFRef<CFRunLoopTimerRef>::created(CFRunLoopTimerCreate(
        kCFAllocatorDefault, CFAbsoluteTimeGetCurrent() + century, century, 0, 0, fired, &timer));
    CFRunLoopAddTimer(runLoop_.get(), timer_.get(), kCFRunLoopCommonModes);
}

RunLoopExecutor::~RunLoopExecutor() {
    abandonAll();
    CFRunLoopTimerInvalidate(timer_.get());
    CFRunLoopSourceInvalidate(source_.get());
}

/// A signal alone is seen only by a loop that is awake; a waking that comes before the loop sleeps holds.
void RunLoopExecutor::wake() noexcept {
    if (woken_.exchange(true)) return;
    CFRunLoopSourceSignal(source_.get());
    CFRunLoopWakeUp(runLoop_.get());
}

void RunLoopExecutor::dispatch() {
    woken_ = false;
    collectDueTimers();
    armTimer();
    // Before the turns run: one of them may run the loop again, which must find something to go on with.
    if (!ready().empty()) wake();
    for (int turns = 0; turns < turnsAtOnce_ && runTurn(); ++turns) {
    }
}

/// The run loop counts the time that the computer is awake: after a sleep a timer comes as much later, unless
/// anything else happens first.
void RunLoopExecutor::armTimer() {
    const TimePoint next = nextTimer();
    if (next == armedFor_) return;
    armedFor_ = next;
    const CFTimeInterval left = next == TimePoint::max() ? century : secondsOf(next - now());
    CFRunLoopTimerSetNextFireDate(timer_.get(), CFAbsoluteTimeGetCurrent() + left);
}

bool RunLoopExecutor::advance(TimePoint deadline) {
    const TimePoint start = now();
    if (start >= deadline) return false;
    const Duration longest = std::chrono::hours(24);
    const int turnsAtOnce = std::exchange(turnsAtOnce_, 1);
    const auto result = CFRunLoopRunInMode(kCFRunLoopDefaultMode,
                                           secondsOf(std::min<Duration>(deadline - start, longest)), true);
    turnsAtOnce_ = turnsAtOnce;
    return result != kCFRunLoopRunFinished;  // that is the run loop of another thread, which nothing can wake
}

}  // namespace quillo
