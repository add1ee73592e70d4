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
    std::string sceneDisplay(std::string displayID) override {
        return fakes::FakeDisplays::sceneNameOf(displayID);
    }

  private:
    MacUnderTest mac_;
};

}  // namespace

// Of the notification that opens the overview no answer is known.
constinit const LayerWords layerWords{
    .launchRefused = "the system refused (error -10810)",
    .windowRefused = "the system refused (error -10810)",
    .overviewRefused = "Mission Control did not expose its Add Desktop button"};

constinit const std::uint64_t usualSeeds = 30;  // each takes longer than on the simulated layer itself

std::unique_ptr<JourneyLayer> makeJourneyLayer(SimulatedDesktop& desktop) {
    return std::make_unique<MacJourneyLayer>(desktop);
}

}  // namespace quillo
