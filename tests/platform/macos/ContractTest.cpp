// The contract over the macOS core and the fakes of the system's functions.
#include "tests/platform/contract/ContractScene.hpp"
#include "tests/platform/contract/ContractSuite.hpp"
#include "tests/platform/macos/MacUnderTest.hpp"

namespace quillo {
namespace {

class MacContractDesktop final : public ContractDesktop {
  public:
    Platform platform() override { return mac_.platform(); }
    Loop& loop() override { return desktop_->executor(); }
    std::string editor() const override { return "org.example.editor"; }
    std::string launcher() const override { return "org.example.launcher"; }
    void vanish(std::string_view title) override {
        auto& world = desktop_->world();
        world.close(world.window(editor(), title)->number);
    }

  private:
    std::unique_ptr<SimulatedDesktop> desktop_ = SimulatedDesktop::create(contractScene, "scene").value();
    MacUnderTest mac_{*desktop_};
};

std::unique_ptr<ContractDesktop> makeDesktop() {
    return std::make_unique<MacContractDesktop>();
}

INSTANTIATE_TEST_SUITE_P(Mac, PlatformContract, testing::Values(&makeDesktop),
                         [](const auto&) { return "desktop"; });

}  // namespace
}  // namespace quillo
