// The displays of a desktop map: to scale, in their real arrangement, within the space there is.
#pragma once
#include <span>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "app/map/DesktopMapLayout.hpp"

namespace quillo {

/// What a style prescribes; pixels.
struct MapMeasures {
    double padding = 12, gap = 6;
    bool large = false;  // titles in bands (detail) and the choice of desktops below the displays
    bool titles = false;
};
MapMeasures mapMeasures(MapStyle style);

/// Small maps show neither icons nor pips.
bool showsIcons(const MapRequest& request);
/// Height of the choice of desktops and of the space above it.
double captionHeight(const MapRequest& request);

struct PlacedDisplay {
    const DisplaySnapshot* display;
    Rect frame;            // in the map
    bool several = false;  // desktops: small maps have a row of pips below it
};

/// In the snapshot's order; displays that have no usable frame, and those beyond the first sixteen, are left
/// out. They have no place yet.
std::vector<PlacedDisplay> usableDisplays(std::span<const DisplaySnapshot> displays);
/// Where the arrangement cannot be drawn (displays on top of each other, or a world apart) they stand in a
/// row.
void placeDisplays(std::vector<PlacedDisplay>& displays, const MapRequest& request);

}  // namespace quillo
