#include "platform/linux/LoginSession.hpp"

#include <gio/gio.h>

#include <condition_variable>
#include <mutex>
#include <thread>

#include "platform/linux/GObjectPtr.hpp"

namespace quillo {
namespace {

/// The session that the calling process belongs to; of one that belongs to none, as a service of the
/// person's, the session that the person sees.
constexpr auto sessionPath = "/org/freedesktop/login1/session/auto";

/// A connection of its own: nobody else's is waited for, and nothing is left of it.
bool askIfLocked(int limitMilliseconds) {
    const GText address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    if (!address) return false;
    const GObjectPtr<GDBusConnection> connection(g_dbus_connection_new_for_address_sync(
        address.get(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, nullptr, nullptr));
    if (!connection) return false;
    g_dbus_connection_set_exit_on_close(connection.get(), false);
    const GVariantPtr reply(g_dbus_connection_call_sync(
        connection.get(), "org.freedesktop.login1", sessionPath, "org.freedesktop.DBus.Properties", "Get",
        g_variant_new("(ss)", "org.freedesktop.login1.Session", "LockedHint"), G_VARIANT_TYPE("(v)"),
        G_DBUS_CALL_FLAGS_NO_AUTO_START, limitMilliseconds, nullptr, nullptr));
    g_dbus_connection_close_sync(connection.get(), nullptr, nullptr);
    if (!reply) return false;
    GVariant* held = nullptr;
    g_variant_get(reply.get(), "(v)", &held);
    const GVariantPtr value(held);
    return g_variant_is_of_type(value.get(), G_VARIANT_TYPE_BOOLEAN) && g_variant_get_boolean(value.get());
}

}  // namespace

struct LoginSession::Shared {
    std::mutex mutex;  // for all below
    std::condition_variable answered;
    bool asking = false, locked = false;
};

LoginSession::LoginSession(std::chrono::milliseconds patience)
    : patience_(patience), shared_(std::make_shared<Shared>()) {}
LoginSession::~LoginSession() = default;

bool LoginSession::locked() {
    std::unique_lock lock(shared_->mutex);
    if (!shared_->asking) {
        shared_->asking = true;
        std::thread([shared = shared_, limit = static_cast<int>(patience_.count())] {
            const bool locked = askIfLocked(limit);
            const std::lock_guard told(shared->mutex);
            shared->locked = locked;
            shared->asking = false;
            shared->answered.notify_all();
        }).detach();
    }
    shared_->answered.wait_for(lock, patience_, [this] { return !shared_->asking; });
    return shared_->locked;
}

}  // namespace quillo
