// What a task knows about where it runs.
#pragma once
#include <coroutine>

#include "WindowEngine/support/Executor.hpp"

namespace quillo {

/// Handed down from task to task. Inside a task neither pointer is null.
struct Context {
    Executor* executor = nullptr;
    StopSource* stop = nullptr;

    bool stopRequested() const noexcept { return stop && stop->stopRequested(); }
    void throwIfStopped() const {
        if (stopRequested()) throw Cancelled{};
    }
    TimePoint now() const noexcept { return executor->now(); }
};

/// An awaiter that is ready at once.
template <class Answer>
struct ImmediateAwaiter {
    Context context;
    bool await_ready() const noexcept { return true; }
    void await_suspend(std::coroutine_handle<>) const noexcept {}
    auto await_resume() const { return Answer{}(context); }
};

struct ContextRequest {
    struct Answer {
        Context operator()(const Context& context) const noexcept { return context; }
    };
    ImmediateAwaiter<Answer> awaiterIn(Context context) const noexcept { return {context}; }
};
/// `co_await context()` gives the task's Context and never suspends.
inline ContextRequest context() noexcept {
    return {};
}

struct Checkpoint {
    struct Answer {
        void operator()(const Context& context) const { context.throwIfStopped(); }
    };
    ImmediateAwaiter<Answer> awaiterIn(Context context) const noexcept { return {context}; }
};
/// `co_await checkpoint()` throws Cancelled in a cancelled task and never suspends.
inline Checkpoint checkpoint() noexcept {
    return {};
}

}  // namespace quillo
