#include "platform/posix/StandardDirectories.hpp"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

#include "platform/posix/PrivateFiles.hpp"

namespace quillo {
namespace {

using Path = std::filesystem::path;

/// An absolute path from the environment; a relative one is to be ignored.
Path fromEnvironment(const char* variable) {
    const char* value = std::getenv(variable);
    const Path path = value != nullptr ? value : "";
    return path.is_absolute() ? path : Path();
}

Path home() {
    if (Path path = fromEnvironment("HOME"); !path.empty()) return path;
    const passwd* entry = getpwuid(getuid());
    return entry != nullptr && entry->pw_dir != nullptr ? Path(entry->pw_dir) : Path();
}

}  // namespace

Result<StandardDirectories> StandardDirectories::find() {
    const Path home = quillo::home();
    if (!home.is_absolute()) {
        return fail(ErrorKind::unavailable,
                    "there is no home directory: HOME is not set to an absolute path");
    }
#ifdef __APPLE__
    StandardDirectories found{.data = home / "Library/Application Support/Quillo",
                              .state = home / "Library/Logs/Quillo",
                              .config = home / "Library/Preferences/Quillo",
                              .runtime = {}};
#else
    const auto directory = [&home](const char* variable, const char* usual) {
        const Path chosen = fromEnvironment(variable);
        return (chosen.empty() ? home / usual : chosen) / "Quillo";
    };
    StandardDirectories found{.data = directory("XDG_DATA_HOME", ".local/share"),
                              .state = directory("XDG_STATE_HOME", ".local/state"),
                              .config = directory("XDG_CONFIG_HOME", ".config"),
                              .runtime = {}};
#endif
    for (const Path& own : {found.data, found.state, found.config}) PrivateFiles::narrow(own);
    const Path session = fromEnvironment("XDG_RUNTIME_DIR");
    found.runtime = PrivateFiles::isPrivate(session) ? session / "quillo" : found.data / "run";
    return found;
}

}  // namespace quillo
