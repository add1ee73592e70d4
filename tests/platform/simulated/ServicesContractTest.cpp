// The contracts of the defaults and of hot keys over what stands for them in memory.
#include "WindowEngine/support/Loops.hpp"
#include "platform/simulated/MemoryDefaults.hpp"
#include "platform/simulated/SimulatedHotKeys.hpp"
#include "tests/platform/contract/DefaultsSuite.hpp"
#include "tests/platform/contract/HotKeysSuite.hpp"

namespace quillo {
namespace {

class KeptInMemory final : public DefaultsUnderTest {
  public:
    UserDefaults& defaults() override { return defaults_; }
    void refuse(bool refuses) override {
        defaults_.failure = refuses ? std::optional(Error{ErrorKind::noSpace, "full", 28}) : std::nullopt;
    }

  private:
    MemoryDefaults defaults_;
};

class SimulatedKeys final : public HotKeysUnderTest {
  public:
    HotKeyService& service() override { return keys_; }
    void press(const Combination& combination) override {
        keys_.press(combination.keyCode, combination.modifiers);
    }
    void take(const Combination& combination) override {
        keys_.taken.insert({combination.keyCode, combination.modifiers});
    }
    bool runUntil(const std::function<bool()>& condition) override {
        return executor_.runUntil(condition, std::chrono::seconds(1));
    }

  private:
    VirtualExecutor executor_;
    SimulatedHotKeys keys_{executor_};
};

INSTANTIATE_TEST_SUITE_P(Memory, DefaultsContract,
                         testing::Values(+[]() -> std::unique_ptr<DefaultsUnderTest> {
                             return std::make_unique<KeptInMemory>();
                         }));
INSTANTIATE_TEST_SUITE_P(Simulated, HotKeysContract,
                         testing::Values(+[]() -> std::unique_ptr<HotKeysUnderTest> {
                             return std::make_unique<SimulatedKeys>();
                         }));

}  // namespace
}  // namespace quillo
