#include "platform/linux/ProcessInfo.hpp"

#include <unistd.h>

#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>

namespace quillo {
namespace {

std::string procFile(ProcessID pid, std::string_view name) {
    return "/proc/" + std::to_string(pid) + "/" + std::string(name);
}

/// Up to where the process ended, if it does meanwhile.
std::string contents(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();  // catches what the buffer throws when it cannot be read
    return std::move(text).str();
}

std::chrono::nanoseconds bootTime() {
    std::istringstream lines(contents("/proc/stat"));
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("btime ")) return std::chrono::seconds(std::stoll(line.substr(6)));
    }
    return {};
}

}  // namespace

std::optional<ProcessInfo> processInfo(ProcessID pid) {
    if (pid <= 0) return std::nullopt;
    const auto line = contents(procFile(pid, "stat"));
    const auto nameEnd = line.rfind(')');  // the name before it may hold anything
    if (nameEnd == std::string::npos) return std::nullopt;
    std::istringstream fields(line.substr(nameEnd + 1));
    char state = 0;
    int group = 0, terminal = 0;
    ProcessInfo info;
    fields >> state >> info.parent >> group >> info.session >> terminal >> info.foreground;
    info.hasTerminal = terminal != 0;
    std::string skipped;
    for (int field = 9; field < 22; ++field) fields >> skipped;
    if (!(fields >> info.startTicks) || state == 'Z' || state == 'X') return std::nullopt;
    return info;
}

Instant startInstant(const ProcessInfo& process) {
    static const auto boot = bootTime();  // read once: it may shift by a second when the clock is set
    static const auto ticksPerSecond = static_cast<std::uint64_t>(sysconf(_SC_CLK_TCK));
    const auto seconds = process.startTicks / ticksPerSecond;
    const auto rest = process.startTicks % ticksPerSecond * 1'000'000'000 / ticksPerSecond;
    return Instant(boot + std::chrono::seconds(seconds) + std::chrono::nanoseconds(rest));
}

std::vector<ProcessID> childrenOf(ProcessID pid) {
    std::vector<ProcessID> children;
    std::error_code error;
    // Each thread has those that it made itself.
    std::filesystem::directory_iterator thread(procFile(pid, "task"), error), end;
    for (; !error && thread != end; thread.increment(error)) {
        std::istringstream numbers(contents(thread->path() / "children"));
        for (ProcessID child = 0; numbers >> child;) children.push_back(child);
    }
    return children;
}

std::string nameOf(ProcessID pid) {
    auto name = contents(procFile(pid, "comm"));
    if (name.ends_with('\n')) name.pop_back();
    return name;
}

bool isForwarder(ProcessID pid) {
    // Its program belongs to the system's administrator and is nobody else's to read; its name is.
    return nameOf(pid).starts_with("sshd");
}

std::optional<std::string> programOf(ProcessID pid) {
    std::error_code error;
    auto program = std::filesystem::read_symlink(procFile(pid, "exe"), error).string();
    if (error || program.empty() || program.ends_with(" (deleted)")) return std::nullopt;
    return program;
}

std::vector<std::string> argumentsOf(ProcessID pid) {
    std::istringstream words(contents(procFile(pid, "cmdline")));
    std::vector<std::string> arguments;
    std::string word;
    std::getline(words, word, '\0');  // the program's name
    while (std::getline(words, word, '\0')) arguments.push_back(std::move(word));
    return arguments;
}

std::vector<std::string> openFilesOf(ProcessID pid) {
    constexpr std::size_t mostLookedAt = 1024;
    std::vector<std::string> files;
    std::error_code error;
    std::filesystem::directory_iterator entry(procFile(pid, "fd"), error), end;
    for (std::size_t i = 0; !error && entry != end && i < mostLookedAt; entry.increment(error), ++i) {
        std::error_code closed;
        auto file = std::filesystem::read_symlink(entry->path(), closed).string();
        const bool isOfTheSystem =
            file.starts_with("/dev/") || file.starts_with("/proc/") || file.starts_with("/memfd:");
        if (!closed && file.starts_with('/') && !isOfTheSystem) files.push_back(std::move(file));
    }
    return files;
}

std::string workingDirectoryOf(ProcessID pid) {
    std::error_code error;
    return std::filesystem::read_symlink(procFile(pid, "cwd"), error).string();
}

}  // namespace quillo
