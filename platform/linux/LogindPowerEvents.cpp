#include "platform/linux/LogindPowerEvents.hpp"

#include <gio/gio.h>
#include <gio/gunixfdlist.h>

#include <array>
#include <condition_variable>
#include <mutex>
#include <string>
#include <utility>

#include "platform/linux/GObjectPtr.hpp"
#include "platform/posix/Descriptor.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr auto service = "org.freedesktop.login1";
constexpr auto managerPath = "/org/freedesktop/login1";
constexpr auto managerInterface = "org.freedesktop.login1.Manager";
constexpr auto longestEnd = 1s;

/// What the service prepares for, by its signals.
struct Preparation {
    const char* signal;
    PowerEvent event;
};
constexpr std::array preparations{Preparation{"PrepareForSleep", PowerEvent::willSleep},
                                  Preparation{"PrepareForShutdown", PowerEvent::willPowerOff}};

Capability without(const std::string& what) {
    return Capability::unavailable(what + ", so Quillo cannot save the session before sleep and shutdown.");
}

}  // namespace

/// Between the executor's thread and the bus's.
struct LogindPowerEvents::Shared {
    Shared(Executor& given, const std::shared_ptr<PowerObservers>& list, std::chrono::milliseconds limit)
        : executor(given), observers(list), patience(limit) {}

    Executor& executor;
    std::weak_ptr<PowerObservers> observers;
    const std::chrono::milliseconds patience;
    const std::unique_ptr<GMainContext, decltype(&g_main_context_unref)> context{g_main_context_new(),
                                                                                 g_main_context_unref};
    std::mutex mutex;  // for all below
    std::condition_variable changed;
    Capability capability = without("The system's login service has not answered yet");
    bool ending = false, ended = false;

    bool isEnding() {
        const std::lock_guard lock(mutex);
        return ending;
    }
    void become(Capability now) {
        const std::lock_guard lock(mutex);
        capability = std::move(now);
    }
    /// The executor may be gone as soon as the end has begun.
    void tell(PowerEvent event, PowerHold hold) {
        const std::lock_guard lock(mutex);
        if (ending) return;
        executor.post([observers = observers, event, hold = std::move(hold)] {
            if (const auto list = observers.lock()) list->tell(event, hold);
        });
    }
    void run();
};

