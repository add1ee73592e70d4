// Power events that a test sends.
#pragma once
#include <memory>
#include <utility>

#include "WindowEngine/support/Executor.hpp"
#include "platform/services/PowerObservers.hpp"

namespace quillo {

class SimulatedPowerEvents final : public PowerEvents {
  public:
    explicit SimulatedPowerEvents(Executor& executor) : executor_(executor) {}

    Capability capability() const override { return Capability::available(); }
    std::unique_ptr<PowerObserver> observe(Observer observer) override {
        return observers_->add(std::move(observer));
    }

    /// Tells the observers in a turn to come. What it returns has expired when the last of them has let the
    /// event go, and the computer may sleep.
    std::weak_ptr<void> emit(PowerEvent event) {
        PowerHold hold = std::make_shared<PowerEvent>(event);
        std::weak_ptr<void> held = hold;
        executor_.post([observers = std::weak_ptr(observers_), event, hold = std::move(hold)] {
            if (const auto list = observers.lock()) list->tell(event, hold);
        });
        return held;
    }

  private:
    Executor& executor_;
    std::shared_ptr<PowerObservers> observers_ = std::make_shared<PowerObservers>();
};

}  // namespace quillo
