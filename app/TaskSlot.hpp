// A place for the one task of a kind that an object runs.
#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <utility>

#include "WindowEngine/support/Job.hpp"

namespace quillo {

/// Declared last in the object that owns it: destroying it destroys the task where it is suspended.
class TaskSlot {
  public:
    /// `ended` is told in a turn after the task's end, however it ended, unless another task took the place
    /// meanwhile. The place is empty by then.
    void start(Executor& executor, Task<void> task, std::function<void()> ended = {}) {
        const std::uint64_t number = ++started_;
        job_.emplace(executor, std::move(task));
        job_->onDone([this, number, ended = std::move(ended)] {
            if (number != started_) return;
            job_.reset();
            if (ended) ended();
        });
    }
    /// Requests a stop; the task ends in turns of its own.
    void cancel() noexcept {
        if (job_) job_->cancel();
    }
    /// Whether a task runs; one that was told to stop does until it has ended.
    bool active() const noexcept { return job_ && !job_->done(); }

    /// `co_await slot.ended()` waits for the end of the task that runs, if one does; one task at a time.
    Task<> ended() {
        if (active()) co_await job_->ended();
    }

  private:
    std::uint64_t started_ = 0;
    std::optional<Job<>> job_;
};

}  // namespace quillo
