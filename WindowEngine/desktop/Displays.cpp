#include "WindowEngine/desktop/Displays.hpp"

#include <fmt/format.h>

#include <cmath>
#include <stdexcept>

namespace quillo::Displays {
namespace {

std::int64_t wholePoints(double length) {
    if (!(std::abs(length) < 0x1p63))
        throw std::logic_error("a screen has a size that is no number of points");
    return static_cast<std::int64_t>(length);
}

std::string decimalScale(double scale) {
    std::string text = fmt::format("{}", scale);
    if (text.find_first_of(".en") == std::string::npos) text += ".0";
    return text;
}

}  // namespace

std::string identifier(const Screen& screen) {
    if (screen.stableID) return *screen.stableID;
    return fmt::format("{}x{}@{}", wholePoints(screen.frame.width), wholePoints(screen.frame.height),
                       decimalScale(screen.scale));
}

std::vector<DisplaySnapshot> current(Screens& screens) {
    std::vector<DisplaySnapshot> displays;
    for (const Screen& screen : screens.screens()) {
        displays.push_back({.id = identifier(screen),
                            .frame = screen.frame,
                            .visibleFrame = screen.visibleFrame,
                            .scale = screen.scale,
                            .isPrimary = displays.empty(),
                            .model = screen.model,
                            .connector = screen.connector});
    }
    return displays;
}

const DisplaySnapshot* display(const Rect& rect, std::span<const DisplaySnapshot> displays) {
    const DisplaySnapshot* best = nullptr;
    double bestArea = 0;
    for (const DisplaySnapshot& candidate : displays) {
        if (candidate.frame.contains(rect.center())) return &candidate;
    }
    for (const DisplaySnapshot& candidate : displays) {
        const double area = candidate.frame.intersectionArea(rect);
        if (area > bestArea) {
            best = &candidate;
            bestArea = area;
        }
    }
    return best;
}

Rect normalize(const Rect& rect, const Rect& displayFrame) {
    if (!(displayFrame.width > 0 && displayFrame.height > 0)) return {};
    return {(rect.minX() - displayFrame.minX()) / displayFrame.width,
            (rect.minY() - displayFrame.minY()) / displayFrame.height, rect.width / displayFrame.width,
            rect.height / displayFrame.height};
}

Rect denormalize(const Rect& rect, const Rect& displayFrame) {
    return {displayFrame.minX() + rect.minX() * displayFrame.width,
            displayFrame.minY() + rect.minY() * displayFrame.height, rect.width * displayFrame.width,
            rect.height * displayFrame.height};
}

}  // namespace quillo::Displays
