// Word that it is worth looking again, for whoever waits for a state of the world.
#pragma once
#include "WindowEngine/support/Task.hpp"

namespace quillo {

/// This one is told of nothing: only time passes. A layer that is told of changes derives its own.
class ChangeWatch {
  public:
    ChangeWatch() = default;
    ChangeWatch(const ChangeWatch&) = delete;
    ChangeWatch& operator=(const ChangeWatch&) = delete;
    virtual ~ChangeWatch() = default;

    /// Ends after `limit`, or earlier, and then with true, once something has changed since the watch began
    /// or since its last wait ended. It may be something else than what is waited for, and a change may go
    /// untold: callers look again in either case. One waits at a time. Cancellation throws.
    virtual Task<bool> next(Duration limit) {
        co_await sleepFor(limit);
        co_return false;
    }
};

}  // namespace quillo
