// The bus on which toolkits tell assistive programs of their windows' contents (AT-SPI), through plain GDBus
// calls: many are sent at once and their answers awaited together, each with a time limit, and nothing is
// kept of any application. Used from one thread, which makes `context` its default one.
#pragma once
#include <gio/gio.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "platform/linux/GObjectPtr.hpp"

namespace quillo {

/// An object of an application on the bus.
struct Accessible {
    std::string owner;  // unique name on the bus
    std::string path;
    bool operator==(const Accessible&) const = default;
};

class AccessibilityBus {
  public:
    using Deadline = std::chrono::steady_clock::time_point;

    struct Call {
        Accessible on;
        const char* interface = nullptr;
        const char* method = nullptr;
        const char* replyType = nullptr;
        GVariantPtr arguments{};  // none: no arguments
    };
    struct Reply {
        GVariantPtr value;      // null: no answer, an error, or one of another type
        bool timedOut = false;  // the application did not answer in time
    };

    /// Absent when nothing listens there, or what listens does not answer in time. Only sockets of this
    /// machine are tried, whatever the address says.
    static std::unique_ptr<AccessibilityBus> connect(const std::string& address, GCancellable* cancellable,
                                                     Deadline deadline);
    AccessibilityBus(const AccessibilityBus&) = delete;
    AccessibilityBus& operator=(const AccessibilityBus&) = delete;
    ~AccessibilityBus();

    bool alive() const { return !g_dbus_connection_is_closed(connection_.get()); }

    /// One reply for each call, in their order; returns at the deadline at the latest.
    std::vector<Reply> callAll(std::vector<Call> calls, Deadline deadline);

    /// The applications on the bus, each with its process.
    std::vector<std::pair<Accessible, ProcessID>> applications(Deadline deadline);
    /// One list for each, in their order; empty where there was no answer.
    std::vector<std::vector<Accessible>> children(const std::vector<Accessible>& of, Deadline deadline);

  private:
    AccessibilityBus(GObjectPtr<GDBusConnection> connection, GCancellable* cancellable)
        : connection_(std::move(connection)), cancellable_(cancellable) {}

    GObjectPtr<GDBusConnection> connection_;
    GCancellable* cancellable_;  // the owner's
};

}  // namespace quillo
