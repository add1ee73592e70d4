// Sleep, power-off and waking up, as the workspace object posts them.
#pragma once
#include <memory>

#include "WindowEngine/support/Executor.hpp"
#include "platform/services/PowerObservers.hpp"

namespace quillo {

/// The system gives nobody a hold. For sleep it waits, half a minute at most, while a handler runs; ours
/// hands the news on, so what an observer starts has what time is left. Main thread.
class MacPowerEvents final : public PowerEvents {
  public:
    /// `executor` must outlive it.
    explicit MacPowerEvents(Executor& executor);
    ~MacPowerEvents() override;

    Capability capability() const override { return Capability::available(); }
    std::unique_ptr<PowerObserver> observe(Observer observer) override;

  private:
    struct Subscriptions;
    std::shared_ptr<PowerObservers> observers_ = std::make_shared<PowerObservers>();
    std::unique_ptr<Subscriptions> subscriptions_;
};

}  // namespace quillo
