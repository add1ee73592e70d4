// A journey through a random desktop.
#pragma once
#include "tests/journeys/Journey.hpp"
#include "tests/journeys/RandomDesktop.hpp"

namespace quillo {

/// A journey drawn from a seed.
class RandomJourney : public Journey {
  public:
    explicit RandomJourney(std::uint64_t seed) : RandomJourney(seed, RandomDesktop(seed)) {}

    void disturb(bool displays) {
        random_.disturb(world(), displays);
        settle();
    }
    void disturbRecoverably() {
        random_.disturbRecoverably(world());
        settle();
    }
    /// The last display goes and comes again; its windows stay where they were brought.
    void undockAndDock() {
        if (world().displays().size() < 2) return;
        const simulated::SceneDisplay last = world().displays().back().scene;
        world().unplug(last.id);
        settle();
        world().plug(last);
        settle();
    }
    void layFaults() {
        for (const simulated::Fault& fault : random_.faults(scene())) lay(fault);
    }

  private:
    RandomJourney(std::uint64_t seed, RandomDesktop random)
        : Journey(random.scene(), seed), random_(random) {}  // as it is after it drew the scene

    RandomDesktop random_;
};

}  // namespace quillo
