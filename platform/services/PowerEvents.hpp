// The computer is about to sleep or to be switched off, or has woken up.
#pragma once
#include <cstdint>
#include <functional>
#include <memory>

#include "WindowEngine/services/Capability.hpp"

namespace quillo {

enum class PowerEvent : std::uint8_t { willSleep, willPowerOff, didWake };

/// While one exists, the system waits with what it is about to do, for as long as its own limit allows (some
/// seconds). Released by the last copy's destructor, on any thread.
using PowerHold = std::shared_ptr<void>;

/// Ends the observation when it goes.
class PowerObserver {
  public:
    virtual ~PowerObserver() = default;
};

/// For the executor's thread; observers are called on it, in turns of their own.
class PowerEvents {
  public:
    /// `hold` may be null, where the system does not wait for anybody, and is of didWake.
    using Observer = std::function<void(PowerEvent event, PowerHold hold)>;

    virtual ~PowerEvents() = default;

    virtual Capability capability() const = 0;
    virtual std::unique_ptr<PowerObserver> observe(Observer observer) = 0;
};

}  // namespace quillo
