// Small rules that the parts of the world share.
#pragma once
#include <algorithm>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

#include "platform/simulated/Scene.hpp"

namespace quillo::simulated {

inline constexpr std::string_view finder = "com.apple.finder", safari = "com.apple.Safari";

inline Duration toDuration(double seconds) {
    return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
}

/// An empty name means every one.
inline bool concerns(const std::string& name, std::string_view value) {
    return name.empty() || name == value;
}

inline double roundedDown(double length, double cell) {
    return cell > 1 ? static_cast<double>(static_cast<std::int64_t>(length / cell)) * cell : length;
}

/// The size a window takes when it is asked for one: within its limits, in whole cells as terminals do.
inline Size allowedSize(const SceneWindow& window, Size size) {
    size = {std::max(size.width, window.minimumSize.width), std::max(size.height, window.minimumSize.height)};
    if (window.maximumSize)
        size = {std::min(size.width, window.maximumSize->width),
                std::min(size.height, window.maximumSize->height)};
    return {roundedDown(size.width, window.cell.width), roundedDown(size.height, window.cell.height)};
}

inline Rect movedBy(const Rect& frame, double dx, double dy) {
    return {frame.x + dx, frame.y + dy, frame.width, frame.height};
}

/// At the same offset in `to` as it had in `from`, pulled inside and no larger.
inline Rect movedBetween(const Rect& frame, const Rect& from, const Rect& to) {
    const double width = std::min(frame.width, to.width), height = std::min(frame.height, to.height);
    const double x = to.minX() + frame.minX() - from.minX(), y = to.minY() + frame.minY() - from.minY();
    return {std::clamp(x, to.minX(), to.maxX() - width), std::clamp(y, to.minY(), to.maxY() - height), width,
            height};
}

}  // namespace quillo::simulated