/// One connection to the bus, on its own thread.
class LogindPowerEvents::Session {
  public:
    explicit Session(Shared& shared) : shared_(shared) { connect(); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    ~Session();

    bool isOver() const { return over_; }

  private:
    using Each = std::array<bool, preparations.size()>;
    static constexpr Each none{};

    void connect();
    void connected(GAsyncResult* result);
    void watch();
    void appeared();
    void vanished();
    void prepare(const char* signal, bool begins);
    void tellWithHold();
    void inhibit();
    void inhibited(GAsyncResult* result);
    void giveUp(const std::string& why);
    /// What was asked for but has not answered; each ends soon once it is cancelled.
    void finishOutstanding();

    Shared& shared_;
    GObjectPtr<GCancellable> cancellable_{g_cancellable_new()};
    GObjectPtr<GDBusConnection> connection_;
    std::unique_ptr<GSource, decltype(&g_source_unref)> connectLimit_{nullptr, g_source_unref};
    std::array<guint, preparations.size()> subscriptions_{};
    guint nameWatch_ = 0;
    int outstanding_ = 0, inhibiting_ = 0;  // questions
    Each preparing_{}, untold_{};
    Descriptor inhibitor_;
    bool over_ = false;
};

void LogindPowerEvents::Session::connect() {
    const GText address(g_dbus_address_get_for_bus_sync(G_BUS_TYPE_SYSTEM, nullptr, nullptr));
    if (!address) return giveUp("No system bus is known");
    connectLimit_.reset(g_timeout_source_new(static_cast<guint>(shared_.patience.count())));
    g_source_set_callback(
        connectLimit_.get(),
        [](gpointer session) -> gboolean {
            g_cancellable_cancel(static_cast<Session*>(session)->cancellable_.get());
            return G_SOURCE_REMOVE;
        },
        this, nullptr);
    g_source_attach(connectLimit_.get(), shared_.context.get());
    ++outstanding_;
    g_dbus_connection_new_for_address(
        address.get(),
        static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                          G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
        nullptr, cancellable_.get(),
        [](GObject*, GAsyncResult* result, gpointer session) {
            static_cast<Session*>(session)->connected(result);
        },
        this);
}

void LogindPowerEvents::Session::connected(GAsyncResult* result) {
    --outstanding_;
    g_source_destroy(connectLimit_.get());
    GError* error = nullptr;
    connection_.reset(g_dbus_connection_new_for_address_finish(result, &error));
    const GErrorPtr reason(error);
    if (!connection_) return giveUp("No system bus answers");
    g_dbus_connection_set_exit_on_close(connection_.get(), false);
    watch();
}

void LogindPowerEvents::Session::watch() {
    for (std::size_t i = 0; i < preparations.size(); ++i) {
        subscriptions_[i] = g_dbus_connection_signal_subscribe(
            connection_.get(), service, managerInterface, preparations[i].signal, managerPath, nullptr,
            G_DBUS_SIGNAL_FLAGS_NONE,
            [](GDBusConnection*, const char*, const char*, const char*, const char* signal,
               GVariant* parameters, gpointer session) {
                if (!g_variant_is_of_type(parameters, G_VARIANT_TYPE("(b)"))) return;
                gboolean begins = false;
                g_variant_get(parameters, "(b)", &begins);
                static_cast<Session*>(session)->prepare(signal, begins != 0);
            },
            this, nullptr);
    }
    nameWatch_ = g_bus_watch_name_on_connection(
        connection_.get(), service, G_BUS_NAME_WATCHER_FLAGS_AUTO_START,
        [](GDBusConnection*, const char*, const char*, gpointer session) {
            static_cast<Session*>(session)->appeared();
        },
        [](GDBusConnection*, const char*, gpointer session) { static_cast<Session*>(session)->vanished(); },
        this, nullptr);
}

void LogindPowerEvents::Session::appeared() {
    preparing_ = untold_ = none;
    shared_.become(Capability::available());
    inhibit();
}

void LogindPowerEvents::Session::vanished() {
    inhibitor_ = Descriptor();
    preparing_ = untold_ = none;
    if (g_dbus_connection_is_closed(connection_.get())) return giveUp("The system bus has ended");
    shared_.become(without("The system's login service does not run"));
}

void LogindPowerEvents::Session::prepare(const char* signal, bool begins) {
    if (!begins && signal == std::string_view(preparations[0].signal))
        shared_.tell(PowerEvent::didWake, nullptr);
    for (std::size_t i = 0; i < preparations.size(); ++i) {
        if (signal == std::string_view(preparations[i].signal)) preparing_[i] = untold_[i] = begins;
    }
    tellWithHold();
    if (preparing_ == none && !inhibitor_ && inhibiting_ == 0) inhibit();
}

void LogindPowerEvents::Session::tellWithHold() {
    // A lock that was asked for may have been given before this event began and yet be heard of after it.
    if (untold_ == none || inhibiting_ > 0) return;
    auto inhibitor = std::exchange(inhibitor_, Descriptor());
    const PowerHold hold = inhibitor ? std::make_shared<Descriptor>(std::move(inhibitor)) : nullptr;
    for (std::size_t i = 0; i < preparations.size(); ++i) {
        if (std::exchange(untold_[i], false)) shared_.tell(preparations[i].event, hold);
    }
}

void LogindPowerEvents::Session::inhibit() {
    ++outstanding_;
    ++inhibiting_;
    g_dbus_connection_call_with_unix_fd_list(
        connection_.get(), service, managerPath, managerInterface, "Inhibit",
        g_variant_new("(ssss)", "sleep:shutdown", "Quillo", "The session is being saved", "delay"),
        G_VARIANT_TYPE("(h)"), G_DBUS_CALL_FLAGS_NO_AUTO_START, static_cast<int>(shared_.patience.count()),
        nullptr, cancellable_.get(),
        [](GObject*, GAsyncResult* result, gpointer session) {
            static_cast<Session*>(session)->inhibited(result);
        },
        this);
}

void LogindPowerEvents::Session::inhibited(GAsyncResult* result) {
    --outstanding_;
    --inhibiting_;
    GUnixFDList* list = nullptr;
    GError* error = nullptr;
    const GVariantPtr reply(
        g_dbus_connection_call_with_unix_fd_list_finish(connection_.get(), &list, result, &error));
    const GErrorPtr reason(error);
    const GObjectPtr<GUnixFDList> descriptors(list);
    gint32 index = -1;
    if (reply && descriptors) g_variant_get(reply.get(), "(h)", &index);
    if (index >= 0 && index < g_unix_fd_list_get_length(descriptors.get()))
        inhibitor_ = Descriptor(g_unix_fd_list_get(descriptors.get(), index, nullptr));
    tellWithHold();
}

void LogindPowerEvents::Session::giveUp(const std::string& why) {
    shared_.become(without(why));
    over_ = true;
}

void LogindPowerEvents::Session::finishOutstanding() {
    g_cancellable_cancel(cancellable_.get());
    while (outstanding_ > 0) g_main_context_iteration(shared_.context.get(), true);
}

LogindPowerEvents::Session::~Session() {
    if (nameWatch_ != 0) g_bus_unwatch_name(nameWatch_);
    for (const guint subscription : subscriptions_) {
        if (subscription != 0) g_dbus_connection_signal_unsubscribe(connection_.get(), subscription);
    }
    finishOutstanding();
    if (connectLimit_) g_source_destroy(connectLimit_.get());
    if (connection_) g_dbus_connection_close(connection_.get(), nullptr, nullptr, nullptr);
    // GLib frees what belonged to the subscriptions in turns of this context.
    while (g_main_context_iteration(shared_.context.get(), false)) {
    }
}

void LogindPowerEvents::Shared::run() {
    g_main_context_push_thread_default(context.get());
    {
        Session session(*this);
        while (!isEnding() && !session.isOver()) g_main_context_iteration(context.get(), true);
    }
    g_main_context_pop_thread_default(context.get());
    const std::lock_guard lock(mutex);
    ended = true;
    changed.notify_all();
}

LogindPowerEvents::LogindPowerEvents(Executor& executor, std::chrono::milliseconds patience)
    : shared_(std::make_shared<Shared>(executor, observers_, patience)),
      thread_([shared = shared_] { shared->run(); }) {}

LogindPowerEvents::~LogindPowerEvents() {
    std::unique_lock lock(shared_->mutex);
    shared_->ending = true;
    g_main_context_wakeup(shared_->context.get());
    const bool ended = shared_->changed.wait_for(lock, longestEnd, [this] { return shared_->ended; });
    lock.unlock();
    ended ? thread_.join() : thread_.detach();
}

Capability LogindPowerEvents::capability() const {
    const std::lock_guard lock(shared_->mutex);
    return shared_->capability;
}

std::unique_ptr<PowerObserver> LogindPowerEvents::observe(Observer observer) {
    return observers_->add(std::move(observer));
}

}  // namespace quillo
