// Job<T>: a task that has been started.
#pragma once
#include <coroutine>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>
#include <vector>

#include "WindowEngine/support/TaskCoroutine.hpp"
#include "WindowEngine/support/Wait.hpp"

namespace quillo {

namespace detail {

class JobState;

/// Suspends until a job has ended or its Job was destroyed. No stop interrupts it: a child ends by the stop
/// it inherits, and its parent must not go before it has.
class JobEnd : protected Wait {
  protected:
    JobEnd(Context context, JobState& job) noexcept : Wait(context), job_(&job) {}
    ~JobEnd();

    bool ended() const;
    void listen(std::coroutine_handle<> handle) noexcept;
    /// Whether the job reached its end; false when its Job was destroyed before.
    bool reachedEnd() noexcept;

  private:
    friend class JobState;
    JobState* job_;
};

/// The part of a job that does not depend on what it returns.
class JobState : public TaskOwner, public Orphan, private Turn {
  public:
    bool done() const noexcept { return done_; }
    void cancel() noexcept { stop_.requestStop(); }
    void onDone(Fn callback);
    /// The Job is gone: frees this, at once or, when called inside the job's own tree, after its last step.
    void release() noexcept;

  protected:
    JobState(Executor& executor, StopSource* parent);
    virtual ~JobState();

    Executor& executor() noexcept { return executor_; }
    Context childContext() noexcept { return {&executor_, &stop_}; }
    virtual void startTask() = 0;
    virtual void cancelBeforeStart() noexcept = 0;

  private:
    friend class JobEnd;
    void taskEnded() noexcept override;
    void destroy() noexcept override { delete this; }
    void discard() noexcept override;
    void run() override;
    void start();
    void loseWaiter() noexcept;

    Executor& executor_;
    StopSource stop_;
    JobEnd* waiter_ = nullptr;
    Fn onDone_;
    bool started_ = false;
    bool done_ = false;
    bool released_ = false;
};

struct JobEndRequest {
    class Awaiter final : JobEnd {
      public:
        Awaiter(Context context, JobState& job) noexcept : JobEnd(context, job) {}
        bool await_ready() const { return ended(); }
        void await_suspend(std::coroutine_handle<> handle) noexcept { listen(handle); }
        bool await_resume() noexcept { return reachedEnd(); }
    };
    Awaiter awaiterIn(Context context) const noexcept { return Awaiter(context, job); }

    JobState& job;
};

template <class T>
class TypedJobState final : public JobState {
  public:
    TypedJobState(Executor& executor, Task<T> task, StopSource* parent)
        : JobState(executor, parent), task_(std::move(task)) {
        promise().context = childContext();
        promise().owner = this;
    }
    ~TypedJobState() override {
        if (!done() || observed_) return;
        if (auto exception = promise().outcome->exception())
            executor().reportUnobserved(std::move(exception));
    }

    Outcome<T> takeOutcome() {
        if (!done()) throw std::logic_error("the result of a job that has not ended");
        if (std::exchange(observed_, true)) throw std::logic_error("the result of a job was taken before");
        return std::move(*promise().outcome);
    }

  private:
    Task<T>::promise_type& promise() noexcept { return task_.handle().promise(); }
    void startTask() override { task_.handle().resume(); }
    void cancelBeforeStart() noexcept override { promise().outcome.emplace(Cancelled{}); }

    Task<T> task_;
    bool observed_ = false;
};

struct JobRelease {
    void operator()(JobState* state) const noexcept { state->release(); }
};

}  // namespace detail

/// Starts its task in a turn of its own, unless it is cancelled before: then no statement of it runs.
/// Destroying a Job destroys the task with all it awaits, wherever they are suspended. Inside its own tree,
/// where that would pull the ground from under the caller, it requests a stop and frees itself after the last
/// step. An exception that nobody takes is reported to Executor::onUnobservedException.
template <class T = void>
class [[nodiscard]] Job {
  public:
    /// Without a parent it is cancelled by itself or by the loop's shutDown only.
    Job(Executor& executor, Task<T> task, StopSource* parentStop = nullptr)
        : state_(new detail::TypedJobState<T>(executor, std::move(task), parentStop)) {}

    /// Requests a stop of the whole tree; every wait in it ends with Cancelled in a turn of its own.
    void cancel() noexcept { state_->cancel(); }
    bool done() const noexcept { return state_->done(); }
    /// The value, or throws what ended the task. Once, and only when done.
    T result() { return outcome().take(); }
    /// The same without throwing.
    Outcome<T> outcome() { return state_->takeOutcome(); }
    /// Calls back once in a turn after the end, unless this Job is destroyed before. One callback at most.
    void onDone(Fn callback) { state_->onDone(std::move(callback)); }

    /// `co_await job.ended()` waits without taking the result; false when the Job was destroyed meanwhile.
    detail::JobEndRequest ended() const noexcept { return detail::JobEndRequest{*state_}; }

    /// `co_await job` waits and gives result(). Cancelled when the Job is destroyed meanwhile.
    class Awaiter final : detail::JobEnd {
      public:
        Awaiter(Context context, detail::TypedJobState<T>& state) noexcept
            : JobEnd(context, state), state_(state) {}

        bool await_ready() const { return ended(); }
        void await_suspend(std::coroutine_handle<> handle) noexcept { listen(handle); }
        T await_resume() {
            if (!reachedEnd()) throw Cancelled{};
            return state_.takeOutcome().take();
        }

      private:
        detail::TypedJobState<T>& state_;
    };
    Awaiter awaiterIn(Context context) const noexcept { return Awaiter(context, *state_); }

  private:
    std::unique_ptr<detail::TypedJobState<T>, detail::JobRelease> state_;
};

/// Starts a child of the calling task: `auto job = spawn(co_await context(), task())`.
template <class T>
Job<T> spawn(Context context, Task<T> task) {
    return Job<T>(*context.executor, std::move(task), context.stop);
}

namespace detail {

template <class T>
Task<std::vector<Outcome<T>>> outcomesOf(std::vector<Job<T>>& jobs) {
    std::vector<Outcome<T>> outcomes;
    outcomes.reserve(jobs.size());
    for (Job<T>& job : jobs) {
        const bool ended = co_await job.ended();
        outcomes.push_back(ended ? job.outcome() : Outcome<T>(Cancelled{}));
    }
    co_return outcomes;
}

}  // namespace detail

/// `co_await joinAll(jobs)` gives how each job ended, in the order of `jobs`, which must stay as it is
/// meanwhile. Never throws; waits for all of them in a cancelled task too (whose children end by the stop
/// they inherit), so that every job has undone what it must before its frame goes.
template <class T>
Shielded<std::vector<Outcome<T>>> joinAll(std::vector<Job<T>>& jobs) {
    return shielded(detail::outcomesOf(jobs));
}

}  // namespace quillo
