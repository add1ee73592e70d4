#include "platform/linux/Terminals.hpp"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <map>
#include <utility>

#include "platform/linux/ProcessInfo.hpp"

namespace quillo::Terminals {
namespace {

using Folder = std::optional<std::string>;

/// A path is handed over as one that begins with "/": it is never taken for an option.
constexpr auto options = std::to_array<std::pair<std::string_view, std::string_view>>({
    {"alacritty", "--working-directory=%f"},
    {"cool-retro-term", "--workdir %f"},
    {"foot", "--working-directory=%f"},
    {"ghostty", "--working-directory=%f"},
    {"gnome-terminal", "--window --working-directory=%f"},
    {"kgx", "--working-directory=%f"},
    {"kitty", "--directory=%f"},
    {"konsole", "--workdir %f"},
    {"lxterminal", "--working-directory=%f"},
    {"mate-terminal", "--window --working-directory=%f"},
    {"qterminal", "--workdir %f"},
    {"rxvt", ""},
    {"rxvt-unicode", ""},
    {"sakura", "--working-directory=%f"},
    {"st", ""},
    {"stterm", ""},
    {"terminator", "--working-directory=%f"},
    {"tilix", "--working-directory=%f"},
    {"urxvt", ""},
    {"uxterm", ""},
    {"xfce4-terminal", "--working-directory=%f"},
    {"xterm", ""},
});

constexpr auto shellNames = std::to_array<std::string_view>({
    "ash",
    "bash",
    "busybox",
    "csh",
    "dash",
    "elvish",
    "fish",
    "ksh",
    "ksh93",
    "mksh",
    "nu",
    "pwsh",
    "sh",
    "tcsh",
    "xonsh",
    "yash",
    "zsh",
});

/// Options of its own are fine; a program that it is to run is not.
bool runsNothing(std::string_view command) {
    auto at = command.find(' ');
    while (at != std::string_view::npos) {
        const auto word = command.substr(at + 1, command.find(' ', at + 1) - at - 1);
        if (!word.starts_with("--") || word == "--" || word.starts_with("--command") ||
            word.starts_with("--execute"))
            return false;
        at = command.find(' ', at + 1);
    }
    return true;
}

bool isShell(ProcessID pid) {
    return std::ranges::find(shellNames, nameOf(pid)) != shellNames.end();
}

/// What the link in /proc leads to must be what its text names: a removed folder, or one of another root, is
/// not.
Folder folderOf(ProcessID pid) {
    auto path = workingDirectoryOf(pid);
    const auto link = "/proc/" + std::to_string(pid) + "/cwd";
    struct stat named{}, itself{};
    if (!path.starts_with('/') || ::stat(path.c_str(), &named) != 0 || ::stat(link.c_str(), &itself) != 0)
        return std::nullopt;
    const bool same = named.st_dev == itself.st_dev && named.st_ino == itself.st_ino;
    if (!same || !S_ISDIR(named.st_mode) || ::access(path.c_str(), R_OK | X_OK) != 0) return std::nullopt;
    return path;
}

/// Each begins a session of its own on its line; helpers of the terminal have none.
std::vector<std::pair<ProcessID, ProcessInfo>> shellsOf(ProcessID terminal) {
    std::vector<std::pair<ProcessID, ProcessInfo>> shells;
    for (const ProcessID child : childrenOf(terminal)) {
        const auto process = processInfo(child);
        if (process && process->hasTerminal && process->session == child)
            shells.emplace_back(child, *process);
    }
    return shells;
}

/// From what has the terminal's line now towards the shell that the terminal started: the first shell whose
/// folder can be read. An editor or a build may change its own.
Folder folderInFront(ProcessID leader, ProcessID foreground) {
    constexpr int mostSteps = 32;
    ProcessID pid = foreground;
    for (int i = 0; i < mostSteps && pid != leader; ++i) {
        const auto process = processInfo(pid);
        if (!process || process->session != leader) break;
        if (auto folder = isShell(pid) ? folderOf(pid) : std::nullopt) return folder;
        pid = process->parent;
    }
    return folderOf(leader);
}

/// Whether the title has this as a whole path: "ada@desk: ~/letters", not the beginning of a longer one.
bool names(std::string_view title, std::string_view path) {
    static constexpr std::array<std::string_view, 7> after{" - ", " – ", " — ", " (", " [", ")", "]"};
    for (auto at = title.find(path); at != std::string_view::npos; at = title.find(path, at + 1)) {
        const bool begins = at == 0 || title[at - 1] == ' ' || title[at - 1] == ':';
        const auto rest = title.substr(at + path.size());
        const bool ends = rest.empty() || std::ranges::any_of(after, [&](std::string_view separator) {
                              return rest.starts_with(separator);
                          });
        if (begins && ends) return true;
    }
    return false;
}

/// "ada@far: ~/letters", from a shell of another machine.
bool speaksOfAnotherHost(std::string_view title, std::string_view host) {
    const auto at = title.find('@');
    if (at == std::string_view::npos) return false;
    const auto rest = title.substr(at + 1);
    const auto named = rest.substr(0, rest.find_first_of(": "));
    return named != host && named != host.substr(0, host.find('.'));
}

bool shows(std::string_view title, std::string_view folder, const Spelling& spelling) {
    if (speaksOfAnotherHost(title, spelling.host)) return false;
    const std::string_view home = spelling.home;
    const bool inHome = home.size() > 1 && folder.starts_with(home) &&
                        (folder.size() == home.size() || folder[home.size()] == '/');
    return names(title, folder) || (inHome && names(title, "~" + std::string(folder.substr(home.size()))));
}

/// How many shells are in each folder; those whose folder is not known under none.
using Counts = std::map<Folder, std::int64_t>;

/// The one folder of the counts that the title shows.
Folder folderInTitle(std::string_view title, const Counts& counts, const Spelling& spelling) {
    Folder found;
    for (const auto& [folder, count] : counts) {
        if (!folder || !shows(title, *folder, spelling)) continue;
        if (found) return std::nullopt;
        found = folder;
    }
    return found;
}

}  // namespace

std::optional<std::string_view> folderOption(std::string_view program, std::string_view command) {
    const auto name = program.substr(program.rfind('/') + 1);
    const auto* known =
        std::ranges::find(options, name, &std::pair<std::string_view, std::string_view>::first);
    if (known == options.end() || !runsNothing(command)) return std::nullopt;
    return known->second;
}

std::vector<Folder> shellFolders(ProcessID terminal) {
    std::vector<Folder> folders;
    for (const auto& [pid, process] : shellsOf(terminal))
        folders.push_back(folderInFront(pid, process.foreground));
    return folders;
}

std::int64_t shellCount(ProcessID terminal) {
    return std::ssize(shellsOf(terminal));
}

std::vector<Folder> windowFolders(std::span<const std::string> titles, std::span<const Folder> shells,
                                  const Spelling& spelling) {
    Counts left;  // less the windows that name them
    for (const Folder& shell : shells) ++left[shell];
    const Counts all = left;
    std::vector<Folder> folders;
    for (const std::string& title : titles) {
        folders.push_back(folderInTitle(title, all, spelling));
        if (folders.back()) --left[folders.back()];
    }
    for (Folder& folder : folders) {
        if (folder && left[folder] < 0) folder.reset();
    }
    // Each window has a shell; of those that are left any may be the one of any window.
    std::erase_if(left, [](const auto& shell) { return shell.second == 0; });
    const bool sure = titles.size() == shells.size() && left.size() == 1 && left.begin()->second > 0;
    for (Folder& folder : folders) {
        if (sure && !folder) folder = left.begin()->first;
    }
    return folders;
}

}  // namespace quillo::Terminals
