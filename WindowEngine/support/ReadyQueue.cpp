#include "WindowEngine/support/ReadyQueue.hpp"

namespace quillo {

bool ReadyQueue::push(Turn& turn) noexcept {
    std::lock_guard lock(mutex_);
    return append(turn);
}

bool ReadyQueue::append(Turn& turn) noexcept {
    const bool wasEmpty = turns_.empty();
    turns_.append(turn);
    turn.place_ = Turn::Place::ready;
    if (wasEmpty) changed_.notify_one();
    return wasEmpty;
}

Turn* ReadyQueue::pop() noexcept {
    std::lock_guard lock(mutex_);
    if (turns_.empty()) return nullptr;
    Turn& turn = turns_.front();
    turn.unlink();
    turn.place_ = Turn::Place::nowhere;
    return &turn;
}

void ReadyQueue::withdraw(Turn& turn) noexcept {
    std::lock_guard lock(mutex_);
    turn.unlink();
    turn.place_ = Turn::Place::nowhere;
}

bool ReadyQueue::empty() const noexcept {
    std::lock_guard lock(mutex_);
    return turns_.empty();
}

bool ReadyQueue::waitUntil(TimePoint deadline) noexcept {
    std::unique_lock lock(mutex_);
    const auto ready = [this] { return !turns_.empty(); };
    if (deadline != TimePoint::max()) return changed_.wait_until(lock, deadline, ready);
    changed_.wait(lock, ready);
    return true;
}

void ReadyQueue::holdClock() noexcept {
    std::lock_guard lock(mutex_);
    ++clockHolders_;
}

bool ReadyQueue::releaseClock(Turn& notice) noexcept {
    std::lock_guard lock(mutex_);
    if (--clockHolders_ > 0 || notice.place_ == Turn::Place::ready) return false;
    return append(notice);
}

bool ReadyQueue::clockHeld() const noexcept {
    std::lock_guard lock(mutex_);
    return clockHolders_ > 0;
}

bool ReadyQueue::waitWhileClockHeld() noexcept {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !turns_.empty() || clockHolders_ == 0; });
    return !turns_.empty();
}

}  // namespace quillo
