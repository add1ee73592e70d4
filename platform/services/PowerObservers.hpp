// Who wants to hear of power events: what the layers keep observers in.
#pragma once
#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "platform/services/PowerEvents.hpp"

namespace quillo {

/// For the executor's thread. An observer may end any observation, its own included, while it is told; an
/// observation may outlive this list.
class PowerObservers {
  public:
    [[nodiscard]] std::unique_ptr<PowerObserver> add(PowerEvents::Observer observer) {
        auto entry = std::make_shared<Entry>(std::move(observer));
        entries_->push_back(entry);
        return std::make_unique<Observation>(entries_, std::move(entry));
    }

    void tell(PowerEvent event, const PowerHold& hold) {
        const auto entries = *entries_;
        for (const auto& entry : entries) {
            const auto observer = entry->observer;
            if (observer) observer(event, hold);
        }
    }

  private:
    struct Entry {
        explicit Entry(PowerEvents::Observer given) : observer(std::move(given)) {}
        PowerEvents::Observer observer;  // empty once the observation has ended
    };
    using Entries = std::vector<std::shared_ptr<Entry>>;

    struct Observation final : PowerObserver {
        Observation(std::weak_ptr<Entries> list, std::shared_ptr<Entry> mine)
            : entries(std::move(list)), entry(std::move(mine)) {}
        Observation(const Observation&) = delete;
        Observation& operator=(const Observation&) = delete;
        ~Observation() override {
            entry->observer = nullptr;
            if (const auto list = entries.lock()) std::erase(*list, entry);
        }
        std::weak_ptr<Entries> entries;
        std::shared_ptr<Entry> entry;
    };

    std::shared_ptr<Entries> entries_ = std::make_shared<Entries>();
};

}  // namespace quillo
