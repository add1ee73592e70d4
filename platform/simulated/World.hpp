// The state of a simulated desktop and how it changes: by requests, by the passing of virtual time, and by
// the faults laid over it. The services of SimulatedDesktop are thin views of it; tests reach in directly.
#pragma once
#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/services/Screens.hpp"
#include "WindowEngine/services/WindowServer.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "WindowEngine/support/Url.hpp"
#include "platform/simulated/Scene.hpp"

namespace quillo::simulated {

/// Result codes of the accessibility interface, as its public documentation numbers them.
namespace code {
inline constexpr std::int32_t success = 0;
inline constexpr std::int32_t failure = -25200;
inline constexpr std::int32_t invalidElement = -25202;
inline constexpr std::int32_t cannotComplete = -25204;
inline constexpr std::int32_t attributeUnsupported = -25205;
inline constexpr std::int32_t actionUnsupported = -25206;
inline constexpr std::int32_t apiDisabled = -25211;
inline constexpr std::int32_t noValue = -25212;
}  // namespace code

struct Window {
    WindowNumber number = 0;
    std::string application;  // identifier
    SceneWindow state;        // as it is now; `frame` is what is on screen
    SpaceID space = 0;        // its ordinary desktop; it returns there from full screen
    SpaceID fullscreenSpace = 0;
    Rect plainFrame;  // before full screen

    struct Transition {
        bool target = false;
        TimePoint until;
        bool flickers = false;
        bool shown = false;  // at the last reading, while it flickers
    };
    std::optional<Transition> transition;
};

struct Application {
    SceneApplication scene;
    bool running = false;
    bool starting = false;
    bool hidden = false;
    ProcessID pid = 0;
    Instant launchDate{};
    std::optional<TimePoint> hangsSince;  // a hang that a write brought about
    std::vector<Url> handedDocuments;     // since its launch
};

struct Display {
    SceneDisplay scene;
    std::vector<SpaceID> desktops;

    SpaceID shown() const { return desktops[static_cast<std::size_t>(scene.shownDesktop)]; }
};

class World {
  public:
    World(VirtualExecutor& executor, Scene scene, std::uint64_t seed);

    /// Lets everything happen that is due by now. Each service call begins with it.
    void advance();
    /// When the next thing happens by itself; TimePoint::max() when nothing does.
    TimePoint nextChange() const;

    bool trusted() const;
    void setTrusted(bool trusted) { trusted_ = trusted; }
    ScreenState screenState() const;

    const std::vector<Display>& displays() const { return displays_; }
    const Display* display(std::string_view id) const;
    void plug(SceneDisplay display);
    /// Its windows go to the primary display, as window servers do it. Where it was the primary one itself,
    /// the next one becomes so and all coordinates count from its corner.
    void unplug(std::string_view id);
    /// New frames for displays, by identifier; visible frames keep their insets, windows go with their
    /// display and stay inside. The display at 0, 0 becomes the primary one.
    void arrange(const std::map<std::string, Rect, std::less<>>& frames);
    /// Two displays of one size take each other's place, as when their cables are exchanged.
    void swap(std::string_view one, std::string_view other);

    std::vector<Application>& applications() { return applications_; }
    Application* application(std::string_view identifier);
    Application* application(ProcessID pid);
    /// Starts the process after its launch time; nothing when it runs or starts already.
    void start(Application& application);
    void end(Application& application);
    /// Behind the windows that are there: scenes list them front to back.
    Window& openWindow(Application& application, const SceneWindow& window);
    /// In front of all others, as one that a person or a script asks for.
    Window& openInFront(Application& application, const SceneWindow& window);
    /// A window as the application would make one now: on the desktop in front, a step away from its others.
    SceneWindow newWindow(const Application& application, std::string title) const;

    /// Whether this application can be asked for one more window.
    bool opensWindows(std::string_view identifier) const;
    /// Whether it behaves as an X11 desktop, where the two differ.
    bool likeX11() const { return likeX11_; }
    /// Why no desktop can be made; empty where they can.
    const std::string& desktopRefusal() const { return desktopRefusal_; }
    /// Why the document may not be opened; absent where it may.
    std::optional<std::string> refusal(const Url& document) const;
    /// One more desktop, of the one list that all displays share.
    void addSharedDesktop();
    /// As the application answers such a request: an empty window in front, a moment later.
    void openAnother(Application& application);

    /// Each opens one window a moment later, unless a window shows it by then.
    void openDocuments(Application& application, std::span<const Url> documents);
    /// What a person reads above a window that shows it.
    static std::string documentTitle(const Url& document);
    /// The address of what the window shows: its document, or the folder of a Finder window.
    static std::optional<std::string> documentOf(const Window& window);
    /// Ends it, unless it refuses or must ask about an unsaved window first.
    void requestQuit(Application& application);

    bool folderExists(std::string_view path) const;
    /// The title of a browser window that shows this address: that of the scene's window which does, or the
    /// name of the site.
    static std::string pageTitle(const Application& application, const std::string& address);
    /// A script is about to make a request of the application: what waits for that happens.
    void scriptAsks(std::string_view application);
    /// A script to the application has done its work: what waits for that happens.
    void scriptRan(std::string_view application);

