#include "platform/linux/BusRestoreEvents.hpp"

#include <gio/gio.h>

#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <optional>
#include <thread>

#include "platform/linux/GObjectPtr.hpp"

namespace quillo {
namespace {

constexpr auto ownService = "app.quillo.Quillo";
constexpr auto path = "/app/quillo/Quillo/Workspaces";
constexpr auto interface = "app.quillo.Workspaces1";

/// GLib would start a bus where it finds none.
std::optional<std::string> sessionBusAddress() {
    const char* const given = std::getenv("DBUS_SESSION_BUS_ADDRESS");
    if (given && *given) return given;
    const char* const runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code trouble;
    if (!runtime || !std::filesystem::is_socket(std::filesystem::path(runtime) / "bus", trouble))
        return std::nullopt;
    const GText escaped(g_dbus_address_escape_value((std::string(runtime) + "/bus").c_str()));
    return std::string("unix:path=") + escaped.get();
}

std::int64_t numberAt(GVariant* values, gsize place) {
    const GVariantPtr value(g_variant_get_child_value(values, place));
    return g_variant_get_int64(value.get());
}

std::string textAt(GVariant* values, gsize place) {
    const GVariantPtr value(g_variant_get_child_value(values, place));
    return g_variant_get_string(value.get(), nullptr);
}

std::vector<std::pair<std::string, std::int64_t>> totalsAt(GVariant* values, gsize place) {
    std::vector<std::pair<std::string, std::int64_t>> totals;
    const GVariantPtr entries(g_variant_get_child_value(values, place));
    GVariantIter each;
    g_variant_iter_init(&each, entries.get());
    const char* name = nullptr;
    GVariant* value = nullptr;
    while (g_variant_iter_next(&each, "{&sv}", &name, &value)) {
        const GVariantPtr owned(value);
        if (g_variant_is_of_type(value, G_VARIANT_TYPE_INT64))
            totals.emplace_back(name, g_variant_get_int64(value));
    }
    return totals;
}

/// Absent for signals of another name or shape.
std::optional<RestoreEvent> eventOf(std::string_view signal, GVariant* values) {
    using Kind = RestoreEvent::Kind;
    const auto is = [&](const char* name, const char* shape) {
        return signal == name && g_variant_is_of_type(values, G_VARIANT_TYPE(shape));
    };
    if (is("RestoreStarted", "(ssx)"))
        return RestoreEvent{.kind = Kind::started,
                            .id = textAt(values, 0),
                            .name = textAt(values, 1),
                            .windows = numberAt(values, 2)};
    if (is("RestoreProgress", "(sxx)"))
        return RestoreEvent{.kind = Kind::progressed,
                            .id = textAt(values, 0),
                            .name = {},
                            .windows = numberAt(values, 2),
                            .windowsDone = numberAt(values, 1)};
    if (!is("RestoreEnded", "(ssa{sv}b)")) return std::nullopt;
    const GVariantPtr cancelled(g_variant_get_child_value(values, 3));
    return RestoreEvent{.kind = Kind::ended,
                        .id = textAt(values, 0),
                        .name = textAt(values, 1),
                        .totals = totalsAt(values, 2),
                        .cancelled = g_variant_get_boolean(cancelled.get()) != 0};
}

class BusRestoreEvents final : public RestoreEvents {
  public:
    BusRestoreEvents(Executor& executor, Told told, std::string address)
        : executor_(executor),
          told_(std::make_shared<Told>(std::move(told))),
          address_(std::move(address)),
          thread_([this] { run(); }) {}
    ~BusRestoreEvents() override {
        {
            const std::lock_guard lock(mutex_);
            ending_ = true;
        }
        g_cancellable_cancel(cancellable_.get());
        g_main_context_wakeup(context_.get());
        thread_.join();
    }

  private:
    bool isEnding() {
        const std::lock_guard lock(mutex_);
        return ending_;
    }
    /// What is queued for the executor finds nobody once this has gone.
    void heard(const char* signal, GVariant* values) {
        std::optional<RestoreEvent> event = eventOf(signal, values);
        if (!event) return;
        executor_.post([told = std::weak_ptr(told_), event = *std::move(event)] {
            if (const auto listener = told.lock()) (*listener)(event);
        });
    }
    void run() {
        g_main_context_push_thread_default(context_.get());
        listen();
        while (g_main_context_iteration(context_.get(), false)) {
        }
        g_main_context_pop_thread_default(context_.get());
    }
    void listen() {
        GError* error = nullptr;
        const GObjectPtr<GDBusConnection> connection(g_dbus_connection_new_for_address_sync(
            address_.c_str(),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, cancellable_.get(), &error));
        const GErrorPtr reason(error);
        if (!connection) return;
        g_dbus_connection_set_exit_on_close(connection.get(), false);
        const guint subscription = g_dbus_connection_signal_subscribe(
            connection.get(), ownService, interface, nullptr, path, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
            [](GDBusConnection*, const char*, const char*, const char*, const char* signal,
               GVariant* parameters,
               gpointer self) { static_cast<BusRestoreEvents*>(self)->heard(signal, parameters); },
            this, nullptr);
        while (!isEnding()) g_main_context_iteration(context_.get(), true);
        g_dbus_connection_signal_unsubscribe(connection.get(), subscription);
        g_dbus_connection_close(connection.get(), nullptr, nullptr, nullptr);
    }

    Executor& executor_;
    std::shared_ptr<Told> told_;
    const std::string address_;
    const std::unique_ptr<GMainContext, decltype(&g_main_context_unref)> context_{g_main_context_new(),
                                                                                  g_main_context_unref};
    const GObjectPtr<GCancellable> cancellable_{g_cancellable_new()};
    std::mutex mutex_;
    bool ending_ = false;
    std::thread thread_;  // last: it works on the above
};

}  // namespace

std::unique_ptr<RestoreEvents> listenOnSessionBus(Executor& executor, RestoreEvents::Told told) {
    std::optional<std::string> address = sessionBusAddress();
    if (!address) return nullptr;
    return std::make_unique<BusRestoreEvents>(executor, std::move(told), *std::move(address));
}

}  // namespace quillo
