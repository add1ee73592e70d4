// What a restore would do with each saved window, as a value: the one decision that the plan command prints
// and that placement carries out. Pure.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/DisplayMapper.hpp"
#include "WindowEngine/WindowMatcher.hpp"

namespace quillo {

struct WindowPlan {
    std::int64_t savedIndex = 0;            // position in the application's saved windows
    std::optional<std::int64_t> liveIndex;  // position in the live list; absent: no window was found
    WindowMatcher::Evidence evidence;       // why this pair
    double score = 0;
    std::optional<std::string> displayID;               // target display
    std::optional<DisplayMapper::Placement> placement;  // absent when no display is attached

    // Steps that the live window's state calls for, in this order.
    bool leaveFullscreen = false;  // before it can be moved, or to change display
    bool unminimize = false;
    bool write = false;  // frame and minimized state; false for a window already full screen in place
    bool enterFullscreen = false;  // enter, or confirm where it is so already
    bool minimized = false;        // state the write asks for
    std::string skipReason;        // why nothing is done, when liveIndex is absent
};

/// The plan of one pair (liveIndex 0): what the live window's present state still calls for. Placement asks
/// again after each effect.
WindowPlan planPair(const WindowSnapshot& saved, const LiveWindowInfo& live,
                    DisplayMapper::DisplayList savedDisplays, DisplayMapper::DisplayList currentDisplays);

/// One plan per saved window, by savedIndex: matched ones in full, the others with the reason.
std::vector<WindowPlan> planWindows(std::span<const WindowSnapshot> saved,
                                    std::span<const LiveWindowInfo> live,
                                    DisplayMapper::DisplayList savedDisplays,
                                    DisplayMapper::DisplayList currentDisplays);

}  // namespace quillo
