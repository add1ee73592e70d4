// What a restore would do, as far as it can be known before: the decision that it would begin with.
#pragma once
#include <set>
#include <string>
#include <vector>

#include "WindowEngine/DesktopTargets.hpp"
#include "WindowEngine/RestorePlan.hpp"
#include "ctl/ReopeningPlanText.hpp"

namespace quillo::ctl {

enum class Presence { running, installed, missing };

struct PlannedApplication {
    const ApplicationSnapshot* saved = nullptr;
    Presence presence = Presence::missing;
    ProcessID pid = 0;
    bool hangs = false;  // did not answer in time
    std::vector<LiveWindowInfo> live = {};
    std::vector<std::vector<SpaceID>> liveSpaces = {};  // of each
    std::vector<WindowPlan> windows = {};
    ReopeningPlan reopening = {};
};

struct RestorePreview {
    DesktopPlan desktops;
    std::vector<PlannedApplication> applications;
};

/// Reads the live windows of the saved applications once, then asks their integrations. Of applications that
/// do not run yet it is open which window will stand for which. Points into `snapshot`.
Task<RestorePreview> preview(DesktopAccess& desktop, const WorkspaceSnapshot& snapshot,
                             std::set<std::string> enabledAdapters);

}  // namespace quillo::ctl
