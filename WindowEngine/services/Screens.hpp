// The attached displays.
#pragma once
#include <cstdint>
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
    /// What it says of itself; identical displays share it. Absent where it says nothing.
    std::optional<std::string> model = std::nullopt;
    /// Where it is plugged in, in the system's words; absent where the system does not tell.
    std::optional<std::string> connector = std::nullopt;
};

/// What a person at the computer sees.
enum class ScreenState : std::uint8_t {
    shown,
    blank,   // switched off to save power, or a screen saver covers it
    locked,  // blank or not, nothing is to be seen before somebody has given a password
};

class Screens {
  public:
    virtual ~Screens() = default;
    /// The primary screen first; empty when no display is attached. Executor's thread only.
    virtual std::vector<Screen> screens() = 0;
    /// Differs from an earlier one when displays have come, gone or changed since. Much cheaper than a list.
    virtual std::uint64_t stamp();
    /// `shown` where nothing tells otherwise. May wait for the system's answer, a quarter of a second at
    /// most.
    virtual ScreenState state() { return ScreenState::shown; }
};

}  // namespace quillo
