#include "platform/x11/ApplicationLauncher.hpp"

#include <fcntl.h>
#include <gio/gdesktopappinfo.h>
#include <unistd.h>

#include <algorithm>
#include <memory>

#include "platform/x11/GObjectPtr.hpp"

namespace quillo::x11 {
namespace {

using Launched = Result<std::optional<ProcessID>>;

struct GListFree {
    void operator()(GList* list) const noexcept { g_list_free(list); }
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

GObjectPtr<GDesktopAppInfo> applicationAt(const std::string& file, bool withDocuments) {
    if (file.ends_with(".desktop"))
        return GObjectPtr<GDesktopAppInfo>(g_desktop_app_info_new_from_filename(file.c_str()));
    if (access(file.c_str(), X_OK) != 0) return nullptr;
    std::string escaped;  // the command line of a .desktop file has % for its fields
    for (const char c : file) escaped += c == '%' ? "%%" : std::string(1, c);
    const GText quoted(g_shell_quote(escaped.c_str()));
    const auto flags = withDocuments ? G_APP_INFO_CREATE_SUPPORTS_URIS : G_APP_INFO_CREATE_NONE;
    return GObjectPtr<GDesktopAppInfo>(
        G_DESKTOP_APP_INFO(g_app_info_create_from_commandline(quoted.get(), nullptr, flags, nullptr)));
}

/// GIO's connection to the session bus would end this program when the bus goes away.
GObjectPtr<GDBusConnection> sessionBus() {
    GObjectPtr<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    if (bus) g_dbus_connection_set_exit_on_close(bus.get(), false);
    return bus;
}

Launched launchNow(const std::string& file, const std::vector<Url>& documents, const std::string& display) {
    const auto application = applicationAt(file, !documents.empty());
    if (!application) return fail(ErrorKind::notFound, "the application is not installed or cannot be run");
    GAppInfo* info = G_APP_INFO(application.get());
    if (!documents.empty() && !g_app_info_supports_uris(info) && !g_app_info_supports_files(info)) {
        return fail(ErrorKind::refused, "the application does not open documents");
    }
    std::unique_ptr<GList, GListFree> addresses;
    for (auto url = documents.rbegin(); url != documents.rend(); ++url) {
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

Task<Launched> ApplicationLauncher::launch(std::string file, std::vector<Url> documents) {
    joinEnded();
    Completion<Launched> completion(executor_);
    auto ended = std::make_shared<bool>(false);
    auto work = [&executor = executor_, setter = completion.setter(), held = executor_.outsideWork(), ended,
                 file, documents, display = display_] {
        setter.set(launchNow(file, documents, display));
        executor.post([ended] { *ended = true; });
    };
    running_.push_back({std::thread(std::move(work)), ended});
    co_return co_await completion;
}

}  // namespace quillo::x11
