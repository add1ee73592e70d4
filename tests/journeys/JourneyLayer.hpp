// The platform layer between a journey's engine and its desktop.
#pragma once
#include <memory>

#include "platform/simulated/SimulatedDesktop.hpp"

namespace quillo {

class JourneyLayer {
  public:
    virtual ~JourneyLayer() = default;
    virtual Platform platform() = 0;
};

/// One for each test program: the simulated layer itself, or another one over the same desktop.
std::unique_ptr<JourneyLayer> makeJourneyLayer(SimulatedDesktop& desktop);

}  // namespace quillo
