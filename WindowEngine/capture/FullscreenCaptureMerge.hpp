// Windows that only the window server knows (full screen on their own desktop, on a desktop that is not
// shown) join the captured ones as plain geometry. Pure.
#pragma once
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/desktop/Accessibility.hpp"

namespace quillo::FullscreenCaptureMerge {

/// The desktop of a window, given its number and the display to prefer.
using DesktopLookup =
    std::function<std::optional<DesktopSnapshot>(WindowNumber, const std::optional<std::string>& displayID)>;

/// `windows` unchanged, then one record per candidate in order; indices continue densely.
std::vector<WindowSnapshot> apply(std::vector<WindowSnapshot> windows,
                                  std::span<const HiddenWindowCandidate> hidden,
                                  std::span<const DisplaySnapshot> displays, const DesktopLookup& desktop);

}  // namespace quillo::FullscreenCaptureMerge