    const std::deque<Window>& windows() const { return windows_; }
    Window* window(WindowNumber number);
    /// By application and exact title; null when there is none.
    Window* window(std::string_view application, std::string_view title);
    std::vector<Window*> windowsOf(std::string_view application);
    void close(WindowNumber number);
    /// In front of all others.
    void raise(WindowNumber number);
    void move(Window& window, const Rect& frame);

    // Requests that applications answer; the code is success or what the service would say.
    std::int32_t requestPosition(WindowNumber number, Point position);
    std::int32_t requestSize(WindowNumber number, Size size);
    std::int32_t requestMinimized(WindowNumber number, bool value);
    std::int32_t requestFullscreen(WindowNumber number, bool value);
    bool requestSpace(WindowNumber number, SpaceID space);

    // The overview of all desktops, which the Dock's process shows.
    /// False when the system does not accept the request; it shows a moment later.
    bool openOverview();
    void closeOverview() { overviewShownAt_.reset(); }
    bool overviewShown() const;
    bool showsAddDesktop(std::string_view displayID) const;
    /// One more desktop, a moment later; accepted and without effect at the limit of a display.
    std::int32_t pressAddDesktop(std::string_view displayID);

    /// As a person does it there: windows of the desktop go to the one before it (of the first: after it).
    /// The last desktop of a display stays.
    void removeDesktop(std::string_view displayID, std::int64_t index);

    /// The full-screen attribute as a reader sees it, in mid-transition too.
    bool shownFullscreen(const Window& window);
    /// Whether accessibility lists it: it stands on a desktop in front, or is minimized or full screen.
    bool listed(const Window& window) const;
    bool hangs(const Application& application) const;
    /// The window of the same native tab group that is in front; the window itself when it has no tabs.
    const Window* frontTab(const Window& window) const;

    /// The fault of this kind that applies now, or null.
    const Fault* fault(FaultKind kind, std::string_view application = {}, std::string_view title = {}) const;
    void add(Fault fault);

    /// The world as it is now, as a scene to start from.
    Scene scene() const;

  private:
    void at(TimePoint time, std::function<void()> happen);
    TimePoint afterStart(double seconds) const;
    void schedule(const Fault& fault);
    void eachConcerned(const Fault& fault, const std::function<void(Window&)>& act);
    void eachRunning(const Fault& fault, const std::function<void(Application&)>& act);
    /// What comes over the world at one moment.
    void happen(const Fault& fault);
    /// What the next request brings about (step 1), or the end of a script (step 0).
    void happenOnScript(std::string_view application, std::int64_t step);
    bool waitsForScript(const Fault& fault, std::string_view application) const;
    bool showsDocument(const Application& application, const Url& document) const;
    /// Whether a document that was handed over has its window already, so that this one does not come.
    bool broughtAlready(const Application& application, const SceneWindow& window) const;
    void settle(Window& window, const Application& application, const SceneWindow& scene);
    void openLaunchWindows(Application& application, const std::vector<SceneWindow>& windows, double late);
    void run(Application& application);
    void finish(Window& window);
    /// A display came from `from` to where `home` stands, and the window with it.
    static void follow(Window& window, const Rect& from, const SceneDisplay& home);
    static void copyPlace(const Window& from, Window& to);
    /// Native tabs are one window to a person: what is done to one is done to all.
    void shareWithTabs(const Window& window);
    void enterFullscreen(Window& window);
    void leaveFullscreen(Window& window);
    /// What a move brings about later.
    void drift(const Window& window);
    /// What the first write to a window brings about; false when the window is gone after it.
    bool suffer(Window& window);
    /// Null only when no display is attached.
    const Display* displayOf(const Rect& frame) const;
    SpaceID spaceFor(const SceneWindow& window) const;
    const Fault* fault(FaultKind kind, const Window& window) const;
    /// For its `seconds`; for ever when they are 0.
    bool lasts(FaultKind kind) const;
    std::vector<SceneWindow> sceneWindows(const Application& application) const;

    VirtualExecutor& executor_;
    TimePoint started_;
    bool trusted_;
    std::mt19937_64 random_;
    std::vector<Display> displays_;
    std::vector<Application> applications_;
    std::deque<Window> windows_;  // addresses stay while windows open
    std::deque<Fault> faults_;
    std::vector<std::string> missingFolders_;
    bool opensWindows_, likeX11_;
    std::vector<RefusedDocument> refusedDocuments_;
    std::string desktopRefusal_;
    std::set<WindowNumber> drifting_;  // that will, or have and do so once only
    std::multimap<TimePoint, std::function<void()>> events_;
    std::optional<TimePoint> overviewShownAt_;  // empty while it is closed
    SpaceID nextSpace_ = 1;
    WindowNumber nextNumber_ = 101;
    ProcessID nextPid_ = 500;
};

}  // namespace quillo::simulated
