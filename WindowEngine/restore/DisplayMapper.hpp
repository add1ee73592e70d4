// Which current display stands for a saved one, and where on it a saved window goes. Pure.
#pragma once
#include <optional>
#include <span>
#include <string>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo::DisplayMapper {

struct Placement {
    Rect frame;             // global points
    bool adjusted = false;  // display re-mapped, resized or missing, or the frame had to be pulled inside

    bool operator==(const Placement&) const = default;
};

using DisplayList = std::span<const DisplaySnapshot>;

/// What becomes of a frame that hangs over the edge of a display which is as it was.
enum class Edges {
    inside,  // it is pulled inside: a workspace may be old, or come from elsewhere
    kept,    // the window stood so a moment ago, and goes back there
};

std::optional<Placement> place(const WindowSnapshot& window, DisplayList saved, DisplayList current,
                               Edges edges = Edges::inside);
/// Null only when `current` is empty. Pointers are into `current`.
const DisplaySnapshot* targetDisplay(const std::optional<std::string>& id, DisplayList saved,
                                     DisplayList current);
const DisplaySnapshot* bestTopologyMatch(const DisplaySnapshot& display, DisplayList saved,
                                         DisplayList current);
Rect clamp(const Rect& rect, const Rect& bounds);

/// Where a display sits, in units of the primary display's size: a monitor to the right stays to the right
/// when the primary changes its resolution.
Point offset(const DisplaySnapshot& display, const DisplaySnapshot& primaryDisplay);
double squaredDistance(Point a, Point b);

}  // namespace quillo::DisplayMapper
