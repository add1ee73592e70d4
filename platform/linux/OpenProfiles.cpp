#include "platform/linux/OpenProfiles.hpp"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "WindowEngine/integrations/ChromiumSessionLog.hpp"
#include "WindowEngine/integrations/FirefoxSession.hpp"
#include "platform/linux/ProcessInfo.hpp"
#include "platform/posix/Descriptor.hpp"

namespace quillo::OpenProfiles {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;

constexpr std::size_t mostClosedProfiles = 64;

struct Held {
    fs::path descriptor;  // opened again, it is the very file that the process has
    fs::path path;        // as the process sees it
};

std::vector<Held> filesHeldBy(ProcessID pid) {
    std::vector<Held> files;
    std::error_code error;
    const fs::path folder = "/proc/" + std::to_string(pid) + "/fd";
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        std::error_code gone;
        fs::path path = fs::read_symlink(entry->path(), gone);
        if (!gone && path.is_absolute()) files.push_back({entry->path(), std::move(path)});
    }
    return files;
}

/// As the process sees it, also one that runs in a sandbox.
fs::path within(ProcessID pid, const fs::path& path) {
    return fs::path("/proc/" + std::to_string(pid) + "/root") += path;
}

struct FileRead {
    std::string bytes;
    Instant changed{};
};

std::unexpected<Error> unreadable(int code) {
    return fail(code == EACCES || code == EPERM ? ErrorKind::permission : ErrorKind::io,
                "its session file cannot be read", code);
}

/// `flags`: O_NOFOLLOW, but for a descriptor, whose name is a link by nature.
Result<FileRead> readFile(const fs::path& path, int flags) {
    const Descriptor file(
        retried([&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | flags); }));
    if (!file) return unreadable(errno);
    struct stat status{};
    if (::fstat(file.get(), &status) != 0) return unreadable(errno);
    if (!S_ISREG(status.st_mode)) return fail(ErrorKind::refused, "its session file is none");
    if (status.st_size < 0 || static_cast<std::size_t>(status.st_size) > largestSessionFile)
        return fail(ErrorKind::refused, "its session file is too large");
    FileRead read;
    // It may grow meanwhile; what is added then belongs to the next look.
    read.bytes.resize(static_cast<std::size_t>(status.st_size));
    std::size_t filled = 0;
    while (filled < read.bytes.size()) {
        const auto count = retried(
            [&] { return ::read(file.get(), read.bytes.data() + filled, read.bytes.size() - filled); });
        if (count < 0) return unreadable(errno);
        if (count == 0) break;
        filled += static_cast<std::size_t>(count);
    }
    read.bytes.resize(filled);
    read.changed = Instant(std::chrono::seconds(status.st_mtim.tv_sec) +
                           std::chrono::nanoseconds(status.st_mtim.tv_nsec));
    return read;
}

Duration ageOf(Instant changed) {
    const Instant now = std::chrono::system_clock::now();
    return std::max(Duration(now - changed), Duration::zero());
}

// -- Chromium's family --------------------------------------------------------------------------------------

struct Logs {
    std::optional<Held> session, closed;
};

/// By the folder of their profile. Of several with one beginning the later number is the current one.
std::map<std::string, Logs> logsHeldBy(ProcessID pid) {
    std::map<std::string, Logs> profiles;
    const auto isNumber = [](std::string_view text) {
        return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
    };
    for (Held& file : filesHeldBy(pid)) {
        if (file.path.parent_path().filename() != "Sessions") continue;
        const std::string name = file.path.filename().string();
        const bool isSession = name.starts_with("Session_");
        if (!isSession && !name.starts_with("Tabs_")) continue;
        if (!isNumber(std::string_view(name).substr(name.find('_') + 1))) continue;
        Logs& logs = profiles[file.path.parent_path().parent_path().string()];
        std::optional<Held>& log = isSession ? logs.session : logs.closed;
        if (!log || log->path < file.path) log = std::move(file);
    }
    std::erase_if(profiles, [](const auto& profile) { return !profile.second.session; });
    return profiles;
}

