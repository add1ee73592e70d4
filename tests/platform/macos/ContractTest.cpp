// The contract over the macOS core and the fakes of the system's functions.
#include "platform/macos/MacAccessibility.hpp"
#include "platform/macos/fakes/FakeAccessibility.hpp"
#include "tests/platform/contract/ContractScene.hpp"
#include "tests/platform/contract/ContractSuite.hpp"
#include "tests/platform/macos/MacTest.hpp"

namespace quillo {
namespace {

/// The services of the core where there are any, for the rest the simulated ones.
class MacContractDesktop final : public ContractDesktop {
  public:
    MacContractDesktop() {
        mac_->part<fakes::FakeAccessibility>();
        accessibility_.emplace(&fakes::FakeMac::symbol);
    }
    Platform platform() override {
        const Platform simulated = desktop_->platform();
        return {simulated.executor, *accessibility_,   simulated.windowServer, simulated.applications,
                simulated.screens,  simulated.scripts, simulated.log};
    }
    Loop& loop() override { return desktop_->executor(); }
    std::string editor() const override { return "org.example.editor"; }
    std::string launcher() const override { return "org.example.launcher"; }
    void vanish(std::string_view title) override {
        auto& world = desktop_->world();
        world.close(world.window(editor(), title)->number);
    }

  private:
    const LeakCheck leaks_;  // first: looks when all else is gone
    std::unique_ptr<SimulatedDesktop> desktop_ = SimulatedDesktop::create(contractScene, "scene").value();
    std::optional<fakes::FakeMac> mac_{std::in_place, *desktop_};
    std::optional<MacAccessibility> accessibility_;
};

std::unique_ptr<ContractDesktop> makeDesktop() {
    return std::make_unique<MacContractDesktop>();
}

INSTANTIATE_TEST_SUITE_P(Mac, PlatformContract, testing::Values(&makeDesktop),
                         [](const auto&) { return "desktop"; });

}  // namespace
}  // namespace quillo
