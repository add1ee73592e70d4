// The contract over the simulated desktop, bare and behind the forwarding wrappers: a wrapper that dropped or
// mixed up a call would break the promise here.
#include "WindowEngine/services/ForwardingAccessibilityService.hpp"
#include "WindowEngine/services/ForwardingApplications.hpp"
#include "WindowEngine/services/ForwardingWindowServer.hpp"
#include "tests/platform/contract/ContractScene.hpp"

namespace quillo {
namespace {

class SimulatedContractDesktop : public SceneContractDesktop {
  public:
    Platform platform() override { return desktop_->platform(); }
};

class ForwardedContractDesktop final : public SimulatedContractDesktop {
  public:
    Platform platform() override {
        return {plain_.executor, accessibility_,      server_,   applications_, plain_.screens,
                plain_.scripts,  plain_.browserFiles, plain_.log};
    }

  private:
    Platform plain_ = SimulatedContractDesktop::platform();
    ForwardingAccessibilityService accessibility_{plain_.accessibility};
    ForwardingWindowServer server_{plain_.windowServer};
    ForwardingApplications applications_{plain_.applications};
};

INSTANTIATE_TEST_SUITE_P(Simulated, PlatformContract,
                         testing::Values(&makeContractDesktop<SimulatedContractDesktop>),
                         [](const auto&) { return "desktop"; });
INSTANTIATE_TEST_SUITE_P(Forwarded, PlatformContract,
                         testing::Values(&makeContractDesktop<ForwardedContractDesktop>),
                         [](const auto&) { return "desktop"; });

}  // namespace
}  // namespace quillo
