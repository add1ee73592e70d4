// Browsers that no script speaks to: what is open in them stands in files of their own, and their own command
// opens more.
#pragma once
#include <string>
#include <vector>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "WindowEngine/services/BrowserSession.hpp"
#include "WindowEngine/services/Capability.hpp"
#include "WindowEngine/support/Error.hpp"
#include "WindowEngine/support/Instant.hpp"
#include "WindowEngine/support/Task.hpp"

namespace quillo {

enum class BrowserFamily { chromium, firefox };

/// A window on the screen that says of itself that it is a browser's main one; whether it is private it does
/// not say.
struct ShownBrowserWindow {
    WindowNumber number = 0;
    std::string title;
    Rect frame;           // with its decoration
    Rect client;          // without; both in whole pixels of the screen
    bool isPlain = true;  // neither minimized nor maximized nor in full screen
    std::optional<std::int64_t> desktop =
        std::nullopt;  // the window manager's number; absent on all desktops

    bool operator==(const ShownBrowserWindow&) const = default;
};

/// A profile that is open in a process, or that lies beside one and could be.
struct BrowserProfile {
    std::string name;  // of its folder, without a path
    /// What begins a command so that its addresses go to this profile.
    std::vector<std::string> arguments = {};
    bool isOpen = false;
    /// Of one that is open. An error's text says why not in words that go on "its session file ..." and name
    /// no path.
    Result<BrowserSession> session = BrowserSession();
    Duration age{};  // of the file that says so, since it was last written
};

/// One process of a browser: its profiles share it, and so do the windows.
struct BrowserProcess {
    std::vector<ShownBrowserWindow> windows;  // in the order in which they were made
    std::vector<BrowserProfile> profiles;
};

/// Called on the executor's thread only.
class BrowserFiles {
  public:
    virtual ~BrowserFiles() = default;

    /// Whether session files can be found and read here.
    virtual Capability reading() = 0;
    /// The processes of a running browser: their windows as they are now, and a moment later what their files
    /// say. None where it does not run. Files are read and decoded away from the executor's thread;
    /// `timedOut` where that takes more than seconds. A file that the process has not written itself counts
    /// as unreadable.
    virtual Task<Result<std::vector<BrowserProcess>>> read(std::string bundleIdentifier,
                                                           BrowserFamily family) = 0;
    /// Runs the command of the installed browser, which runs already, with these arguments, and waits until
    /// it has handed them over. No shell sees them; any person of this machine may, for that moment.
    virtual Task<Result<void>> run(std::string bundleIdentifier, std::vector<std::string> arguments) = 0;
};

}  // namespace quillo
