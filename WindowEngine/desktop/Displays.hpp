// The attached screens as records, and frames relative to a display.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/services/Screens.hpp"

namespace quillo::Displays {

/// The primary display first; empty when no screen is attached.
std::vector<DisplaySnapshot> current(Screens& screens);

/// The screen's stable identifier, or its size and scale where it has none: 1512x982@2.0.
std::string identifier(const Screen& screen);

/// The first display whose frame holds the centre of `rect`, else the one that shares the largest area with
/// it (the earlier one on a tie), else null. The pointer is into `displays`.
const DisplaySnapshot* display(const Rect& rect, std::span<const DisplaySnapshot> displays);

/// `rect` as fractions of `displayFrame`, overhang kept; the zero rectangle when the display has no area.
Rect normalize(const Rect& rect, const Rect& displayFrame);
Rect denormalize(const Rect& rect, const Rect& displayFrame);

}  // namespace quillo::Displays
