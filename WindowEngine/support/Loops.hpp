// What runs an executor: the virtual clock of tests and the plain loop.
#pragma once
#include <functional>

#include "WindowEngine/support/Executor.hpp"

namespace quillo {

/// An executor that can be run by its owner. None of these functions may be called from within a turn.
class Loop : public Executor {
  public:
    using Condition = std::function<bool()>;

    /// Runs turn by turn until the condition holds; false when `limit` (on this executor's clock) passes
    /// before, or when nothing can happen any more.
    bool runUntil(const Condition& condition, Duration limit);
    /// Cancels every live job and runs until nothing is left; whether that was reached within the limit.
    /// Jobs started from here on are born cancelled.
    bool shutDown(Duration limit);

  protected:
    /// Runs one turn, or waits until one is ready or a timer is due; false when `deadline` comes before that
    /// or nothing can come.
    virtual bool advance(TimePoint deadline) = 0;
};

/// A clock that stands still while anything is ready and then jumps to the next timer, so that fifteen
/// seconds cost microseconds and the order is always the same. It also stands still while outside work goes
/// on.
class VirtualExecutor final : public Loop {
  public:
    ~VirtualExecutor() override { abandonAll(); }

    TimePoint now() const noexcept override { return now_; }
    Instant wallNow() const noexcept override { return wallStart + now_.time_since_epoch(); }

    /// A call that blocks the thread for `duration`, as of an application that answers only after its
    /// messaging timeout: nothing runs meanwhile. May be called from within a turn.
    void burn(Duration duration) noexcept { now_ = timeAfter(duration); }
    /// How long a single turn has held up all others at most.
    Duration longestTurn() const noexcept { return longestTurn_; }

    using Loop::runUntil;
    /// Runs everything up to `limit` and leaves the clock there.
    void runUntil(TimePoint limit);
    void runFor(Duration duration) { runUntil(timeAfter(duration)); }
    /// Until neither a turn nor a timer nor outside work is left. Jobs that wait for something else may still
    /// be live: see idle().
    void runUntilIdle() { runUntil(TimePoint::max()); }

  private:
    static constexpr Instant wallStart{std::chrono::seconds{1741944413}};  // 2025-03-14T09:26:53Z

    bool advance(TimePoint deadline) override;
    bool rest(TimePoint deadline);

    TimePoint now_{};
    Duration longestTurn_{};
};

/// The plain loop over the steady clock.
class LoopExecutor final : public Loop {
  public:
    ~LoopExecutor() override { abandonAll(); }

    TimePoint now() const noexcept override { return std::chrono::steady_clock::now(); }
    Instant wallNow() const noexcept override { return std::chrono::system_clock::now(); }

    /// Until stop().
    void run();
    /// Any thread; ends run() after what was posted before.
    void stop();

  private:
    bool advance(TimePoint deadline) override { return runTurn() || rest(deadline); }
    bool rest(TimePoint deadline);

    bool stopped_ = false;
};

}  // namespace quillo
