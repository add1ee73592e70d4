// Whole saves and restores, with every fault and on random desktops, through the macOS core. The journeys are
// those of tests/journeys: what they expect is what they expect of the simulated desktop itself.
#include "tests/journeys/JourneyLayer.hpp"
#include "tests/platform/macos/MacUnderTest.hpp"

namespace quillo {
namespace {

class MacJourneyLayer final : public JourneyLayer {
  public:
    explicit MacJourneyLayer(SimulatedDesktop& desktop) : mac_(desktop) {}
    Platform platform() override { return mac_.platform(); }

  private:
    MacUnderTest mac_;
};

}  // namespace

std::unique_ptr<JourneyLayer> makeJourneyLayer(SimulatedDesktop& desktop) {
    return std::make_unique<MacJourneyLayer>(desktop);
}

}  // namespace quillo
