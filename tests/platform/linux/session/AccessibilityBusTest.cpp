// Connecting to the bus of the accessibility interfaces; what is read over it is tested with real
// applications.
#include <gtest/gtest.h>

#include "platform/linux/AccessibilityBus.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/platform/linux/session/MockedLogind.hpp"

namespace quillo::x11 {
namespace {

using namespace std::chrono_literals;

TEST(AccessibilityBusTest, OneThatDoesNotAnswerIsGivenUpAtTheDeadline) {
    const TemporaryDirectory directory;
    const std::string path = directory.path() / "bus";
    const auto silent = x11test::silentBus(path);
    const GObjectPtr<GCancellable> owner(g_cancellable_new());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(AccessibilityBus::connect("unix:path=" + path, owner.get(), start + 50ms));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 50ms);  // it was waited for, not refused
    g_cancellable_cancel(owner.get());
    EXPECT_FALSE(AccessibilityBus::connect("unix:path=" + path, owner.get(), start + 24h));
}

}  // namespace
}  // namespace quillo::x11
