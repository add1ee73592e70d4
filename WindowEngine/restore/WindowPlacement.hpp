// Carries out the plan for the windows of one application: full screen, minimized state, frame, desktop; each
// verified by reading again. Every saved window ends in exactly one report item.
#pragma once
#include <vector>

#include "WindowEngine/restore/ItemSink.hpp"
#include "WindowEngine/restore/RestorePlan.hpp"

namespace quillo::Restore {

struct PlacementTargets {
    const std::vector<DisplaySnapshot>& savedDisplays;
    const std::vector<DisplaySnapshot>& currentDisplays;
    const DesktopTargets& desktops;
};

/// One window after the other, by saved index, unless windows move together (AccessibilityService): then each
/// is reported as it comes to rest. Cancelled, the items made so far stay. The references must outlive the
/// task. The windows that came back and can be seen are added to `back` as they do.
Task<void> placeWindows(DesktopAccess& desktop, const ApplicationSnapshot& application,
                        std::vector<LiveWindow> live, PlacementTargets targets, const ItemSink& sink,
                        std::vector<Element>& back);

}  // namespace quillo::Restore
