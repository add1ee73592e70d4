// Waiting for a state of the world that nobody announces.
#pragma once
#include <functional>

#include "WindowEngine/support/Task.hpp"

namespace quillo {

/// Asks at once, then every `interval`, for the last time at `limit`; whether the condition came to hold.
/// What it refers to must outlive the task. Cancellation throws.
inline Task<bool> pollUntil(std::function<bool()> condition, Duration interval, Duration limit) {
    const Context context = co_await quillo::context();
    const TimePoint deadline = context.executor->timeAfter(limit);
    for (;;) {
        co_await checkpoint();
        if (condition()) co_return true;
        if (context.now() >= deadline) co_return false;
        co_await sleepFor(interval);
    }
}

}  // namespace quillo
