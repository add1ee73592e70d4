// A system bus of the tests' own, and on it a login service that does what it is told.
#pragma once
#include <gio/gio.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/linux/GObjectPtr.hpp"
#include "tests/platform/x11/PrivateDesktop.hpp"

namespace quillo::x11test {

/// DBUS_SYSTEM_BUS_ADDRESS of this process names it.
class SystemBus {
  public:
    SystemBus();

    void end() { daemon_.end(); }
    bool has(const char* service);
    /// Null, and the test fails, when there is no answer.
    GVariantPtr call(const char* interface, const char* method, GVariant* arguments);
    /// The same, without waiting.
    void send(const char* interface, const char* method, GVariant* arguments);

  private:
    std::string address_;
    Process daemon_;
    GObjectPtr<GDBusConnection> connection_;
};

/// A bus that takes connections and says nothing, as one that is stopped does.
GObjectPtr<GSocketListener> silentBus(const std::string& path);

class MockedLogind {
  public:
    /// It is on the bus when this returns.
    explicit MockedLogind(SystemBus& bus);

    /// One right after the other.
    void emit(const std::vector<std::pair<const char*, bool>>& signals);
    /// Each as "what/who/mode"; a lock whose descriptor is closed everywhere is not listed.
    std::vector<std::string> inhibitors();
    void kill();

  private:
    SystemBus& bus_;
    Process process_;
};

}  // namespace quillo::x11test
