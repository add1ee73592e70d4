#include "app/map/DesktopMapTiles.hpp"

#include <algorithm>
#include <cmath>

#include "app/map/VisibleRectangle.hpp"

namespace quillo {
namespace {

constexpr double bandHeight = 26;
constexpr double discSize = 16;
constexpr double cutOut = 2;  // what the tiles in front take beyond their edges

double tileRadius(double height) {
    return height >= 70 ? 7 : height >= 30 ? 4 : 2;
}

double lineHeight(MapText text, const MapRequest& request) {
    return std::round((text == MapText::small ? 12 : 14) * request.textScale);
}

/// Icons and words want some room, but more than that is worth nothing; titles want to stand in their band.
double scoreOf(const Rect& rect, const Rect& tile, bool titles) {
    const double points = std::min(rect.width, 150.0) * std::min(rect.height, titles ? 60.0 : 110.0);
    const bool inBand = titles && rect.y == tile.y && rect.width >= 84 && rect.height >= bandHeight;
    return inBand ? points * 1.8 : points;
}

Rect visiblePart(const Rect& tile, const std::vector<Rect>& covers, bool titles) {
    std::vector<Rect> wide;
    for (const Rect& cover : covers) wide.push_back(grown(cover, cutOut));
    const Rect best =
        bestVisibleRectangle(tile, wide, [&](const Rect& rect) { return scoreOf(rect, tile, titles); });
    return intersection(best, grown(tile, -1));
}

bool anyPixelVisible(const Rect& tile, const std::vector<Rect>& covers) {
    const auto area = [](const Rect& rect) { return rect.width * rect.height; };
    return !bestVisibleRectangle(tile, covers, area).empty();
}

MapContent iconOnly(const Rect& area) {
    const double shorter = std::min(area.width, area.height);
    const double size = std::clamp(std::round(shorter * 0.56), 9.0, area.height > 60 ? 24.0 : 18.0);
    return {MapContent::Kind::icon, centeredSquare(area, size), {}, {}};
}

MapContent named(const Rect& area, const MapRequest& request) {
    const double line = lineHeight(MapText::small, request);
    const double size = std::clamp(std::round(std::min(area.width, area.height) * 0.34), 14.0, 24.0);
    const double top = std::round(area.y + (area.height - size - 4 - line) / 2);
    const double left = std::round(area.x + (area.width - size) / 2);
    return {MapContent::Kind::named, {left, top, size, size}, {area.x, top + size + 4, area.width, line}, {}};
}

MapContent titled(const Rect& area, const MapRequest& request) {
    const double line = lineHeight(MapText::label, request);
    MapContent content{MapContent::Kind::titled,
                       {area.x + 7, area.y + 4, 16, 16},
                       {area.x + 29, area.y, area.width - 34, bandHeight - 1},
                       {}};
    if (area.width >= 82 && area.height >= bandHeight + 8 + line)
        content.title = {area.x + 8, area.y + bandHeight + 6, area.width - 14, line};
    return content;
}

/// A name that is cut to a letter or two says less than the icon alone.
bool isLegible(const std::string& name, const Rect& visible, const MapRequest& request) {
    const double whole = request.measure ? request.measure(name, MapText::label) : 0;
    return titled(visible, request).label.width >= std::min(whole, 36 * request.textScale);
}

/// `titles`: where the style has title bands and the tile is no full-screen window.
MapContent contentFor(const Rect& visible, const std::string& name, bool titles, const MapRequest& request) {
    if (titles && visible.width >= 62 && visible.height >= bandHeight - 2 &&
        isLegible(name, visible, request))
        return titled(visible, request);
    const double line = lineHeight(MapText::small, request);
    const double label = request.measure ? request.measure(name, MapText::small) + 6 : 1e9;
    if (!name.empty() && visible.width >= std::max(44.0, label) && visible.height >= 28 + line)
        return named(visible, request);
    if (visible.width >= 13 && visible.height >= 13) return iconOnly(visible);
    return {};
}

/// Down to where a name ends that begins within the band, because another window hides its upper part.
void widenBand(MapTile& tile) {
    const double hidden = tile.visible.y - 1 - tile.frame.y;
    if (hidden < tile.band) tile.band = std::min(bandHeight + hidden, tile.frame.height);
}

/// The disc in the corner of what is visible, and the content out of its way.
void addMark(MapTile& tile, const MapRequest& request) {
    const Rect& area = tile.visible;
    const double size = std::min({discSize, area.width, area.height});
    if (size < 7) return;
    const bool roomy = area.width >= 30 && area.height >= 26;
    tile.mark = roomy ? Rect{area.maxX() - size - 3, area.y + 3, size, size} : centeredSquare(area, size);
    MapContent& content = tile.content;
    if (!roomy) {
        content = {};
    } else if (content.kind == MapContent::Kind::titled) {
        content.label.width = std::max(0.0, tile.mark.x - 3 - content.label.x);
    } else if (content.icon.intersects(grown(tile.mark, 2))) {
        const Rect rest{area.x, area.y + 9, area.width - 11, area.height - 9};
        const double line = lineHeight(MapText::small, request);
        const bool fits = content.kind == MapContent::Kind::named && rest.height >= 18 + line;
        if (!fits) content = iconOnly(rest);
        // The name stays at the lower edge, where the disc is not; the icon keeps out of both their ways.
        if (fits) content.label.y = std::max(content.label.y, tile.mark.maxY());
        if (fits) content.label.y = std::min(content.label.y, area.maxY() - line);
        const Rect room = fits ? Rect{rest.x, rest.y, rest.width, content.label.y - 2 - rest.y} : rest;
        const double least = std::min(room.width, room.height);
        content.icon =
            centeredSquare(room, std::min(content.icon.width, std::round(least * (fits ? 1 : 0.7))));
    }
}

}  // namespace

double displayRadius(double height) {
    return height >= 140 ? 9 : height >= 50 ? 5 : 3;
}

Rect centeredSquare(const Rect& area, double size) {
    return {std::round(area.x + (area.width - size) / 2), std::round(area.y + (area.height - size) / 2), size,
            size};
}

std::vector<MapTile> makeTiles(const std::vector<TileSource>& windows, const std::vector<Rect>& covers,
                               const PlacedDisplay& display, const MapRequest& request) {
    const bool titles = mapMeasures(request.style).titles, icons = showsIcons(request);
    std::vector<Rect> inFront = covers;
    std::vector<MapTile> tiles;
    for (auto one = windows.rbegin(); one != windows.rend(); ++one) {
        const Rect& frame = one->frame;
        if (!anyPixelVisible(frame, inFront)) continue;
        MapTile& tile = tiles.emplace_back();
        tile.window = one->saved.described();
        tile.frame = frame;
        tile.radius = std::min(tileRadius(frame.height), displayRadius(display.frame.height));
        tile.band = titles && frame.height >= 60 ? bandHeight : 0;
        tile.visible = icons ? visiblePart(frame, inFront, titles) : Rect{};
        if (icons) tile.content = contentFor(tile.visible, tile.window.application, titles, request);
        if (tile.band > 0 && tile.content.kind == MapContent::Kind::titled) widenBand(tile);
        if (icons && isMarked(tile.window.state)) addMark(tile, request);
        inFront.push_back(frame);
    }
    if (!tiles.empty()) tiles.front().front = !isGhost(tiles.front().window.state);
    std::ranges::reverse(tiles);
    return tiles;
}

MapTile makeFullscreenTile(const SavedWindow& saved, const PlacedDisplay& display, double radius,
                           const MapRequest& request) {
    MapTile tile;
    tile.window = saved.described();
    tile.frame = display.frame;
    tile.radius = radius;
    tile.front = !isGhost(saved.state);
    tile.fullscreen = true;
    tile.visible = showsIcons(request) ? display.frame : Rect{};
    if (showsIcons(request)) tile.content = contentFor(tile.visible, tile.window.application, false, request);
    const double size = display.frame.height < 80 ? 8 : 12;
    if (isMarked(saved.state) && showsIcons(request)) {
        addMark(tile, request);
    } else if (display.frame.height >= size + 12 && display.frame.width >= size + 12) {
        tile.mark = {display.frame.maxX() - size - 5, display.frame.y + 5, size, size};
    }
    return tile;
}

}  // namespace quillo
