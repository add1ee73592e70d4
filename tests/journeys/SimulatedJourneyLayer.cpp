#include "tests/journeys/JourneyLayer.hpp"

namespace quillo {
namespace {

class SimulatedJourneyLayer final : public JourneyLayer {
  public:
    explicit SimulatedJourneyLayer(SimulatedDesktop& desktop) : desktop_(desktop) {}
    Platform platform() override { return desktop_.platform(); }

  private:
    SimulatedDesktop& desktop_;
};

}  // namespace

constinit const std::uint64_t usualSeeds = 100;

std::unique_ptr<JourneyLayer> makeJourneyLayer(SimulatedDesktop& desktop) {
    return std::make_unique<SimulatedJourneyLayer>(desktop);
}

}  // namespace quillo
