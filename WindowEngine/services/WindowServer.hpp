// The window server's own view: every window on screen, desktops (spaces) and which windows stand on them.
// Called on the executor's thread only; reads never wait for an application.
#pragma once
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "WindowEngine/support/ChangeWatch.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo {

using SpaceID = std::uint64_t;

struct WindowListEntry {
    ProcessID ownerPid = 0;  // the pid under which Applications presents its owner
    std::int32_t layer = 0;  // 0 is the layer of ordinary windows
    WindowNumber number = 0;
    Rect bounds;  // global points, top left
};

enum class SpaceKind { standard, fullScreen };

struct Space {
    SpaceID id = 0;
    SpaceKind kind = SpaceKind::standard;
    std::optional<std::string> uuid;
};

struct DisplaySpaces {
    std::string displayID;      // DisplaySnapshot.id of the display
    std::vector<Space> spaces;  // in the window server's order, full-screen ones included
};

struct WindowFacts {
    std::vector<SpaceID> spaces;  // every space that holds it; empty when unknown
    bool isStandard = false;      // an ordinary application window
    bool isFullscreen = false;    // it stands on a full-screen space, or is full screen itself
};

/// See WindowServer::noWindows().
inline constexpr std::string_view noWindowsOfMac =
    "no accessible windows appeared; windows in other Spaces may be unavailable";

class WindowServer {
  public:
    virtual ~WindowServer() = default;

    /// All windows less desktop elements, front to back; empty when the server does not answer.
    virtual std::vector<WindowListEntry> windowList() = 0;

    /// Spaces of every display, in the order of Screens; empty where spaces cannot be read. Where all
    /// displays share one list of desktops (X11), each display carries that list.
    virtual std::vector<DisplaySpaces> displaySpaces() = 0;

    /// Facts about many windows in one round trip; one answer per number, in order. A number that is not
    /// known gives no spaces and false flags.
    virtual std::vector<WindowFacts> facts(std::span<const WindowNumber> numbers) = 0;

    /// The window that has the keyboard, of this program too; absent where none has it. Where the platform
    /// does not say, the first ordinary window of windowList().
    virtual std::optional<WindowNumber> windowInFront();
    /// The spaces that a person looks at now; empty where that is not known.
    virtual std::vector<SpaceID> spacesInFront() { return {}; }
    /// Differs from an earlier one when a window has come, gone, moved or changed its place in the stack
    /// since, and where it costs no more, also when its title or state is another. Much cheaper than a
    /// capture.
    virtual std::uint64_t stamp();

    /// Why no window of a running application may be found, for the report; in the system's word for
    /// desktops.
    virtual std::string noWindows() { return std::string(noWindowsOfMac); }
    /// Whether spaces can be read and windows moved between them.
    virtual Capability spaces() = 0;
    /// Whether desktops can be created.
    virtual Capability desktopCreation() = 0;
    /// True while a display animates from one space to another.
    virtual bool isAnimating(std::string_view displayID) = 0;
    /// Asks for a move; the caller verifies with facts(). Returns at once.
    virtual Result<void> moveWindow(WindowNumber number, SpaceID space) = 0;

    /// True where createDesktop() works; otherwise the overview is driven through accessibility.
    virtual bool createsDesktopsDirectly() = 0;
    /// Asks for one more desktop on a display; the caller waits until it appears.
    virtual Result<void> createDesktop(std::string_view displayID) = 0;
    /// Opens the overview of all desktops; false when the system did not accept the request.
    virtual bool openOverview() = 0;
    virtual void closeOverview() = 0;

    /// Listens until it is dropped: to a window's frame, state and desktop, or, where none is given, to
    /// windows that come and go and to the number of desktops. To be begun before the first look, so that
    /// nothing happens unseen between the two. A layer that is not told leaves waits to their timers.
    virtual std::unique_ptr<ChangeWatch> watch(std::optional<WindowNumber> /*window*/) {
        return std::make_unique<ChangeWatch>();
    }
};

}  // namespace quillo
