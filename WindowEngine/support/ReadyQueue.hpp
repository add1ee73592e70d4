// What runs next: the queue that every loop takes its turns from.
#pragma once
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <mutex>

#include "WindowEngine/support/LinkedList.hpp"

namespace quillo {

using Duration = std::chrono::nanoseconds;
using TimePoint = std::chrono::steady_clock::time_point;

/// Something that waits for its turn on the executor's thread: in the ready queue, in the timer queue, or
/// (until somebody asks) in neither.
class Turn : public Linked<Turn> {
  public:
    virtual void run() = 0;
    /// The executor goes away before this turn came: what lives only in its queue frees itself.
    virtual void discard() noexcept {}

  protected:
    Turn() = default;
    ~Turn() = default;

  private:
    friend class ReadyQueue;
    friend class TimerQueue;
    friend class Executor;
    enum class Place { nowhere, ready, timed };

    Place place_ = Place::nowhere;
    TimePoint due_{};
    std::uint64_t order_ = 0;
};

/// First in, first out. Any thread may push and hold the clock; the rest is for the executor's thread.
class ReadyQueue {
  public:
    /// Whether the queue was empty before.
    bool push(Turn& turn) noexcept;
    /// Null when there is none.
    Turn* pop() noexcept;
    void withdraw(Turn& turn) noexcept;
    bool empty() const noexcept;

    /// Blocks until a turn is there; false when it is `deadline` first. TimePoint::max() waits for ever.
    bool waitUntil(TimePoint deadline) noexcept;

    /// Counts work done outside the executor, see OutsideWork. The last release pushes `notice`, unless it
    /// still stands in the queue; whether the queue was empty before.
    void holdClock() noexcept;
    bool releaseClock(Turn& notice) noexcept;
    bool clockHeld() const noexcept;
    /// Blocks while the clock is held and nothing is ready; whether a turn is there.
    bool waitWhileClockHeld() noexcept;

  private:
    bool append(Turn& turn) noexcept;

    mutable std::mutex mutex_;
    std::condition_variable changed_;
    LinkedList<Turn> turns_;
    std::size_t clockHolders_ = 0;
};

}  // namespace quillo
