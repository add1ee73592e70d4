#include "platform/linux/RegisteredCommands.hpp"

#include <glib.h>
#include <unistd.h>

#include <memory>

#include "platform/linux/GObjectPtr.hpp"

namespace quillo {
namespace {

constexpr std::string_view prefix = "launcher://";  // and a path, which is the identifier
constexpr std::string_view filePrefix = "file://";  // of which the same path is escaped

struct StringsFree {
    void operator()(char** strings) const noexcept { g_strfreev(strings); }
};

/// Runs in the child between fork and exec.
void beginSession(gpointer) {
    setsid();
}

/// Ours, but for the tokens that are good for one window, which is none of theirs.
std::unique_ptr<char*, StringsFree> environmentFor(const std::string& display) {
    char** environment = g_get_environ();
    if (!display.empty()) environment = g_environ_setenv(environment, "DISPLAY", display.c_str(), true);
    for (const char* ours : {"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"})
        environment = g_environ_unsetenv(environment, ours);
    return std::unique_ptr<char*, StringsFree>(environment);
}

}  // namespace

std::optional<RegisteredCommands::Command> RegisteredCommands::command(std::string_view identifier) const {
    std::optional<Command> command = commandOf_ ? commandOf_(identifier) : std::nullopt;
    return command && !command->empty() ? command : std::nullopt;
}

std::optional<Url> RegisteredCommands::location(std::string_view identifier) const {
    if (identifier.contains('\0') || !command(identifier)) return std::nullopt;
    const std::string escaped = Url::file("/" + std::string(identifier)).string().substr(filePrefix.size());
    return Url::parse(std::string(prefix) + escaped);
}

std::optional<std::string> RegisteredCommands::identifierAt(const Url& location) const {
    if (!location.string().starts_with(prefix)) return std::nullopt;
    const auto asFile = Url::parse(std::string(filePrefix) + location.string().substr(prefix.size()));
    const auto path = asFile ? asFile->filePath() : std::nullopt;
    if (!path || path->size() < 2 || !command(path->substr(1))) return std::nullopt;
    return path->substr(1);
}

Result<ProcessID> RegisteredCommands::start(std::string_view identifier, const std::string& display) const {
    std::optional<Command> words = command(identifier);
    if (!words) return fail(ErrorKind::notFound, "no command is registered for the application");
    std::vector<char*> arguments;
    for (std::string& word : *words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL |
                                                G_SPAWN_STDERR_TO_DEV_NULL);
    GPid pid = 0;
    GError* error = nullptr;
    const bool started = g_spawn_async(nullptr, arguments.data(), environmentFor(display).get(), flags,
                                       beginSession, nullptr, &pid, &error);
    const GErrorPtr reason(error);
    if (started) return pid;
    // In words of our own: GLib's sentence names the program.
    return fail(ErrorKind::refused, "the registered command could not be started", error ? error->code : 0);
}

}  // namespace quillo
