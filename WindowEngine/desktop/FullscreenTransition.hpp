// Turns the platform's unreliable full-screen attribute into a verified transition.
#pragma once
#include <functional>
#include <optional>

#include "WindowEngine/support/Task.hpp"

namespace quillo::FullscreenTransition {

struct Steps {
    std::function<std::optional<bool>()> read;  // the state now; absent when it cannot be read
    std::function<bool()> request;              // asks for the target; whether that was accepted
    std::function<Task<void>()> pause;          // waits one polling interval
};

/// True once three consecutive readings agree with `target`: the attribute flips back and forth while the
/// system animates. False on refusal or after `timeout` seconds. At most three requests are made, a repeated
/// one not before `retryDelay` seconds after the last.
Task<bool> apply(bool target, double timeout, double retryDelay, Steps steps);

}  // namespace quillo::FullscreenTransition
