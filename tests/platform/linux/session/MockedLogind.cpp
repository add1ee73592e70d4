#include "tests/platform/linux/session/MockedLogind.hpp"

#include <gio/gunixsocketaddress.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

namespace quillo::x11test {
namespace {

constexpr auto logind = "org.freedesktop.login1";

std::string writeConfiguration(const std::string& address) {
    const auto file = PrivateDesktop::home() / "system-bus.conf";
    std::ofstream(file) << "<busconfig><type>system</type><listen>" << address << "</listen>"
                        << "<policy context='default'><allow user='*'/><allow own='*'/>"
                        << "<allow send_destination='*'/><allow receive_sender='*'/></policy></busconfig>";
    return file.string();
}

GObjectPtr<GDBusConnection> connect(const std::string& address) {
    constexpr auto flags = static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                                             G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
    return GObjectPtr<GDBusConnection>(
        g_dbus_connection_new_for_address_sync(address.c_str(), flags, nullptr, nullptr, nullptr));
}

GVariant* emission(const std::pair<const char*, bool>& signal) {
    GVariant* argument = g_variant_new_variant(g_variant_new_boolean(signal.second));
    return g_variant_new("(sss@av)", "org.freedesktop.login1.Manager", signal.first, "b",
                         g_variant_new_array(G_VARIANT_TYPE_VARIANT, &argument, 1));
}

}  // namespace

SystemBus::SystemBus()
    : address_("unix:path=" + (PrivateDesktop::home() / "run/system-bus").string()),
      daemon_({"dbus-daemon", "--nofork", "--nosyslog", "--nopidfile",
               "--config-file=" + writeConfiguration(address_)}) {
    if (!waitFor([&] { return (connection_ = connect(address_)) != nullptr; }))
        throw std::runtime_error("no system bus");
    g_dbus_connection_set_exit_on_close(connection_.get(), false);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", address_.c_str(), 1);
}

bool SystemBus::has(const char* service) {
    const GVariantPtr reply(g_dbus_connection_call_sync(
        connection_.get(), "org.freedesktop.DBus", "/", "org.freedesktop.DBus", "NameHasOwner",
        g_variant_new("(s)", service), G_VARIANT_TYPE("(b)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    gboolean owned = false;
    if (reply) g_variant_get(reply.get(), "(b)", &owned);
    return owned != 0;
}

GVariantPtr SystemBus::call(const char* interface, const char* method, GVariant* arguments) {
    GError* error = nullptr;
    GVariantPtr reply(g_dbus_connection_call_sync(connection_.get(), logind, "/org/freedesktop/login1",
                                                  interface, method, arguments, nullptr,
                                                  G_DBUS_CALL_FLAGS_NONE, 10'000, nullptr, &error));
    const GErrorPtr reason(error);
    if (!reply) ADD_FAILURE() << method << ": " << reason->message;
    return reply;
}

void SystemBus::send(const char* interface, const char* method, GVariant* arguments) {
    g_dbus_connection_call(connection_.get(), logind, "/org/freedesktop/login1", interface, method, arguments,
                           nullptr, G_DBUS_CALL_FLAGS_NONE, 10'000, nullptr, nullptr, nullptr);
}

GObjectPtr<GSocketListener> silentBus(const std::string& path) {
    GObjectPtr<GSocketListener> listener(g_socket_listener_new());
    const GObjectPtr<GSocketAddress> address(g_unix_socket_address_new(path.c_str()));
    if (!g_socket_listener_add_address(listener.get(), address.get(), G_SOCKET_TYPE_STREAM,
                                       G_SOCKET_PROTOCOL_DEFAULT, nullptr, nullptr, nullptr))
        throw std::runtime_error("no socket");
    return listener;
}

MockedLogind::MockedLogind(SystemBus& bus)
    // The system's own Python, whatever PATH has: the mock is one of its packages.
    : bus_(bus), process_({"/usr/bin/python3", "-m", "dbusmock", "--template", "logind"}) {
    if (!waitFor([&] { return bus.has(logind); })) throw std::runtime_error("no mocked logind");
}

void MockedLogind::emit(const std::vector<std::pair<const char*, bool>>& signals) {
    for (const auto& signal : signals) bus_.send("org.freedesktop.DBus.Mock", "EmitSignal", emission(signal));
    inhibitors();  // it answers in order: now they are out
}

std::vector<std::string> MockedLogind::inhibitors() {
    std::vector<std::string> found;
    const auto reply = bus_.call("org.freedesktop.login1.Manager", "ListInhibitors", nullptr);
    if (!reply) return found;
    const GVariantPtr list(g_variant_get_child_value(reply.get(), 0));
    for (std::size_t i = 0; i < g_variant_n_children(list.get()); ++i) {
        const char *what = nullptr, *who = nullptr, *mode = nullptr;
        g_variant_get_child(list.get(), i, "(&s&ss&suu)", &what, &who, nullptr, &mode, nullptr, nullptr);
        found.push_back(std::string(what) + "/" + who + "/" + mode);
    }
    return found;
}

void MockedLogind::kill() {
    process_.kill();
    if (!waitFor([&] { return !bus_.has(logind); })) throw std::runtime_error("logind stayed on the bus");
}

}  // namespace quillo::x11test
