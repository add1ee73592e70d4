// The attached displays.
#pragma once
#include <optional>
#include <string>
#include <vector>

#include "WindowEngine/support/Rect.hpp"

namespace quillo {

struct Screen {
    std::optional<std::string> stableID;  // what the display itself is (display UUID, EDID), never its
                                          // number; unique among the screens of one reading
    Rect frame;                           // global points, top left of the primary screen is 0, 0
    Rect visibleFrame;                    // less menu bar, dock and panels
    double scale = 1;                     // backing pixels to a point
};

class Screens {
  public:
    virtual ~Screens() = default;
    /// The primary screen first; empty when no display is attached. Executor's thread only.
    virtual std::vector<Screen> screens() = 0;
};

}  // namespace quillo
