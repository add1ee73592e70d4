// The contract over the simulated desktop, bare and behind the forwarding wrappers: a wrapper that dropped or
// mixed up a call would break the promise here.
#include "WindowEngine/services/ForwardingAccessibilityService.hpp"
#include "WindowEngine/services/ForwardingApplications.hpp"
#include "WindowEngine/services/ForwardingWindowServer.hpp"
#include "platform/simulated/SimulatedDesktop.hpp"
#include "tests/platform/contract/ContractScene.hpp"
#include "tests/platform/contract/ContractSuite.hpp"

namespace quillo {
namespace {

class SimulatedContractDesktop : public ContractDesktop {
  public:
    Platform platform() override { return desktop_->platform(); }
    Loop& loop() override { return desktop_->executor(); }
    std::string editor() const override { return "org.example.editor"; }
    std::string launcher() const override { return "org.example.launcher"; }
    void vanish(std::string_view title) override {
        auto& world = desktop_->world();
        world.close(world.window(editor(), title)->number);
    }

  private:
    std::unique_ptr<SimulatedDesktop> desktop_ = SimulatedDesktop::create(contractScene, "scene").value();
};

class ForwardedContractDesktop final : public SimulatedContractDesktop {
  public:
    Platform platform() override {
        return {plain_.executor, accessibility_, server_,   applications_,
                plain_.screens,  plain_.scripts, plain_.log};
    }

  private:
    Platform plain_ = SimulatedContractDesktop::platform();
    ForwardingAccessibilityService accessibility_{plain_.accessibility};
    ForwardingWindowServer server_{plain_.windowServer};
    ForwardingApplications applications_{plain_.applications};
};

template <class Desktop>
std::unique_ptr<ContractDesktop> makeDesktop() {
    return std::make_unique<Desktop>();
}

INSTANTIATE_TEST_SUITE_P(Simulated, PlatformContract, testing::Values(&makeDesktop<SimulatedContractDesktop>),
                         [](const auto&) { return "desktop"; });
INSTANTIATE_TEST_SUITE_P(Forwarded, PlatformContract, testing::Values(&makeDesktop<ForwardedContractDesktop>),
                         [](const auto&) { return "desktop"; });

}  // namespace
}  // namespace quillo
