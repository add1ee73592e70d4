// Carries out the plan for the windows of one application: full screen, minimized state, frame; each verified
// by reading again. Every saved window ends in exactly one report item.
#pragma once
#include <vector>

#include "WindowEngine/ItemSink.hpp"

namespace quillo::Restore {

struct PlacementDisplays {
    const std::vector<DisplaySnapshot>& saved;
    const std::vector<DisplaySnapshot>& current;
};

/// One window after the other, by saved index: the window server handles moves in order, and verification
/// would otherwise see another window's animation. Cancelled, the items made so far stay. The references
/// must outlive the task.
Task<void> placeWindows(DesktopAccess& desktop, const ApplicationSnapshot& application,
                        std::vector<LiveWindow> live, PlacementDisplays displays, const ItemSink& sink);

}  // namespace quillo::Restore
