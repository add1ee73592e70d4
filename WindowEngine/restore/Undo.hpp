// Putting everything back as it was before a restore. What is undone is what still lives and is surely the
// same; what a restore opened stays, and is named.
#pragma once
#include <functional>
#include <string>
#include <vector>

#include "WindowEngine/records/UndoRecord.hpp"
#include "WindowEngine/restore/Restore.hpp"
#include "WindowEngine/restore/RestorePlan.hpp"

namespace quillo::Restore {

/// Keeps the record for an undo: called before anything is touched, and once more when it is known what was
/// done.
using KeepRecord = std::function<void(const UndoRecord&)>;

/// run() with a record of the desktop before (Capture::undoRecord), which it completes.
Task<RestoreReport> runUndoably(DesktopAccess& desktop, Workspace workspace, Options options, OnItem onItem,
                                UndoRecord record, KeepRecord keep);

/// Which live window is which of the desktop before, and what else an undo would do.
struct UndoPlan {
    struct Application {
        const ApplicationSnapshot* saved = nullptr;  // in the record
        std::vector<LiveWindow> live = {};
        std::vector<WindowPlan> windows =
            {};  // one for each saved window: its live one, or why there is none
        bool relaunched =
            false;  // was asked to quit, does not run, and can be launched: with all its windows
        bool shown = false, hidden = false;  // as a whole
        bool hangs = false;                  // did not answer in time: nothing is known of its windows
    };
    std::vector<Application> applications;
    // Of applications that are never saved: to be unminimized, and to be shown.
    std::vector<LiveWindow> otherWindows;
    std::vector<std::string> otherApplications;
    std::vector<UndoLaunch> launched;  // launchedAndRunning(): offered for closing, never closed
    std::vector<std::string> remains;  // remains()

    std::int64_t windowCount() const;  // that still live
    std::int64_t relaunchedCount() const;
    /// All that cannot be undone, as a person is told it before: what remains, and windows that have gone.
    std::vector<std::string> limits() const;
};

/// Whether anything that the record knows, what was launched as well, still runs as it did: after a logout,
/// nothing does.
bool isOfThisSession(Applications& applications, const UndoRecord& record);

/// What the restore launched and still runs; not what somebody quit since and started again.
std::vector<UndoLaunch> launchedAndRunning(Applications& applications, const UndoRecord& record);
/// What the restore did and no undo takes back, in sentences without full stop. No window is read for it.
std::vector<std::string> remains(Applications& applications, const UndoRecord& record);

/// Reads the desktop and changes nothing. Pointers are into `record`.
UndoPlan planUndo(DesktopAccess& desktop, const UndoRecord& record);

/// Moves, shows, hides, minimizes and un-minimizes what lives, launches again what was quit, and puts windows
/// in their former order, where nobody has gone to another window meanwhile. Of `options` the launch timeout,
/// settle delay and integrations count. One item for each window, and a remark for each thing that remains.
/// Never throws; cancelled, the report is marked so and all may be undone once more. Not itself undone.
Task<RestoreReport> undo(DesktopAccess& desktop, UndoRecord record, Options options, OnItem onItem);

/// Asks each of them that still runs to quit; it may ask its person to save.
void closeLaunched(Applications& applications, const std::vector<UndoLaunch>& launched);

}  // namespace quillo::Restore
