#include "WindowEngine/support/Executor.hpp"

#include <cstdio>

namespace quillo {

struct Executor::PostedFunction final : Turn {
    explicit PostedFunction(Fn given) : function(std::move(given)) {}

    void run() override {
        const std::unique_ptr<PostedFunction> self(this);
        function();
    }
    void discard() noexcept override { delete this; }

    Fn function;
};

struct Executor::TimedFunction final : Turn {
    TimedFunction(Executor& owner, std::uint64_t number, Fn given)
        : executor(owner), sequence(number), function(std::move(given)) {}

    void run() override {
        const auto self = executor.timedFunctions_.extract(sequence);
        function();
    }

    Executor& executor;
    std::uint64_t sequence;
    Fn function;
};

OutsideWork::OutsideWork(Executor& executor) noexcept : executor_(&executor) {
    executor.ready_.holdClock();
}

OutsideWork::~OutsideWork() {
    if (executor_ && executor_->ready_.releaseClock(executor_->outsideWorkEnded_)) executor_->wake();
}

Executor::Executor() = default;

Executor::~Executor() {
    abandonAll();
}

void Executor::post(Fn function) {
    makeReady(*new PostedFunction(std::move(function)));
}

TimerId Executor::postAfter(Duration delay, Fn function) {
    const std::uint64_t sequence = ++lastTimer_;
    auto timed = std::make_unique<TimedFunction>(*this, sequence, std::move(function));
    TimedFunction& turn = *timed;
    timedFunctions_.emplace(sequence, std::move(timed));
    makeReadyAt(turn, timeAfter(delay));
    return {sequence};
}

void Executor::cancel(TimerId timer) noexcept {
    const auto found = timedFunctions_.find(timer.sequence);
    if (found == timedFunctions_.end()) return;
    withdraw(*found->second);
    const std::unique_ptr<TimedFunction> outlivesTheMap = std::move(found->second);
    timedFunctions_.erase(found);
}

bool Executor::idle() const noexcept {
    return ready_.empty() && timers_.empty() && liveJobs_ == 0 && !ready_.clockHeld();
}

void Executor::makeReady(Turn& turn) noexcept {
    if (turn.place_ == Turn::Place::timed) timers_.withdraw(turn);
    if (ready_.push(turn)) wake();
}

void Executor::makeReadyAt(Turn& turn, TimePoint due) {
    if (due <= now()) return makeReady(turn);
    const bool isEarliest = due < nextTimer();
    timers_.add(turn, due);
    if (isEarliest) wake();
}

void Executor::withdraw(Turn& turn) noexcept {
    if (turn.place_ == Turn::Place::timed) timers_.withdraw(turn);
    if (turn.place_ == Turn::Place::ready) ready_.withdraw(turn);
}

TimePoint Executor::timeAfter(Duration delay) const noexcept {
    const TimePoint start = now();
    return delay < TimePoint::max() - start ? start + delay : TimePoint::max();
}

bool Executor::runsWithin(const StopSource& job) const noexcept {
    for (const RunScope* scope = innermost_; scope; scope = scope->outer_)
        if (scope->job_.isWithin(job)) return true;
    return false;
}

bool Executor::runTurn() {
    collectDueTimers();
    Turn* turn = ready_.pop();
    if (!turn) return false;
    turn->run();
    return true;
}

void Executor::collectDueTimers() noexcept {
    if (timers_.empty()) return;
    for (const TimePoint time = now(); !timers_.empty() && timers_.earliest() <= time;)
        ready_.push(timers_.takeEarliest());
}

void Executor::reportUnobserved(std::exception_ptr exception) noexcept {
    if (exceptionHandler_) return exceptionHandler_(std::move(exception));
    try {
        std::rethrow_exception(std::move(exception));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quillo: a task ended with an exception that nobody took: %s\n", error.what());
    } catch (...) {
        std::fputs("quillo: a task ended with an exception that nobody took\n", stderr);
    }
}

void Executor::abandonAll() noexcept {
    while (!orphans_.empty()) orphans_.front().destroy();
    while (!timers_.empty()) timers_.takeEarliest().discard();
    while (Turn* turn = ready_.pop()) turn->discard();
    // Last, and out of reach of cancel(): destroying a function may run anything.
    const auto functions = std::exchange(timedFunctions_, {});
}

}  // namespace quillo
