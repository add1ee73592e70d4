#include "app/map/DesktopMapDisplays.hpp"

#include <algorithm>
#include <cmath>

#include "app/map/VisibleRectangle.hpp"

namespace quillo {
namespace {

constexpr std::size_t mostDisplays = 16;
constexpr double leastSide = 10;  // pixels, of a display that one can recognise

bool usable(const Rect& frame) {
    const auto length = [](double side) { return side >= 1 && side <= 1e6; };
    return length(frame.width) && length(frame.height) && std::abs(frame.x) <= 1e7 &&
           std::abs(frame.y) <= 1e7;
}

Rect bounds(const std::vector<Rect>& frames) {
    Rect all = frames.front();
    for (const Rect& frame : frames) {
        const double right = std::max(all.maxX(), frame.maxX()), bottom = std::max(all.maxY(), frame.maxY());
        all.x = std::min(all.x, frame.x);
        all.y = std::min(all.y, frame.y);
        all.width = right - all.x;
        all.height = bottom - all.y;
    }
    return all;
}

/// Mirrored or mistaken displays lie on top of each other.
bool overlapping(const std::vector<Rect>& frames) {
    for (std::size_t i = 0; i < frames.size(); ++i) {
        for (std::size_t j = i + 1; j < frames.size(); ++j) {
            const double smaller =
                std::min(frames[i].width * frames[i].height, frames[j].width * frames[j].height);
            if (frames[i].intersectionArea(frames[j]) > smaller / 20) return true;
        }
    }
    return false;
}

/// All equally high, side by side.
std::vector<Rect> inRow(const std::vector<Rect>& frames) {
    std::vector<Rect> row;
    double x = 0;
    for (const Rect& frame : frames) {
        const double width = 1000 * std::clamp(frame.width / frame.height, 0.4, 3.0);
        row.push_back({x, 0, width, 1000});
        x += width;
    }
    return row;
}

struct MapSpace {
    double x, y, width, height;
};

MapSpace spaceFor(const MapRequest& request) {
    const double padding = mapMeasures(request.style).padding;
    return {padding, padding, std::max(1.0, request.width - 2 * padding),
            std::max(1.0, request.height - 2 * padding - captionHeight(request))};
}

double scaleFor(const Rect& all, const MapSpace& space) {
    return std::min(space.width / all.width, space.height / all.height);
}

/// Edges are rounded, not lengths: what touches on the desktop touches here.
std::vector<Rect> scaled(const std::vector<Rect>& frames, const MapSpace& space) {
    const Rect all = bounds(frames);
    const double scale = scaleFor(all, space);
    const double left = std::round(space.x + (space.width - all.width * scale) / 2);
    const double top = std::round(space.y + (space.height - all.height * scale) / 2);
    std::vector<Rect> result;
    for (const Rect& frame : frames) {
        const double x = std::round(left + (frame.minX() - all.x) * scale);
        const double y = std::round(top + (frame.minY() - all.y) * scale);
        result.push_back({x, y, std::max(1.0, std::round(left + (frame.maxX() - all.x) * scale) - x),
                          std::max(1.0, std::round(top + (frame.maxY() - all.y) * scale) - y)});
    }
    return result;
}

bool tooSmall(const std::vector<Rect>& frames) {
    return std::ranges::any_of(
        frames, [](const Rect& frame) { return std::min(frame.width, frame.height) < leastSide; });
}

bool rangesShare(double a, double aEnd, double b, double bEnd) {
    return std::min(aEnd, bEnd) - std::max(a, b) > 1;
}

struct Gaps {
    double left = 0, top = 0, right = 0, bottom = 0;
};

/// What a display gives up on the sides where another one touches it; below it stands its choice of desktops
/// or its row of pips.
Gaps gapsOf(std::size_t one, const std::vector<Rect>& frames, double gap, double below) {
    constexpr double touching = 2;
    const Rect& self = frames[one];
    Gaps gaps;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (i == one) continue;
        const Rect& other = frames[i];
        if (rangesShare(self.minY(), self.maxY(), other.minY(), other.maxY())) {
            if (std::abs(self.maxX() - other.minX()) <= touching) gaps.right = std::floor(gap / 2);
            if (std::abs(self.minX() - other.maxX()) <= touching) gaps.left = std::ceil(gap / 2);
        }
        if (rangesShare(self.minX(), self.maxX(), other.minX(), other.maxX())) {
            if (std::abs(self.maxY() - other.minY()) <= touching) gaps.bottom = std::floor(gap / 2) + below;
            if (std::abs(self.minY() - other.maxY()) <= touching) gaps.top = std::ceil(gap / 2);
        }
    }
    return gaps;
}

Rect without(const Rect& frame, const Gaps& gaps) {
    const double width = std::max(4.0, frame.width - gaps.left - gaps.right);
    const double height = std::max(4.0, frame.height - gaps.top - gaps.bottom);
    return {frame.x + gaps.left, frame.y + gaps.top, width, height};
}

}  // namespace

MapMeasures mapMeasures(MapStyle style) {
    switch (style) {
        case MapStyle::detail:
            return {.padding = 20, .gap = 14, .large = true, .titles = true};
        case MapStyle::review:
            return {.padding = 16, .gap = 10, .large = true, .titles = false};
        case MapStyle::card:
            return {.padding = 12, .gap = 6, .large = false, .titles = false};
        case MapStyle::restore:
            return {.padding = 14, .gap = 7, .large = false, .titles = false};
        case MapStyle::switcher:
        case MapStyle::strip:
            break;
    }
    return {.padding = 2, .gap = 3, .large = false, .titles = false};
}

bool showsIcons(const MapRequest& request) {
    const bool small = request.style == MapStyle::switcher || request.style == MapStyle::strip;
    return !small && request.height >= 56;
}

double captionHeight(const MapRequest& request) {
    return mapMeasures(request.style).large ? 7 + std::round(20 * request.textScale) + 4 : 0;
}

std::vector<PlacedDisplay> usableDisplays(std::span<const DisplaySnapshot> displays) {
    std::vector<PlacedDisplay> found;
    for (const DisplaySnapshot& display : displays) {
        if (usable(display.frame) && found.size() < mostDisplays) found.push_back({&display, {}});
    }
    return found;
}

void placeDisplays(std::vector<PlacedDisplay>& displays, const MapRequest& request) {
    if (displays.empty()) return;
    std::vector<Rect> frames;
    for (const PlacedDisplay& placed : displays) frames.push_back(placed.display->frame);
    const MapSpace space = spaceFor(request);
    if (overlapping(frames) || (frames.size() > 1 && tooSmall(scaled(frames, space)))) frames = inRow(frames);
    const std::vector<Rect> pixels = scaled(frames, space);
    const MapMeasures measures = mapMeasures(request.style);
    for (std::size_t i = 0; i < displays.size(); ++i) {
        const double pips = displays[i].several && showsIcons(request) ? 9 : 0;
        const double below = measures.large ? captionHeight(request) : pips;
        displays[i].frame = without(pixels[i], gapsOf(i, pixels, measures.gap, below));
    }
}

}  // namespace quillo
