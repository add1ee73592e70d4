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
    DisplayMapper::Edges edges = DisplayMapper::Edges::inside;
};

/// What is done about windows that move or resize themselves within a second after they were placed, as new
/// ones do.
enum class Drift {
    ignored,    // of windows that were there before nothing of the kind is expected
    corrected,  // they are waited for, placed again once, and told as adjusted where that does not help
};

/// One window after the other, by saved index, unless windows move together (AccessibilityService): then each
/// is reported as it comes to rest; where drift is corrected, those that are back in a plain frame come last.
/// Cancelled, what was placed until then is reported. The references must outlive the
/// task. The windows that came back and can be seen are added to `back` as they are reported.
Task<void> placeWindows(DesktopAccess& desktop, const ApplicationSnapshot& application,
                        std::vector<LiveWindow> live, PlacementTargets targets, const ItemSink& sink,
                        std::vector<Element>& back, Drift drift = Drift::ignored);
/// The same, which live window stands for which saved one being decided: one plan for each saved window that
/// is to be reported, of which only pair and reason count.
Task<void> placeWindows(DesktopAccess& desktop, const ApplicationSnapshot& application,
                        std::vector<LiveWindow> live, std::vector<WindowPlan> plans, PlacementTargets targets,
                        const ItemSink& sink, std::vector<Element>& back, Drift drift = Drift::ignored);

}  // namespace quillo::Restore
