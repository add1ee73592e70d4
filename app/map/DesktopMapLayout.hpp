// Where everything stands in a picture of a saved desktop: displays to scale, windows as tiles in their
// places, what fits into the visible part of each. Pure, and free of any toolkit; DesktopMap draws it.
//
// All rectangles are whole pixels in the map's own coordinates, origin at its top left.
#pragma once
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo {

/// detail and review are large maps, whose desktops one can choose from; restore is the panel of a running
/// restore, switcher and strip are small and without icons.
enum class MapStyle : std::uint8_t { detail, review, card, restore, switcher, strip };
std::optional<MapStyle> mapStyle(std::string_view name);  // "detail", ...

/// What has become of a window; saved is the resting state.
enum class TileState : std::uint8_t { saved, unticked, pending, landing, restored, failed, skipped };
std::optional<TileState> tileState(std::string_view name);  // "unticked", ...
/// Ghosts lie below everything solid: unticked windows, and those that are still to come.
bool isGhost(TileState state);
/// Failed and skipped windows carry a disc.
bool isMarked(TileState state);

/// small: names below icons; label: title bands and captions.
enum class MapText : std::uint8_t { small, label };

struct MapRequest {
    MapStyle style = MapStyle::card;
    double width = 0, height = 0;  // of the whole map, pixels
    /// Where a desktop was chosen: by display, the position among MapDisplay::desktops. Positions that there
    /// are none of are ignored.
    std::map<std::string, std::size_t> shownDesktops{};
    std::map<std::string, TileState> states{};  // by CaptureFilter::windowKey; absent: saved
    double textScale = 1;                       // 1 to 1.5
    /// Width in pixels, with the text scale.
    std::function<double(std::string_view text, MapText)> measure{};
};

/// What a tile shows of its window.
struct MapContent {
    enum class Kind : std::uint8_t { none, icon, named, titled };

    Kind kind = Kind::none;
    Rect icon;   // square
    Rect label;  // the application's name: centered below the icon (named) or beside it (titled)
    Rect title;  // the window's, where it fits (titled); else empty
};

struct MapWindow {
    std::string key;  // CaptureFilter::windowKey
    std::string bundleIdentifier, application, title;
    TileState state = TileState::saved;
};

struct MapTile {
    MapWindow window;
    Rect frame;
    double radius = 0;
    double band = 0;     // height of the title band, 0: none
    bool front = false;  // the front one of its display
    bool fullscreen = false;
    Rect visible;  // the largest part that nothing in front covers; empty where it is too narrow for anything
    MapContent content;
    Rect mark;  // the disc of a marked window, or the sign of full screen; empty: none
};

struct MapChip {
    MapWindow window;
    Rect icon;
};

inline constexpr std::string_view emptyNote = "No windows";

/// Minimized windows, and windows of displays that are unknown.
struct MapDock {
    Rect frame;
    double radius = 0;
    std::vector<MapChip> chips;
    std::string more;  // "+3"; empty: all are here
    Rect moreFrame;
};

/// One choice of what a display shows: an ordinary desktop, or a full-screen window, which owns one.
struct MapDesktop {
    std::string label;  // "Desktop 2", or the application's name
    bool empty = false;
    bool operator==(const MapDesktop&) const = default;
};

/// A segment of the choice below a display.
struct MapSegment {
    std::string label;
    std::size_t position = 0;  // among MapDisplay::desktops
    bool empty = false;
    bool operator==(const MapSegment&) const = default;
};

struct MapDisplay {
    std::string id;
    Rect frame;
    double radius = 0;
    double menuBar = 0;          // height of its line, 0: none
    std::vector<MapTile> tiles;  // back to front
    std::optional<MapDock> dock;
    Rect emptyNote;    // where it says that no window is there; empty: it does not
    std::string more;  // "+48", windows that are not drawn; empty: none
    Rect moreFrame;
    std::vector<MapDesktop> desktops;
    std::size_t shown = 0;
    std::vector<Rect> pips;            // one for each desktop; empty: none are drawn
    std::vector<MapSegment> segments;  // large maps: as many of the desktops as fit, the shown one among them
    Rect caption;                      // where the segments belong
};

struct DesktopMapLayout {
    std::vector<MapDisplay> displays;
    bool icons = true;  // false in maps that are too low for any
};

/// Takes any snapshot, whatever a stranger's file says; its time is bounded by the windows' number times a
/// constant. Displays without a usable frame are left out; without any display nothing is drawn.
///
/// Saved workspaces keep no stacking order across applications. A window stands before the larger ones, and
/// before those of its own application that come later in the list, so that as many as possible show.
DesktopMapLayout layoutDesktopMap(const WorkspaceSnapshot& snapshot, const MapRequest& request);

/// "2 displays, 8 windows", for people who do not see the map.
std::string mapDescription(const WorkspaceSnapshot& snapshot);

}  // namespace quillo
