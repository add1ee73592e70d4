#include "WindowEngine/capture/FullscreenCaptureMerge.hpp"

#include "WindowEngine/desktop/Displays.hpp"

namespace quillo::FullscreenCaptureMerge {

std::vector<WindowSnapshot> apply(std::vector<WindowSnapshot> windows,
                                  std::span<const HiddenWindowCandidate> hidden,
                                  std::span<const DisplaySnapshot> displays, const DesktopLookup& desktop) {
    for (const HiddenWindowCandidate& candidate : hidden) {
        const DisplaySnapshot* display = Displays::display(candidate.frame, displays);
        WindowSnapshot window;
        window.subrole = std::string(ax::standardWindow);
        window.frame = candidate.frame;
        if (display) window.displayID = display->id;
        // A full-screen window owns its own desktop.
        if (!candidate.isFullscreen) window.desktop = desktop(candidate.windowID, window.displayID);
        // Outside every display a window is its own reference.
        window.normalizedFrame =
            Displays::normalize(candidate.frame, display ? display->frame : candidate.frame);
        window.isFullscreen = candidate.isFullscreen;
        window.fullscreenConfirmed = true;
        window.index = static_cast<std::int64_t>(windows.size());
        windows.push_back(std::move(window));
    }
    return windows;
}

}  // namespace quillo::FullscreenCaptureMerge
