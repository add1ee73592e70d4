// Connecting to the bus of the accessibility interfaces; what is read over it is tested with real
// applications.
#include <gio/gunixsocketaddress.h>
#include <gtest/gtest.h>

#include "platform/linux/AccessibilityBus.hpp"
#include "tests/TemporaryDirectory.hpp"

namespace quillo::x11 {
namespace {

using namespace std::chrono_literals;

/// A bus that takes connections and says nothing, as one that is stopped does.
TEST(AccessibilityBusTest, OneThatDoesNotAnswerIsGivenUpAtTheDeadline) {
    const TemporaryDirectory directory;
    const std::string path = directory.path() / "bus";
    const GObjectPtr<GSocketListener> listener(g_socket_listener_new());
    const GObjectPtr<GSocketAddress> address(g_unix_socket_address_new(path.c_str()));
    ASSERT_TRUE(g_socket_listener_add_address(listener.get(), address.get(), G_SOCKET_TYPE_STREAM,
                                              G_SOCKET_PROTOCOL_DEFAULT, nullptr, nullptr, nullptr));
    const GObjectPtr<GCancellable> owner(g_cancellable_new());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(AccessibilityBus::connect("unix:path=" + path, owner.get(), start + 50ms));
    EXPECT_GE(std::chrono::steady_clock::now() - start, 50ms);  // it was waited for, not refused
    g_cancellable_cancel(owner.get());
    EXPECT_FALSE(AccessibilityBus::connect("unix:path=" + path, owner.get(), start + 24h));
}

}  // namespace
}  // namespace quillo::x11
