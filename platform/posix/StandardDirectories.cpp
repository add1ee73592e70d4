#include "platform/posix/StandardDirectories.hpp"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

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

#ifndef __APPLE__
Path orElse(const Path& preferred, const Path& other) {
    return preferred.empty() ? other : preferred;
}
#endif

}  // namespace

Result<StandardDirectories> StandardDirectories::find() {
    const Path home = quillo::home();
    if (!home.is_absolute()) {
        return fail(ErrorKind::unavailable,
                    "there is no home directory: HOME is not set to an absolute path");
    }
#ifdef __APPLE__
    return StandardDirectories{home / "Library/Application Support/Quillo", home / "Library/Logs/Quillo"};
#else
    return StandardDirectories{orElse(fromEnvironment("XDG_DATA_HOME"), home / ".local/share") / "Quillo",
                               orElse(fromEnvironment("XDG_STATE_HOME"), home / ".local/state") / "Quillo"};
#endif
}

}  // namespace quillo
