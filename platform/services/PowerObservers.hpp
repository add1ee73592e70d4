// Who wants to hear of power events: what the layers keep observers in.
#pragma once
#include "platform/services/Listeners.hpp"
#include "platform/services/PowerEvents.hpp"

namespace quillo {

class PowerObservers : public Listeners<PowerEvents::Observer, PowerObserver> {
  public:
    void tell(PowerEvent event, const PowerHold& hold) const {
        for (const auto& entry : snapshot()) {
            const auto observer = *entry;  // survives the end of its observation while it runs
            if (observer) observer(event, hold);
        }
    }
};

}  // namespace quillo
