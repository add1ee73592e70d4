// What a restore would do, as far as it can be known before: the decision that it would begin with, and what
// of it a person should hear before a workspace of somebody else is brought back. Nothing here changes the
// desktop.
#pragma once
#include <cstddef>
#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "WindowEngine/integrations/ContextAdapter.hpp"
#include "WindowEngine/restore/DesktopTargets.hpp"
#include "WindowEngine/restore/DocumentRestore.hpp"
#include "WindowEngine/restore/RestorePlan.hpp"
#include "WindowEngine/restore/RestoreScope.hpp"

namespace quillo {

enum class Presence { running, installed, missing };

/// Documents, folders and tabs of one application.
struct ReopeningPlan {
    Restore::DocumentPlan documents;
    std::vector<AdapterStep> steps;  // of the integration
    std::string contextTrouble;      // why an integration would open nothing; may be empty
    bool askedForWindow = false;     // in case the application has none
    std::size_t moreWindows = 0;     // it is asked for at most, beside what brings windows anyway
};

struct PlannedApplication {
    const ApplicationSnapshot* saved = nullptr;
    Presence presence = Presence::missing;
    ProcessID pid = 0;
    bool hangs = false;  // did not answer in time
    std::vector<LiveWindow> live = {};
    std::vector<std::vector<SpaceID>> liveSpaces = {};  // of each
    std::vector<WindowPlan> windows = {};
    ReopeningPlan reopening = {};
};

/// What a restore comes to for a saved window.
enum class Prospect : std::uint8_t {
    inPlace,
    changed,
    awaited,  // its window is yet to open, or its application to answer
    skipped,
};

struct RestorePreview {
    std::shared_ptr<const Restore::RestoreScope> scope;  // what the applications below point into
    DesktopPlan desktops;
    std::vector<PlannedApplication> applications;
    std::vector<DisplaySnapshot> displays = {};  // attached now
    std::set<std::string> kept = {};             // Options::kept of it
};

/// What a restore would come to, counted as its report counts.
struct PlanTotals {
    std::int64_t inPlace = 0, changed = 0, awaited = 0;  // windows
    std::int64_t launched = 0, createdDesktops = 0, opened = 0, skipped = 0, failed = 0;

    /// A restore would find everything as it was saved.
    bool nothingToDo() const;
};

/// What a restore does to a desktop beside moving windows, now or at another time: a person agrees to it
/// once. So it names each application, also one that runs, and each saved document and address, whatever
/// stands there now.
struct Consequences {
    struct Opening {
        std::string location;     // a file's path, or an address
        std::string application;  // that is to open it

        bool operator==(const Opening&) const = default;
    };
    CleanSlateMode others = CleanSlateMode::keep;  // what becomes of them
    std::vector<std::string> quit;                 // applications that are asked to
    std::vector<std::string> hidden;               // applications
    std::vector<std::string> launched;             // applications
    std::vector<std::string> launchedLater;        // that run now, and are launched when they do not
    std::vector<Opening> opened;                   // documents first, then what integrations open
    std::int64_t desktops = 0;                     // made

    bool operator==(const Consequences&) const = default;
};

namespace Restore {

Prospect prospectOf(const PlannedApplication& application, const WindowPlan& plan);
/// What the window's plan changes; nothing where no live window stands for it yet.
WindowChange changeOf(const RestorePreview& preview, const PlannedApplication& application,
                      const WindowPlan& plan);
/// What becomes of other applications is not in it.
PlanTotals totalsOf(const RestorePreview& preview);

/// Reads the live windows of the saved applications once, then asks their integrations. Of applications that
/// do not run yet it is open which window will stand for which, and everything is yet to be opened.
Task<RestorePreview> preview(DesktopAccess& desktop, WorkspaceSnapshot snapshot, Options options);

/// `preview` is of this workspace, or of a part of it; `mode` is what a restore would do to the applications
/// that it does not hold.
Consequences consequences(Applications& applications, const RestorePreview& preview,
                          const Workspace& workspace, CleanSlateMode mode);

}  // namespace Restore
}  // namespace quillo
