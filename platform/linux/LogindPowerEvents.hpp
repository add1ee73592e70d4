// Sleep and shutdown, as the login service tells them over the system bus.
#pragma once
#include <chrono>
#include <memory>
#include <thread>

#include "WindowEngine/support/Executor.hpp"
#include "platform/services/PowerObservers.hpp"

namespace quillo {

/// Holds one of the login service's delay locks at all times. An event hands it to the observers: the
/// computer waits until they have let it go, as long as the service allows (InhibitDelayMaxSec, five seconds
/// by itself). It is taken again when the computer has woken up or its shutdown was called off, and from a
/// login service that was started again. Where the lock was refused, events come all the same, without a
/// hold.
///
/// The bus is read on a thread of its own; nothing here waits for it but the destructor, a second at most.
class LogindPowerEvents final : public PowerEvents {
  public:
    /// `executor` must outlive it. `patience`: how long the bus may take to answer.
    explicit LogindPowerEvents(Executor& executor,
                               std::chrono::milliseconds patience = std::chrono::seconds(5));
    LogindPowerEvents(const LogindPowerEvents&) = delete;
    LogindPowerEvents& operator=(const LogindPowerEvents&) = delete;
    ~LogindPowerEvents() override;

    /// Not available until the login service was found, for moments after the start; and whenever it is gone.
    Capability capability() const override;
    std::unique_ptr<PowerObserver> observe(Observer observer) override;

  private:
    struct Shared;
    class Session;

    std::shared_ptr<PowerObservers> observers_ = std::make_shared<PowerObservers>();
    std::shared_ptr<Shared> shared_;  // also the thread's: one that hangs is left behind
    std::thread thread_;
};

}  // namespace quillo
