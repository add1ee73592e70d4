// Desktops, disturbances and faults drawn from a seed. The same seed draws the same.
#pragma once
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "platform/simulated/World.hpp"

namespace quillo {

class RandomDesktop {
  public:
    explicit RandomDesktop(std::uint64_t seed) : random_(seed) {}

    simulated::Scene scene();
    /// Moves, resizes, minimizes, closes, quits, removes desktops; with `displays` also unplugs, exchanges or
    /// resizes displays.
    void disturb(simulated::World& world, bool displays);
    /// The same without closing a window that nothing could bring back.
    void disturbRecoverably(simulated::World& world);
    std::vector<simulated::Fault> faults(const simulated::Scene& scene);

  private:
    std::int64_t number(std::int64_t from, std::int64_t to) {
        return std::uniform_int_distribution(from, to)(random_);
    }
    bool chance(int percent) { return number(1, 100) <= percent; }
    Rect frameOn(const Rect& bounds);
    simulated::SceneWindow window(const simulated::Scene& scene, std::string title);
    simulated::SceneApplication application(const simulated::Scene& scene, std::int64_t index);
    void addTabs(simulated::SceneApplication& application);
    void addDocuments(simulated::SceneApplication& application);
    simulated::SceneApplication browser(const simulated::Scene& scene, std::string identifier);
    simulated::SceneApplication fileManager(const simulated::Scene& scene);
    void disturb(simulated::World& world, WindowNumber number);
    void disturbAll(simulated::World& world);
    void disturbDesktops(simulated::World& world);
    void disturbDisplays(simulated::World& world);

    std::mt19937_64 random_;
    bool recoverable_ = false;
};

/// Until one fails: the one that QUILLO_SEED names, or as many as QUILLO_SEEDS or else `usual` says.
inline void eachSeed(std::uint64_t usual, void (*check)(std::uint64_t seed)) {
    const char* one = std::getenv("QUILLO_SEED");
    const char* count = std::getenv("QUILLO_SEEDS");
    const std::uint64_t first = one ? std::strtoull(one, nullptr, 10) : 1;
    const std::uint64_t last = one ? first : count ? std::strtoull(count, nullptr, 10) : usual;
    for (std::uint64_t seed = first; seed <= last && !testing::Test::HasFailure(); ++seed) {
        SCOPED_TRACE("QUILLO_SEED=" + std::to_string(seed));
        check(seed);
    }
}

}  // namespace quillo
