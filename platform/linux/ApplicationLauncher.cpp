#include "platform/linux/ApplicationLauncher.hpp"

#include <fcntl.h>
#include <gio/gdesktopappinfo.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include "platform/linux/ContentTypes.hpp"
#include "platform/linux/DesktopEntries.hpp"
#include "platform/linux/GObjectPtr.hpp"
#include "platform/posix/DocumentOnDisk.hpp"

namespace quillo {
namespace {

using Launched = Result<std::optional<ProcessID>>;
using Order = ApplicationLauncher::Order;

struct GListFree {
    void operator()(GList* list) const noexcept { g_list_free(list); }
};

struct GKeyFileFree {
    void operator()(GKeyFile* file) const noexcept { g_key_file_unref(file); }
};

class DevNull {
  public:
    DevNull() : descriptor_(open("/dev/null", O_RDWR | O_CLOEXEC)) {}
    DevNull(const DevNull&) = delete;
    DevNull& operator=(const DevNull&) = delete;
    ~DevNull() {
        if (descriptor_ >= 0) close(descriptor_);
    }
    int get() const { return descriptor_; }

  private:
    int descriptor_;
};

/// Runs in the child between fork and exec.
void detach(gpointer) {
    setsid();
}

void notePid(GDesktopAppInfo*, GPid pid, gpointer to) {
    *static_cast<std::optional<ProcessID>*>(to) = pid;
}

/// In words of our own: GLib's sentence may name a file, in quotation marks that differ by language.
const char* whyNotStarted(const GError* error) {
    if (!g_error_matches(error, G_SPAWN_ERROR, G_SPAWN_ERROR_NOENT) &&
        !g_error_matches(error, G_SPAWN_ERROR, G_SPAWN_ERROR_ACCES)) {
        return "the system could not start the application";
    }
    return error->code == G_SPAWN_ERROR_NOENT ? "the application's program does not exist"
                                              : "the application's program may not be run";
}

/// What was judged a moment ago may have been replaced since.
Result<void> judgedAgain(GDesktopAppInfo* application, const Order& order) {
    if (order.documents.empty()) return {};
    auto types = declaredTypes(application);
    if (order.folderOption) types = {folderType};
    for (const Url& document : order.documents) {
        const auto openable = openableDocument(document);
        if (!openable) return std::unexpected(openable.error());
        if (*openable != document) return fail(ErrorKind::refused, "it was replaced by a link");
        const auto type = ContentTypes::of(document.filePath().value());
        if (!type || !ContentTypes::declares(types, *type))
            return fail(ErrorKind::refused, "the application does not say that it opens such documents");
    }
    return {};
}

/// The entry with the command of its action, or with the option for a folder, and that folder as its own.
/// Over the bus neither would reach the application.
void change(GKeyFile* entry, const Order& order) {
    constexpr auto main = G_KEY_FILE_DESKTOP_GROUP, exec = G_KEY_FILE_DESKTOP_KEY_EXEC;
    const auto group = order.action.empty() ? std::string(main) : "Desktop Action " + order.action;
    const GText command(g_key_file_get_string(entry, group.c_str(), exec, nullptr));
    auto line = std::string(command ? command.get() : "");
    if (order.folderOption) {
        line += " " + *order.folderOption;
        g_key_file_set_string(entry, main, G_KEY_FILE_DESKTOP_KEY_PATH,
                              order.documents.front().filePath().value().c_str());
    }
    g_key_file_set_string(entry, main, exec, line.c_str());
    g_key_file_remove_key(entry, main, G_KEY_FILE_DESKTOP_KEY_DBUS_ACTIVATABLE, nullptr);
}

GObjectPtr<GDesktopAppInfo> applicationOf(const Order& order) {
    if (order.action.empty() && !order.folderOption)
        return GObjectPtr<GDesktopAppInfo>(g_desktop_app_info_new_from_filename(order.entry.c_str()));
    const std::unique_ptr<GKeyFile, GKeyFileFree> entry(g_key_file_new());
    if (!g_key_file_load_from_file(entry.get(), order.entry.c_str(), G_KEY_FILE_NONE, nullptr)) return {};
    change(entry.get(), order);
    return GObjectPtr<GDesktopAppInfo>(g_desktop_app_info_new_from_keyfile(entry.get()));
}

/// GIO's connection to the session bus would end this program when the bus goes away.
GObjectPtr<GDBusConnection> sessionBus() {
    GObjectPtr<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (bus) g_dbus_connection_set_exit_on_close(bus.get(), false);
    return bus;
}

Launched launchNow(const Order& order, const std::string& display) {
    const auto application = applicationOf(order);
    if (!application) return fail(ErrorKind::notFound, "the application is not installed or cannot be run");
    if (auto judged = judgedAgain(application.get(), order); !judged)
        return std::unexpected(std::move(judged.error()));
    std::unique_ptr<GList, GListFree> addresses;
    // A terminal without an option takes the folder from its own: its line has no place for one.
    const bool handsOver = !order.folderOption || !order.folderOption->empty();
    for (auto url = order.documents.rbegin(); handsOver && url != order.documents.rend(); ++url) {
        addresses.reset(g_list_prepend(addresses.release(), const_cast<char*>(url->string().c_str())));
    }
    const GObjectPtr<GAppLaunchContext> context(g_app_launch_context_new());
    if (!display.empty()) g_app_launch_context_setenv(context.get(), "DISPLAY", display.c_str());
    for (const char* ours : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"})
        g_app_launch_context_unsetenv(context.get(), ours);  // good for one window, which is none of theirs
    const DevNull nowhere;
    const auto bus = sessionBus();
    std::optional<ProcessID> pid;
    GError* error = nullptr;
    const bool started = g_desktop_app_info_launch_uris_as_manager_with_fds(
        application.get(), addresses.get(), context.get(), G_SPAWN_SEARCH_PATH, detach, nullptr, notePid,
        &pid, nowhere.get(), nowhere.get(), nowhere.get(), &error);
    const GErrorPtr reason(error);
    // Started over the bus: the request must have left before this program may end.
    if (started && !pid && bus) g_dbus_connection_flush_sync(bus.get(), nullptr, nullptr);
    if (started) return pid;
    return fail(ErrorKind::refused, whyNotStarted(error), error ? error->code : 0);
}

}  // namespace

ApplicationLauncher::~ApplicationLauncher() {
    for (auto& one : running_) one.thread.join();
}

void ApplicationLauncher::joinEnded() {
    std::erase_if(running_, [](Running& one) {
        if (*one.ended) one.thread.join();
        return *one.ended;
    });
}

Task<Launched> ApplicationLauncher::launch(Order order) {
    joinEnded();
    Completion<Launched> completion(executor_);
    auto ended = std::make_shared<bool>(false);
    auto work = [&executor = executor_, setter = completion.setter(), held = executor_.outsideWork(), ended,
                 order = std::move(order), display = display_] {
        setter.set(launchNow(order, display));
        executor.post([ended] { *ended = true; });
    };
    running_.push_back({std::thread(std::move(work)), ended});
    co_return co_await completion;
}

}  // namespace quillo