std::vector<std::string> chromiumArguments(const fs::path& profile) {
    return {"--user-data-dir=" + profile.parent_path().string(),
            "--profile-directory=" + profile.filename().string()};
}

BrowserProfile chromiumProfile(const fs::path& folder, const Logs& logs) {
    BrowserProfile profile{
        .name = folder.filename().string(), .arguments = chromiumArguments(folder), .isOpen = true};
    const auto session = readFile(logs.session->descriptor, 0);
    if (!session) {
        profile.session = std::unexpected(session.error());
        return profile;
    }
    const auto closed = logs.closed ? readFile(logs.closed->descriptor, 0) : Result<FileRead>();
    profile.age = ageOf(session->changed);
    profile.session = ChromiumSessionLog::read(session->bytes, closed ? std::string_view(closed->bytes) : "");
    return profile;
}

/// Those beside an open one.
void addClosed(std::vector<BrowserProfile>& profiles, ProcessID pid, const fs::path& folder) {
    const auto known = [&](const std::string& name) {
        return name.ends_with(" Profile") ||  // the browser's own: of the system, of guests
               std::ranges::find(profiles, name, &BrowserProfile::name) != profiles.end();
    };
    std::error_code error;
    std::size_t found = 0;
    for (fs::directory_iterator entry(within(pid, folder), error), end;
         !error && entry != end && found < mostClosedProfiles; entry.increment(error)) {
        std::error_code ignored;
        const std::string name = entry->path().filename().string();
        if (known(name) || !fs::is_regular_file(entry->path() / "Preferences", ignored)) continue;
        profiles.push_back({.name = name, .arguments = chromiumArguments(folder / name)});
        ++found;
    }
}

std::vector<BrowserProfile> chromiumProfiles(ProcessID pid) {
    std::vector<BrowserProfile> profiles;
    std::vector<fs::path> folders;
    for (const auto& [path, logs] : logsHeldBy(pid)) {
        const fs::path folder(path);
        profiles.push_back(chromiumProfile(folder, logs));
        if (std::ranges::find(folders, folder.parent_path()) == folders.end())
            folders.push_back(folder.parent_path());
    }
    for (const fs::path& folder : folders) addClosed(profiles, pid, folder);
    return profiles;
}

// -- Firefox and its kin ------------------------------------------------------------------------------------

/// What a session before this process left behind is no answer. Starts are known to a second.
bool isOf(ProcessID pid, Instant written) {
    const auto process = processInfo(pid);
    return process && written > startInstant(*process) + 1s;
}

std::vector<BrowserProfile> firefoxProfiles(ProcessID pid) {
    std::vector<BrowserProfile> profiles;
    for (const Held& file : filesHeldBy(pid)) {
        if (file.path.filename() != ".parentlock") continue;
        const fs::path folder = file.path.parent_path();
        BrowserProfile& profile = profiles.emplace_back(BrowserProfile{
            .name = folder.filename().string(), .arguments = {"--profile", folder.string()}, .isOpen = true});
        const auto session =
            readFile(within(pid, folder / "sessionstore-backups/recovery.jsonlz4"), O_NOFOLLOW);
        if (!session) {
            profile.session = std::unexpected(session.error());
        } else if (!isOf(pid, session->changed)) {
            profile.session = fail(ErrorKind::invalidData, "its session file is not written yet");
        } else {
            profile.age = ageOf(session->changed);
            profile.session = FirefoxSession::read(session->bytes);
        }
    }
    return profiles;
}

}  // namespace

std::vector<BrowserProfile> of(ProcessID pid, BrowserFamily family) {
    return family == BrowserFamily::chromium ? chromiumProfiles(pid) : firefoxProfiles(pid);
}

}  // namespace quillo::OpenProfiles
