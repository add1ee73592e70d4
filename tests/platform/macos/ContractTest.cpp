// The contract over the macOS core and the fakes of the system's functions.
#include "tests/platform/contract/ContractScene.hpp"
#include "tests/platform/macos/MacUnderTest.hpp"

namespace quillo {
namespace {

class MacContractDesktop final : public SceneContractDesktop {
  public:
    Platform platform() override { return mac_.platform(); }

  private:
    MacUnderTest mac_{*desktop_};
};

INSTANTIATE_TEST_SUITE_P(Mac, PlatformContract, testing::Values(&makeContractDesktop<MacContractDesktop>),
                         [](const auto&) { return "desktop"; });

}  // namespace
}  // namespace quillo
