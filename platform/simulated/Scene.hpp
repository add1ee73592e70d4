// A simulated desktop as data: what a scene file says and what it becomes. docs/scenes.md describes the file.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/services/Applications.hpp"
#include "WindowEngine/support/Error.hpp"
#include "WindowEngine/support/Rect.hpp"

namespace quillo::simulated {

struct SceneDisplay {
    std::string id;
    Rect frame;         // global points, top left; the first display is the primary one
    Rect visibleFrame;  // less the menu bar; the frame itself unless given
    double scale = 2;
    std::int64_t desktops = 1;
    std::int64_t shownDesktop = 0;                        // index of the desktop in front
    std::optional<std::string> model = std::nullopt;      // identical displays share it
    std::optional<std::string> connector = std::nullopt;  // where it is plugged in
};

struct SceneWindow {
    std::optional<std::string> title;
    std::string subrole = "AXStandardWindow";
    std::optional<std::string> document;
    Rect frame;
    bool minimized = false;
    bool fullscreen = false;
    std::string display;       // empty: the one that holds the frame
    std::int64_t desktop = 0;  // index on its display
    bool listed = true;        // false: accessibility never lists it, as some full-screen windows
    Size minimumSize;
    std::optional<Size> maximumSize;
    Size cell{1, 1};                  // sizes are rounded down to multiples, as terminals do
    double opensAfter = 0;            // seconds after the launch of its application
    double closesAfter = 0;           // seconds after it opened, as a splash window does; 0: it stays
    std::string tabGroup{};           // windows of one application and group are native tabs of one window
    bool unsaved = false;             // its application does not quit without asking
    std::vector<std::string> tabs{};  // addresses, the tab in front first; of a Finder window its folder
    bool privateBrowsing = false;     // also one that is locked
    bool toolbar = true;
    std::int64_t addressFieldDepth = 3;  // levels below the toolbar
    bool everyDesktop = false;
    std::string immovable{};  // why its place is nobody's to set; empty: it can be moved
};

struct SceneApplication {
    std::string identifier;
    std::string name;
    ActivationPolicy policy = ActivationPolicy::regular;
    bool installed = true;
    bool running = true;
    bool hidden = false;
    double launchSeconds = 0.5;        // from the launch to the running process
    std::vector<SceneWindow> windows;  // there now when it runs; otherwise opened at launch
    std::vector<SceneWindow> reopens;  // opened at a later launch; the windows themselves unless given
    double documentSeconds = 0.3;      // from a document or window that it is to open to its window
    std::string language = "en";
    bool singleWindow = false;  // it cannot be asked for one more
};

enum class FaultKind {
    launchRefused,
    slowLaunch,   // `seconds` more until the process runs
    lateWindows,  // `seconds` more until its windows open
    requestWindowRefused,
    moveRefused,      // the write answers with an error
    moveIgnored,      // the write answers yes and nothing moves
    positionClamped,  // held inside the visible frame
    sizeClamped,      // never larger than half the display
    minimizeRefused,
    unminimizeRefused,
    minimizeIgnored,
    fullscreenRefused,
    fullscreenIgnored,
    fullscreenSlow,      // `seconds` more until the state holds
    fullscreenFlickers,  // readings flip back and forth meanwhile
    titleChanges,        // to `value`
    windowVanishes,
    desktopMoveRefused,
    desktopMoveIgnored,  // the window server answers yes and nothing moves
    overviewRefused,
    addDesktopMissing,  // the overview shows no such button
    addDesktopRefused,
    addDesktopIgnored,
    applicationHangs,  // for `seconds`, for ever when 0
    applicationCrashes,
    quitRefused,
    hideRefused,
    displayUnplugged,  // `value` names the display
    screenBlank,       // for `seconds`, for ever when 0
    screenLocked,      // likewise
    permissionRevoked,
    openWindowRefused,
    openWindowIgnored,  // accepted, and no window appears
    openWindowLate,     // `seconds` more until it appears
    openWindowOpensTwo,
    windowDrifts,  // `seconds` after a move it moves itself 6 points on: once, or with `value` "always" each
                   // time
    documentRefused,
    documentIgnored,        // accepted, and no window appears
    documentLate,           // `seconds` more until its window appears
    automationRefused,      // the person has not allowed it
    automationSlow,         // `seconds` more until a script is answered
    newWindowUnidentified,  // the browser makes the window and does not say which it is
    turnsPrivate,           // the window, at its time
    windowRaised,           // the person brings it in front of its application's others
    privateWindowOpens,     // the person opens another one, in front
};

/// Something that goes wrong. It begins `after` seconds of virtual time and applies to the application and
/// window named; empty names mean every one.
struct Fault {
    FaultKind kind{};
    std::string application;
    std::string title;
    std::string value;
    double after = 0;
    double seconds = 0;
    bool onWrite = false;  // windowVanishes, applicationCrashes, applicationHangs: at the first write instead
    // Of what happens at a time, instead: once, when the next script to its application has done its work,
    // or, with a `step`, right before scripts make that request of it (from 1).
    bool onScript = false;
    std::int64_t step = 0;

    bool operator==(const Fault&) const = default;
};

/// A document that may not be opened.
struct RefusedDocument {
    std::string document;  // its address
    std::string reason;

    bool operator==(const RefusedDocument&) const = default;
};

struct Scene {
    bool trusted = true;
    std::vector<SceneDisplay> displays;
    std::vector<SceneApplication> applications;
    std::vector<Fault> faults;
    std::vector<std::string> missingFolders{};  // paths; every other folder exists
    bool opensWindows = false;                  // applications can be asked for one more window
    bool likeX11 = false;  // one list of desktops for all displays, and the like: docs/scenes.md
    std::vector<RefusedDocument> refusedDocuments{};
    std::string desktopRefusal{};  // why no desktop can be made; empty: they can
};

/// `name` is the file's name, for errors: "scene.json: applications[0].windows[1].frame: expected ...".
Result<Scene> readScene(std::string_view json, std::string_view name);
std::string writeScene(const Scene& scene);

}  // namespace quillo::simulated
