// The executor: one thread on which all engine work runs in turns, first asked, first served.
#pragma once
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <unordered_map>
#include <utility>

#include "WindowEngine/support/Fn.hpp"
#include "WindowEngine/support/Instant.hpp"
#include "WindowEngine/support/ReadyQueue.hpp"
#include "WindowEngine/support/StopSource.hpp"
#include "WindowEngine/support/TimerQueue.hpp"

namespace quillo {

class Executor;

/// Names a function given to postAfter.
struct TimerId {
    std::uint64_t sequence = 0;
    bool operator==(const TimerId&) const = default;
};

/// Held while real work goes on outside the executor (a child process, a thread): a virtual clock stands
/// still meanwhile, so that a limit in virtual seconds is not over before the work had its milliseconds. May
/// be released on any thread; post the result first.
class OutsideWork {
  public:
    explicit OutsideWork(Executor& executor) noexcept;
    OutsideWork(OutsideWork&& other) noexcept : executor_(std::exchange(other.executor_, nullptr)) {}
    OutsideWork& operator=(OutsideWork&& other) noexcept {
        std::swap(executor_, other.executor_);
        return *this;
    }
    ~OutsideWork();

  private:
    Executor* executor_;
};

/// A job that nobody holds any more but that has yet to reach its end.
class Orphan : public Linked<Orphan> {
  public:
    virtual void destroy() noexcept = 0;

  protected:
    Orphan() = default;
    ~Orphan() = default;
};

/// Everything is for the executor's own thread, except where "any thread" is said. It must outlive whatever
/// runs on it. One ready queue and one timer queue serve all loops; a loop only waits and calls runTurn():
/// timers that are due join the ready queue, so neither posts nor timers can starve the other.
class Executor {
  public:
    Executor();
    Executor(const Executor&) = delete;
    Executor& operator=(const Executor&) = delete;
    virtual ~Executor();

    /// The monotonic clock that all waits are measured with.
    virtual TimePoint now() const noexcept = 0;
    virtual Instant wallNow() const noexcept = 0;

    /// Any thread; in order of asking.
    void post(Fn function);
    /// Never early. What is due at the same time runs in order of asking; zero or less is post().
    TimerId postAfter(Duration delay, Fn function);
    /// A function that has run or is unknown is left alone.
    void cancel(TimerId timer) noexcept;

    /// Nothing ready, no timer, no live job (so no suspended wait either), no outside work.
    bool idle() const noexcept;
    OutsideWork outsideWork() noexcept { return OutsideWork(*this); }

    /// Told of an exception that ended a job and that nobody has taken from it. Without a handler it is
    /// written to standard error. The handler must not throw.
    using ExceptionHandler = std::function<void(std::exception_ptr)>;
    void onUnobservedException(ExceptionHandler handler) { exceptionHandler_ = std::move(handler); }

    // What tasks, jobs and completions are made of.

    /// Any thread for a turn that is in no queue; else it is taken from the timers first.
    void makeReady(Turn& turn) noexcept;
    void makeReadyAt(Turn& turn, TimePoint due);
    void withdraw(Turn& turn) noexcept;
    TimePoint timeAfter(Duration delay) const noexcept;

    void jobStarted() noexcept { ++liveJobs_; }
    void jobEnded() noexcept { --liveJobs_; }
    void adopt(Orphan& orphan) noexcept { orphans_.append(orphan); }
    void reportUnobserved(std::exception_ptr exception) noexcept;
    /// Parent of every job that was given none.
    StopSource& rootStop() noexcept { return rootStop_; }

    /// Marks, on the stack, that a job's coroutine is being run.
    class RunScope {
      public:
        RunScope(Executor& executor, const StopSource& stop) noexcept
            : executor_(executor), job_(stop.unshielded()), outer_(executor.innermost_) {
            executor.innermost_ = this;
        }
        RunScope(const RunScope&) = delete;
        RunScope& operator=(const RunScope&) = delete;
        ~RunScope() { executor_.innermost_ = outer_; }

      private:
        friend class Executor;
        Executor& executor_;
        const StopSource& job_;
        RunScope* outer_;
    };
    /// Whether the caller runs inside the job of this stop source or inside one of that job's descendants.
    bool runsWithin(const StopSource& job) const noexcept;

  protected:
    /// Any thread: a turn became ready while none was, or a timer became the earliest. A loop that waits for
    /// the ready queue itself needs nothing here.
    virtual void wake() noexcept {}

    /// Lets timers that are due join the ready queue and runs the next turn; false when there is none.
    bool runTurn();
    void collectDueTimers() noexcept;
    /// TimePoint::max() when there is no timer.
    TimePoint nextTimer() const noexcept { return timers_.empty() ? TimePoint::max() : timers_.earliest(); }
    ReadyQueue& ready() noexcept { return ready_; }
    /// Discards what is queued and destroys orphans.
    void abandonAll() noexcept;

  private:
    friend class OutsideWork;
    /// Lets a loop look up when the last outside work ends: it may be idle by that.
    struct OutsideWorkEnded final : Turn {
        void run() override {}
    };
    struct PostedFunction;
    struct TimedFunction;

    ReadyQueue ready_;
    TimerQueue timers_;
    std::unordered_map<std::uint64_t, std::unique_ptr<TimedFunction>> timedFunctions_;
    std::uint64_t lastTimer_ = 0;
    OutsideWorkEnded outsideWorkEnded_;
    std::size_t liveJobs_ = 0;
    LinkedList<Orphan> orphans_;
    StopSource rootStop_;
    RunScope* innermost_ = nullptr;
    ExceptionHandler exceptionHandler_;
};

}  // namespace quillo
