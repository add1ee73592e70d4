// Brings a saved workspace back onto the screen.
#pragma once
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>

#include "WindowEngine/desktop/Accessibility.hpp"
#include "WindowEngine/restore/PassedOver.hpp"
#include "WindowEngine/restore/RestoreReport.hpp"

namespace quillo::Restore {

class LateWindows;

struct Options {
    double launchTimeout = 15.0;                              // seconds to wait for an application's windows
    std::optional<CleanSlateMode> cleanSlate = std::nullopt;  // absent: other applications are kept
    double settleDelay = 1.0;  // seconds without a new window after which an application is complete
    std::set<std::string> enabledAdapters = {};  // integrations whose context is restored
    bool limited = true;  // RestoreScope's limits hold; a person may lift them for what they saved themself
    bool bringsForward = false;  // at its end, what came back is put in front of other windows (BringForward)
    LateWindows* late = nullptr;  // is told which windows did not turn up; null: nobody waits for those
    bool arrangesOnly = false;    // windows that are open are moved; nothing is launched, opened or made
    std::map<std::string, std::string> displays = {};  // present ones by saved ones, as the person told them
    bool followsLinks = true;  // a document that a symbolic link leads to is opened; not of a stranger's file
    /// Applications that a clean slate leaves alone besides the workspace's own: where only a part of a
    /// workspace is brought back, those of all of it.
    std::set<std::string> kept = {};
    PassedOver passedOver = {};  // windows that are not among the workspace's, for this run
};

/// Called on the executor's thread for each item as it is made, in report order.
using OnItem = std::function<void(const RestoreReport::Item&)>;

/// Never throws: trouble is items; cancelled, the report is marked so and keeps the items made until then.
/// (Being cancelled, it still returns its report: whoever awaits the Job gets it.)
Task<RestoreReport> run(DesktopAccess& desktop, Workspace workspace, Options options, OnItem onItem);

}  // namespace quillo::Restore
