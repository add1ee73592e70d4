// The platform layer between a journey's engine and its desktop.
#pragma once
#include <cstdint>
#include <memory>
#include <string>

#include "platform/simulated/SimulatedDesktop.hpp"

namespace quillo {

class JourneyLayer {
  public:
    virtual ~JourneyLayer() = default;
    virtual Platform platform() = 0;
    /// The scene's name of a display that the platform identifies so.
    virtual std::string sceneDisplay(std::string displayID) { return displayID; }
};

/// One for each test program: the simulated layer itself, or another one over the same desktop.
std::unique_ptr<JourneyLayer> makeJourneyLayer(SimulatedDesktop& desktop);

/// How many random desktops are drawn unless QUILLO_SEEDS says.
extern const std::uint64_t usualSeeds;

}  // namespace quillo
