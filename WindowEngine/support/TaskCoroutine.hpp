// Task<T>: the coroutine itself. See Task.hpp for the rules of writing tasks.
#pragma once
#include <coroutine>
#include <exception>
#include <optional>
#include <utility>

#include "WindowEngine/support/Context.hpp"
#include "WindowEngine/support/Outcome.hpp"

namespace quillo {

template <class T>
class Task;

namespace detail {

/// Hears of the end of a job's outermost task, which is suspended for good by then.
class TaskOwner {
  public:
    virtual void taskEnded() noexcept = 0;

  protected:
    ~TaskOwner() = default;
};

struct PromiseBase {
    Context context;
    std::coroutine_handle<> parent;  // the task that awaits this one; none for a job's outermost task
    TaskOwner* owner = nullptr;      // of a job's outermost task
    bool startsInline = false;       // still inside the parent's await_suspend

    struct FinalAwaiter {
        bool await_ready() const noexcept { return false; }
        template <class Promise>
        std::coroutine_handle<> await_suspend(std::coroutine_handle<Promise> ended) const noexcept {
            PromiseBase& promise = ended.promise();
            if (promise.owner) {
                promise.owner->taskEnded();
            } else if (!std::exchange(promise.startsInline, false) && promise.parent) {
                return promise.parent;
            }
            return std::noop_coroutine();
        }
        void await_resume() const noexcept {}
    };

    std::suspend_always initial_suspend() const noexcept { return {}; }
    FinalAwaiter final_suspend() const noexcept { return {}; }
    /// Only what knows about contexts can be awaited.
    template <class Awaitable>
    decltype(auto) await_transform(Awaitable&& awaitable) {
        return std::forward<Awaitable>(awaitable).awaiterIn(context);
    }
};

template <class T>
struct PromiseWithOutcome : PromiseBase {
    std::optional<Outcome<T>> outcome;

    Task<T> get_return_object() noexcept;
    void unhandled_exception() noexcept {
        try {
            throw;
        } catch (const Cancelled& cancelled) {
            outcome.emplace(cancelled);
        } catch (...) {
            outcome.emplace(std::current_exception());
        }
    }
};

template <class T>
struct Promise : PromiseWithOutcome<T> {
    template <class Value>
    void return_value(Value&& value) {
        this->outcome.emplace(std::in_place, std::forward<Value>(value));
    }
};

template <>
struct Promise<void> : PromiseWithOutcome<void> {
    void return_void() { outcome.emplace(std::in_place); }
};

}  // namespace detail

/// Lazy: the body starts when the task is awaited or given to a Job, and then knows its Context. Move-only,
/// awaited once. Destroying it destroys its suspended body.
template <class T = void>
class [[nodiscard]] Task {
  public:
    using promise_type = detail::Promise<T>;
    using Handle = std::coroutine_handle<promise_type>;

    explicit Task(Handle handle) noexcept : handle_(handle) {}
    Task(Task&& other) noexcept : handle_(std::exchange(other.handle_, {})) {}
    Task& operator=(Task&& other) noexcept {
        std::swap(handle_, other.handle_);
        return *this;
    }
    ~Task() {
        if (handle_) handle_.destroy();
    }

    Handle handle() const noexcept { return handle_; }

    class Awaiter {
      public:
        Awaiter(Task task, Context context) noexcept : task_(std::move(task)), context_(context) {}

        bool await_ready() const {
            context_.throwIfStopped();
            return false;
        }
        /// Starts the child inline: symmetric transfer is no tail call without optimisation, and a parent
        /// that awaits many children which end at once would grow the stack.
        bool await_suspend(std::coroutine_handle<> parent) noexcept {
            promise_type& child = task_.handle_.promise();
            child.context = context_;
            child.parent = parent;
            child.startsInline = true;
            task_.handle_.resume();
            // Nothing resumes the parent while `startsInline` is set, so this awaiter still stands.
            child.startsInline = false;
            return !task_.handle_.done();
        }
        T await_resume() { return task_.handle_.promise().outcome->take(); }

      private:
        Task task_;
        Context context_;
    };
    Awaiter awaiterIn(Context context) && noexcept { return Awaiter(std::move(*this), context); }

  private:
    Handle handle_;
};

template <class T>
Task<T> detail::PromiseWithOutcome<T>::get_return_object() noexcept {
    return Task<T>(Task<T>::Handle::from_promise(static_cast<Promise<T>&>(*this)));
}

template <class T>
class [[nodiscard]] Shielded {
  public:
    explicit Shielded(Task<T> task) noexcept : task_(std::move(task)) {}

    class Awaiter {
      public:
        Awaiter(Task<T> task, Context context) noexcept
            : shield_(context.stop, StopSource::Kind::shield),
              inner_(std::move(task), {context.executor, &shield_}) {}

        bool await_ready() const { return inner_.await_ready(); }
        bool await_suspend(std::coroutine_handle<> parent) noexcept { return inner_.await_suspend(parent); }
        T await_resume() { return inner_.await_resume(); }

      private:
        StopSource shield_;
        Task<T>::Awaiter inner_;
    };
    Awaiter awaiterIn(Context context) && noexcept { return Awaiter(std::move(task_), context); }

  private:
    Task<T> task_;
};

/// `co_await shielded(task)` runs what must finish (cleaning up, rolling back): it starts in a cancelled task
/// too, and a stop does not reach it.
template <class T>
Shielded<T> shielded(Task<T> task) {
    return Shielded<T>(std::move(task));
}

}  // namespace quillo
