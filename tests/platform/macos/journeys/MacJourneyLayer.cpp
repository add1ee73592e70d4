// Whole saves and restores, on random desktops and with random faults, through the macOS core. The journeys
// are those of tests/journeys: what they expect is what they expect of the simulated desktop itself.
#include "tests/journeys/JourneyLayer.hpp"
#include "tests/platform/macos/MacUnderTest.hpp"

namespace quillo {
namespace {

class MacJourneyLayer final : public JourneyLayer {
  public:
    explicit MacJourneyLayer(SimulatedDesktop& desktop) : mac_(desktop) {}
    Platform platform() override { return mac_.platform(); }
    std::string sceneDisplay(std::string displayID) override {
        return fakes::FakeDisplays::sceneNameOf(displayID);
    }

  private:
    MacUnderTest mac_;
};

}  // namespace

constinit const std::uint64_t usualSeeds = 30;  // each takes longer than on the simulated layer itself

std::unique_ptr<JourneyLayer> makeJourneyLayer(SimulatedDesktop& desktop) {
    return std::make_unique<MacJourneyLayer>(desktop);
}

}  // namespace quillo
