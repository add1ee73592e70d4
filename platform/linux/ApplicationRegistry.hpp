// Which application a window belongs to. An application is an identity, not a process: two terminals started
// apart are one, a process belongs to exactly one.
#pragma once
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/services/Applications.hpp"
#include "platform/linux/DesktopEntries.hpp"
#include "platform/linux/ProcessInfo.hpp"

namespace quillo {

/// What a window says of the application it belongs to.
struct WindowEvidence {
    ProcessID pid = 0;  // 0 where no local process is known
    std::string className, instanceName;
    std::string desktopFile, gtkApplicationID;
    bool isRemote = false;     // of a program on another machine
    bool isFurniture = false;  // docks, desktops, menus, notifications: no window of an application
};

struct KnownApplication {
    RunningApplication running;
    std::vector<ProcessID> processes;  // living ones, the oldest first
    std::vector<std::size_t> windows;  // positions in the evidence, in its order
    OpenedKinds opens{};
};

class ApplicationRegistry {
  public:
    /// The applications of these windows and those launched from here that still live, in the order of
    /// their first window.
    std::vector<KnownApplication> applications(const std::vector<WindowEvidence>& windows);

    /// Remembers what this process was launched as, the best evidence for windows that say nothing.
    void recordLaunch(ProcessID pid, std::string identifier);

    /// Whether anything that this window or its `program` says of itself is one of these identifiers, which
    /// are in lower case: an entry's name, also as packers change it, a class, a program.
    static bool mayBe(const WindowEvidence& window, const std::string& program,
                      const std::set<std::string>& identifiers);

    /// What the application that this window alone speaks for opens; nothing where it names none.
    OpenedKinds opens(const WindowEvidence& window);

    /// Of the installed menu entry with this identifier.
    std::optional<Url> location(std::string_view identifier);
    std::optional<std::string> name(std::string_view identifier);
    /// The words of its command, without the fields for what is opened; empty where there are none to run.
    std::vector<std::string> command(std::string_view identifier);
    /// Those that menus show.
    std::vector<InstalledApplication> installed();
    /// The entry's action that opens one more window, empty where it is to be launched again for that;
    /// refused for what is not installed, and for what opens one window only. The reason is a sentence.
    Result<std::string> newWindowAction(std::string_view identifier);
    /// As Applications::handing() says. Blocks for the disk.
    DocumentHanding handing(std::string_view identifier, std::span<const Url> documents);
    /// Of the installed menu entry that this file is.
    std::optional<std::string> identifierAt(const Url& location);

    /// A document as it may be opened, and the file of the menu entry that opens it.
    struct Opening {
        Url document;
        std::string entry;
        std::optional<std::string> folderOption = std::nullopt;  // where a terminal is opened in that folder
    };
    /// Refused with a reason that names nothing, as Applications::openable() says. Blocks for the disk.
    Result<Opening> opening(std::string_view identifier, const Url& document);

  private:
    struct Launch {
        std::uint64_t startTicks = 0;
        std::string identifier;
    };
    /// What a process is taken for; a smaller rank is better evidence.
    struct Verdict {
        int rank = 0;
        std::string identifier;
    };

    Verdict judge(const WindowEvidence& window) const;
    /// The entry in menus of the program that the process runs, if that has this name; else null.
    const DesktopEntry* shownEntryOf(ProcessID pid, std::string_view name) const;
    const std::string* launchedAs(ProcessID pid) const;
    void dropEndedLaunches();
    void describe(KnownApplication& application, std::span<const WindowEvidence> windows) const;

    DesktopEntries entries_;
    std::map<ProcessID, Launch> launches_;
};

}  // namespace quillo
