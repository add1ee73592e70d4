// Which windows a desktop map shows on each display, on which of its desktops, and in which order.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "app/map/DesktopMapDisplays.hpp"

namespace quillo {

struct SavedWindow {
    const ApplicationSnapshot* application;
    const WindowSnapshot* window;
    std::size_t place;  // of the application in the snapshot
    TileState state;

    std::string key() const;
    MapWindow described() const;
};

/// One choice of what a display shows.
struct DesktopChoice {
    MapDesktop desktop;
    std::vector<SavedWindow> windows;  // in the snapshot's order; those of no known desktop in the shown one
    bool fullscreen = false;           // a single full-screen window, which owns the desktop
};

struct DisplayWindows {
    std::vector<DesktopChoice>
        choices;                        // at least one; ordinary desktops by number, then full-screen windows
    std::size_t shown = 0;              // the one asked for, else the one with the most windows
    std::vector<SavedWindow> homeless;  // whose display is unknown: on the primary one's fullest desktop
};

/// One for each of `displays`, in their order.
std::vector<DisplayWindows> windowsOfDisplays(const WorkspaceSnapshot& snapshot,
                                              const std::vector<PlacedDisplay>& displays,
                                              const MapRequest& request);

struct TileSource {
    SavedWindow saved;
    Rect frame;  // in the map, within the display
};

struct TileChoice {
    std::vector<TileSource> tiles;  // back to front; ghosts first
    std::size_t more = 0;           // besides these, where they are too many
};

/// The tiles of the windows that are not minimized: of more than twelve, those in front of their applications
/// and then the larger ones. Those that another one hides as a whole are only counted, and only then.
TileChoice chooseTiles(const std::vector<SavedWindow>& windows, const PlacedDisplay& display);

}  // namespace quillo
