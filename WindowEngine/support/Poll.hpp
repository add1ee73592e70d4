// Waiting for a state of the world.
#pragma once
#include <functional>
#include <memory>

#include "WindowEngine/support/ChangeWatch.hpp"

namespace quillo {

/// Asks at once, then every `interval` and when `changes` tells of one, for the last time at `limit`; whether
/// the condition came to hold. What it refers to must outlive the task. Cancellation throws.
inline Task<bool> pollUntil(std::function<bool()> condition, Duration interval, Duration limit,
                            std::unique_ptr<ChangeWatch> changes = std::make_unique<ChangeWatch>()) {
    const Context context = co_await quillo::context();
    const TimePoint deadline = context.executor->timeAfter(limit);
    for (;;) {
        co_await checkpoint();
        if (condition()) co_return true;
        if (context.now() >= deadline) co_return false;
        co_await changes->next(interval);
    }
}

}  // namespace quillo
