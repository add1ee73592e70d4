// Saved windows that one restore leaves out: the live windows that stand for them are left alone. Without
// them, another saved window could take the place of one that the person wants to stay as it is.
#pragma once
#include <map>
#include <string>
#include <vector>

#include "WindowEngine/desktop/Accessibility.hpp"
#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/restore/DisplayTwins.hpp"

namespace quillo::Restore {

struct PassedOver {
    std::map<std::string, std::vector<WindowSnapshot>> windows = {};  // by application; none is empty
    std::vector<DisplaySnapshot> displays = {};                       // that they were saved on

    bool operator==(const PassedOver&) const = default;
};

/// DisplayLayouts::fitted() for a snapshot and the windows that are left out of it, which share its displays
/// and layouts.
WorkspaceSnapshot fitted(WorkspaceSnapshot snapshot, PassedOver& passedOver,
                         DisplayMapper::DisplayList current, const DisplayTwins::Pairs& answers);

/// Takes the live windows of an application that stand for left-out ones out of the list. Which those are is
/// decided among all its saved windows, `application`'s and the left-out ones, as if all were brought back.
void removeStandIns(const PassedOver& passedOver, const ApplicationSnapshot& application, Screens& screens,
                    std::vector<LiveWindow>& live);

}  // namespace quillo::Restore
