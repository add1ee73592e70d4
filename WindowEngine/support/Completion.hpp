// Completion<T>: something that happens elsewhere, at most once, and that one task waits for.
#pragma once
#include <atomic>
#include <coroutine>
#include <memory>
#include <optional>
#include <stdexcept>
#include <utility>

#include "WindowEngine/support/Wait.hpp"

namespace quillo {

/// What a waiter gets when every Setter was dropped without setting a value: nothing can come any more.
struct CompletionLost : std::runtime_error {
    CompletionLost() : std::runtime_error("a completion was dropped without a value") {}
};

namespace detail {

template <class T>
class CompletionWait;

/// Shared by a Completion, its setters and its waiter. Its turn brings the news to the executor's thread.
template <class T>
class CompletionState final : public Turn {
  public:
    explicit CompletionState(Executor& executor) noexcept : executor_(executor) {}

    /// Any thread; the first one counts. Without a value the completion is lost.
    static void settle(const std::shared_ptr<CompletionState>& state, std::optional<T> value) noexcept {
        if (state->claimed_.exchange(true)) return;
        state->value_ = std::move(value);
        state->self_ = state;
        state->settled_.store(true, std::memory_order_release);
        state->executor_.makeReady(*state);
    }

  private:
    friend class CompletionWait<T>;

    void run() override {
        const auto self = std::exchange(self_, nullptr);
        if (waiter_) waiter_->resumeNow();
    }
    void discard() noexcept override { const auto self = std::exchange(self_, nullptr); }

    Executor& executor_;
    std::atomic<bool> claimed_ = false;
    std::atomic<bool> settled_ = false;  // from here on value_ is the executor's
    std::optional<T> value_;
    std::shared_ptr<CompletionState> self_;  // while queued
    CompletionWait<T>* waiter_ = nullptr;
    bool taken_ = false;
};

template <class T>
class CompletionWait : protected Wait {
  protected:
    CompletionWait(Context context, std::shared_ptr<CompletionState<T>> state) noexcept
        : Wait(context), state_(std::move(state)) {}
    ~CompletionWait() {
        if (state_->waiter_ == this) state_->waiter_ = nullptr;
    }

    bool arrived() const {
        if (state_->waiter_ || state_->taken_) throw std::logic_error("a completion is awaited once");
        if (settled()) return true;
        context().throwIfStopped();
        return false;
    }
    void listen(std::coroutine_handle<> handle) noexcept {
        state_->waiter_ = this;
        suspend(handle);
    }
    /// Absent when the wait ended without the completion; throws when that was a stop or when it is lost.
    std::optional<T> answer() {
        if (!settled()) {
            if (stopped()) throw Cancelled{};
            return std::nullopt;
        }
        state_->taken_ = true;
        if (!state_->value_) throw CompletionLost();
        return std::move(state_->value_);
    }

  private:
    friend class CompletionState<T>;
    bool settled() const noexcept { return state_->settled_.load(std::memory_order_acquire); }

    std::shared_ptr<CompletionState<T>> state_;
};

}  // namespace detail

/// `T value = co_await completion;` Awaited once: a second waiter, or a wait after the value was taken, is a
/// programming error (std::logic_error). A wait that ended without the value, by a stop or a deadline, may be
/// repeated. A value that has arrived wins over a stop and over a deadline that come in the same turn.
template <class T>
class Completion {
    using State = detail::CompletionState<T>;
    struct Promise;

  public:
    explicit Completion(Executor& executor) : state_(std::make_shared<State>(executor)) {}

    /// Copies share one fate: the first value set counts, later ones are ignored. Dropping the last one unset
    /// gives the waiter CompletionLost. The executor must outlive it.
    class Setter {
      public:
        /// Any thread; allocates nothing and resumes nobody inline.
        void set(T value) const { State::settle(promise_->state, std::move(value)); }

      private:
        friend class Completion;
        explicit Setter(std::shared_ptr<const Promise> promise) noexcept : promise_(std::move(promise)) {}
        std::shared_ptr<const Promise> promise_;
    };
    Setter setter() const {
        auto promise = promise_.lock();
        if (!promise) promise_ = promise = std::make_shared<const Promise>(state_);
        return Setter(std::move(promise));
    }

    class Awaiter final : detail::CompletionWait<T> {
      public:
        Awaiter(Context context, std::shared_ptr<State> state) noexcept
            : detail::CompletionWait<T>(context, std::move(state)) {}
        bool await_ready() const { return this->arrived(); }
        void await_suspend(std::coroutine_handle<> handle) noexcept { this->listen(handle); }
        T await_resume() { return *this->answer(); }
    };
    Awaiter awaiterIn(Context context) const noexcept { return Awaiter(context, state_); }

    class DeadlineAwaiter final : detail::CompletionWait<T> {
      public:
        DeadlineAwaiter(Context context, std::shared_ptr<State> state, TimePoint deadline) noexcept
            : detail::CompletionWait<T>(context, std::move(state)), deadline_(deadline) {}
        bool await_ready() const { return this->arrived(); }
        void await_suspend(std::coroutine_handle<> handle) {
            this->resumeAt(deadline_);
            this->listen(handle);
        }
        std::optional<T> await_resume() { return this->answer(); }

      private:
        TimePoint deadline_;
    };
    struct Until {
        std::shared_ptr<State> state;
        TimePoint deadline;
        DeadlineAwaiter awaiterIn(Context context) const noexcept { return {context, state, deadline}; }
    };
    /// `co_await completion.until(deadline)` gives an optional: absent when the deadline came first.
    Until until(TimePoint deadline) const noexcept { return {state_, deadline}; }

  private:
    struct Promise {
        explicit Promise(std::shared_ptr<State> given) noexcept : state(std::move(given)) {}
        Promise(const Promise&) = delete;
        Promise& operator=(const Promise&) = delete;
        ~Promise() { State::settle(state, std::nullopt); }
        std::shared_ptr<State> state;
    };

    std::shared_ptr<State> state_;
    mutable std::weak_ptr<const Promise> promise_;
};

}  // namespace quillo
