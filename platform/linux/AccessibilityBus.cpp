#include "platform/linux/AccessibilityBus.hpp"

#include <algorithm>
#include <utility>

namespace quillo {
namespace {

constexpr auto accessibleInterface = "org.a11y.atspi.Accessible";
constexpr auto rootPath = "/org/a11y/atspi/accessible/root";

/// What the answers to one round of calls are collected in.
struct Round {
    std::vector<AccessibilityBus::Reply> replies;
    std::size_t outstanding = 0;
};

struct Slot {
    Round* round;
    std::size_t index;
};

void takeReply(GObject* connection, GAsyncResult* result, gpointer data) {
    const std::unique_ptr<Slot> slot(static_cast<Slot*>(data));
    GError* error = nullptr;
    auto& reply = slot->round->replies[slot->index];
    reply.value.reset(g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error));
    const GErrorPtr reason(error);
    reply.timedOut = g_error_matches(error, G_IO_ERROR, G_IO_ERROR_TIMED_OUT) != 0;
    --slot->round->outstanding;
}

int millisecondsUntil(AccessibilityBus::Deadline deadline) {
    const auto left = deadline - std::chrono::steady_clock::now();
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
}

void iterate() {
    g_main_context_iteration(g_main_context_get_thread_default(), true);
}

struct Connecting {
    GObjectPtr<GDBusConnection> connection;
    bool ended = false;
};

void takeConnection(GObject*, GAsyncResult* result, gpointer data) {
    auto& connecting = *static_cast<Connecting*>(data);
    GError* error = nullptr;
    connecting.connection.reset(g_dbus_connection_new_for_address_finish(result, &error));
    const GErrorPtr reason(error);
    connecting.ended = true;
}

/// Is cancelled at the deadline, or with `owner`. Its timer runs in the thread's default context.
class Limit {
  public:
    Limit(AccessibilityBus::Deadline deadline, GCancellable* owner)
        : owner_(owner),
          timer_(g_timeout_source_new(static_cast<guint>(std::max(0, millisecondsUntil(deadline))))) {
        const auto passOn = +[](GCancellable*, gpointer to) { g_cancellable_cancel(G_CANCELLABLE(to)); };
        link_ = g_cancellable_connect(owner, G_CALLBACK(passOn), cancellable.get(), nullptr);
        const auto expire = +[](gpointer to) -> gboolean {
            g_cancellable_cancel(G_CANCELLABLE(to));
            return G_SOURCE_REMOVE;
        };
        g_source_set_callback(timer_, expire, cancellable.get(), nullptr);
        g_source_attach(timer_, g_main_context_get_thread_default());
    }
    Limit(const Limit&) = delete;
    Limit& operator=(const Limit&) = delete;
    ~Limit() {
        g_source_destroy(timer_);
        g_source_unref(timer_);
        g_cancellable_disconnect(owner_, link_);
    }

    const GObjectPtr<GCancellable> cancellable{g_cancellable_new()};

  private:
    GCancellable* owner_;
    GSource* timer_;
    gulong link_ = 0;
};

std::vector<Accessible> accessiblesIn(GVariant* reply) {
    std::vector<Accessible> found;
    if (!reply) return found;
    const GVariantPtr list(g_variant_get_child_value(reply, 0));
    for (std::size_t i = 0; i < g_variant_n_children(list.get()); ++i) {
        const char *owner = nullptr, *path = nullptr;
        const GVariantPtr item(g_variant_get_child_value(list.get(), i));
        g_variant_get(item.get(), "(&s&o)", &owner, &path);
        if (g_dbus_is_unique_name(owner)) found.push_back({owner, path});
    }
    return found;
}

}  // namespace

std::unique_ptr<AccessibilityBus> AccessibilityBus::connect(const std::string& address,
                                                            GCancellable* cancellable, Deadline deadline) {
    if (!address.starts_with("unix:") || address.contains(';')) return nullptr;
    const Limit limit(deadline, cancellable);
    Connecting connecting;
    g_dbus_connection_new_for_address(
        address.c_str(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, limit.cancellable.get(), takeConnection, &connecting);
    while (!connecting.ended) iterate();
    if (!connecting.connection) return nullptr;
    return std::unique_ptr<AccessibilityBus>(
        new AccessibilityBus(std::move(connecting.connection), cancellable));
}

AccessibilityBus::~AccessibilityBus() {
    g_dbus_connection_close(connection_.get(), nullptr, nullptr, nullptr);
}

std::vector<AccessibilityBus::Reply> AccessibilityBus::callAll(std::vector<Call> calls, Deadline deadline) {
    Round round{std::vector<Reply>(calls.size()), 0};
    const int limit = millisecondsUntil(deadline);
    if (limit <= 0) {
        for (auto& reply : round.replies) reply.timedOut = true;
        return std::move(round.replies);
    }
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const auto& call = calls[i];
        const std::unique_ptr<GVariantType, decltype(&g_variant_type_free)> type(
            g_variant_type_new(call.replyType), g_variant_type_free);
        g_dbus_connection_call(connection_.get(), call.on.owner.c_str(), call.on.path.c_str(), call.interface,
                               call.method, call.arguments.get(), type.get(), G_DBUS_CALL_FLAGS_NO_AUTO_START,
                               limit, cancellable_, takeReply, new Slot{&round, i});
        ++round.outstanding;
    }
    // Each call ends by its own time limit, so this does.
    while (round.outstanding > 0) iterate();
    return std::move(round.replies);
}

std::vector<std::pair<Accessible, ProcessID>> AccessibilityBus::applications(Deadline deadline) {
    const auto all = std::move(children({{"org.a11y.atspi.Registry", rootPath}}, deadline).front());
    std::vector<Call> calls;
    for (const auto& application : all) {
        calls.push_back(
            {.on = {"org.freedesktop.DBus", "/org/freedesktop/DBus"},
             .interface = "org.freedesktop.DBus",
             .method = "GetConnectionUnixProcessID",
             .replyType = "(u)",
             .arguments = GVariantPtr(g_variant_ref_sink(g_variant_new("(s)", application.owner.c_str())))});
    }
    const auto replies = callAll(std::move(calls), deadline);
    std::vector<std::pair<Accessible, ProcessID>> found;
    for (std::size_t i = 0; i < all.size(); ++i) {
        guint32 pid = 0;
        if (!replies[i].value) continue;
        g_variant_get(replies[i].value.get(), "(u)", &pid);
        found.emplace_back(all[i], static_cast<ProcessID>(pid));
    }
    return found;
}

std::vector<std::vector<Accessible>> AccessibilityBus::children(const std::vector<Accessible>& of,
                                                                Deadline deadline) {
    std::vector<Call> calls;
    for (const auto& parent : of) {
        calls.push_back({.on = parent,
                         .interface = accessibleInterface,
                         .method = "GetChildren",
                         .replyType = "(a(so))"});
    }
    std::vector<std::vector<Accessible>> found;
    for (const auto& reply : callAll(std::move(calls), deadline))
        found.push_back(accessiblesIn(reply.value.get()));
    return found;
}

}  // namespace quillo
