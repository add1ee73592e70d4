// What the tiles of one display in a desktop map show: how much of each is visible, and what fits in there.
#pragma once
#include <vector>

#include "app/map/DesktopMapWindows.hpp"

namespace quillo {

/// `covers` lie above all tiles (dock, "+n"). Tiles of which no pixel is visible are left out.
std::vector<MapTile> makeTiles(const std::vector<TileSource>& windows, const std::vector<Rect>& covers,
                               const PlacedDisplay& display, const MapRequest& request);

/// One window in full screen: the whole display.
MapTile makeFullscreenTile(const SavedWindow& saved, const PlacedDisplay& display, double radius,
                           const MapRequest& request);

/// Corners of displays by their height.
double displayRadius(double height);

/// An icon of `size` in the middle of `area`.
Rect centeredSquare(const Rect& area, double size);

}  // namespace quillo
