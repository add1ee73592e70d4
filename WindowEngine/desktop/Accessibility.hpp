// The only door to other applications' windows: enumeration, reading, and writes that are verified by
// reading again. Everything runs on the executor's thread; waits suspend and check for cancellation.
#pragma once
#include <optional>
#include <set>
#include <span>
#include <unordered_map>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/services/Platform.hpp"

namespace quillo {

struct LiveWindow {
    Element element;
    ProcessID pid = 0;
    std::optional<WindowNumber> windowID;
    LiveWindowInfo info;
};

/// Which parts of a window write took effect.
struct WindowMutationResult {
    bool positionSet = false;
    bool sizeSet = false;
    bool minimizedSet = false;

    bool operator==(const WindowMutationResult&) const = default;
};

/// A window the window server knows and the accessibility service did not list.
struct HiddenWindowCandidate {
    WindowNumber windowID = 0;
    Rect frame;
    bool isFullscreen = false;

    bool operator==(const HiddenWindowCandidate&) const = default;
};

/// Applications that let a request time out. For a while nothing more is asked of them, so that one that
/// hangs costs everybody its messaging timeout once and not at each look; the rests grow while it stays
/// silent.
class UnresponsiveApplications {
  public:
    bool resting(ProcessID pid, TimePoint now) const;
    void timedOut(ProcessID pid, TimePoint now);
    void answered(ProcessID pid) { rests_.erase(pid); }
    void clear() { rests_.clear(); }

  private:
    struct Rest {
        TimePoint until;
        Duration length;
    };
    std::unordered_map<ProcessID, Rest> rests_;
};

/// Element handles of each process, kept from the last enumeration, so that windows the accessibility
/// service stops listing (on another desktop) stay reachable. One object per program, owned by main.
class WindowHandleCache {
  public:
    struct WindowHandles {
        std::optional<Instant> launchedAt;
        std::vector<Element> elements;
    };
    std::unordered_map<ProcessID, WindowHandles> entries;
    /// A capture and a restore begin with none: what hung before may answer now.
    UnresponsiveApplications unresponsive;
};

/// The platform and the one piece of state that goes with it.
struct DesktopAccess {
    Platform platform;
    WindowHandleCache& handles;
};

/// The window server's window list with the facts about its ordinary windows, read together.
struct WindowServerReading {
    std::vector<WindowListEntry> windows;
    std::unordered_map<WindowNumber, WindowFacts> facts;
};

namespace Accessibility {

inline constexpr double positionTolerance = 2.0;  // points
inline constexpr double minimumExtent = 1.0;      // a window must be wider and taller than this
inline constexpr double messagingTimeout = 1.0;   // seconds an application may take to answer

struct Enumeration {
    std::vector<LiveWindow> windows;  // indices dense from 0
    bool timedOut = false;            // nothing is known: it did not answer in time, or was not asked
};

/// Windows of many applications, one answer per pid: all window lists are read in one batch, all windows in
/// a second. An application that
/// hangs costs `timeout` seconds once and keeps its cached handles; while it rests
/// (UnresponsiveApplications) it answers `timedOut` unasked. The thread is never held up for longer than one
/// such timeout: where one application let it pass, all answer `timedOut`, and the others are asked next
/// time.
std::vector<Enumeration> enumerate(DesktopAccess& desktop, std::span<const ProcessID> pids,
                                   bool recoverHidden, double timeout = messagingTimeout);
/// The same, bringing windows back that only this reading of the window server knows.
std::vector<Enumeration> enumerateRecovering(DesktopAccess& desktop, std::span<const ProcessID> pids,
                                             const WindowServerReading& server);
/// Windows of one application, indices dense from 0.
std::vector<LiveWindow> windows(DesktopAccess& desktop, ProcessID pid, bool recoverHidden);
/// Numbers of what the accessibility service itself lists now, in its order.
std::vector<WindowNumber> listedNumbers(DesktopAccess& desktop, ProcessID pid);
/// Elements kept from the last enumeration of the application as it runs now, also of windows that are no
/// longer listed; some may be gone.
std::vector<Element> knownElements(DesktopAccess& desktop, ProcessID pid);
/// One window without its document, which may be dear to find and does not change while it is placed.
std::optional<LiveWindow> readWindow(DesktopAccess& desktop, const Element& element, ProcessID pid,
                                     std::int64_t index);

WindowServerReading readWindowServer(DesktopAccess& desktop);
std::vector<HiddenWindowCandidate> hiddenWindows(const WindowServerReading& reading, ProcessID pid,
                                                 const std::set<WindowNumber>& excluding);
std::vector<HiddenWindowCandidate> hiddenWindows(DesktopAccess& desktop, ProcessID pid,
                                                 const std::set<WindowNumber>& excluding);
std::set<WindowNumber> windowNumbers(std::span<const LiveWindow> windows);

// Every write begins with a reading of its window; where the application does not answer that, nothing is
// written.

/// One write pass without waiting. A minimized window is restored first (it cannot be moved) and minimized
/// again where that is asked for.
WindowMutationResult set(DesktopAccess& desktop, const LiveWindow& window, const Rect& frame, bool minimized);
/// How far a reading agrees with what was asked for; an absent one in nothing.
WindowMutationResult compare(const std::optional<LiveWindow>& now, const Rect& frame, bool minimized);
/// One write pass, then verified by polling for up to 3 s.
Task<WindowMutationResult> setAndWait(DesktopAccess& desktop, LiveWindow window, Rect frame, bool minimized);
/// Writes only where the state differs; whether the window was in that state or the write was accepted.
bool setMinimized(DesktopAccess& desktop, const LiveWindow& window, bool value);
bool setFullscreen(DesktopAccess& desktop, const LiveWindow& window, bool value);
Task<bool> unminimizeAndWait(DesktopAccess& desktop, LiveWindow window);
/// Drives the window into or out of full screen, verified (FullscreenTransition).
Task<bool> transitionFullscreen(DesktopAccess& desktop, LiveWindow window, bool target);

}  // namespace Accessibility
}  // namespace quillo
