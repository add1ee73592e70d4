// What a restore would do with each saved window, as a value: the one decision that the plan command prints
// and that placement carries out. Pure.
#pragma once
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/restore/DesktopTargets.hpp"
#include "WindowEngine/restore/WindowChange.hpp"
#include "WindowEngine/restore/WindowMatcher.hpp"
#include "WindowEngine/services/WindowServer.hpp"

namespace quillo {

struct WindowPlan {
    std::int64_t savedIndex = 0;            // position in the application's saved windows
    std::optional<std::int64_t> liveIndex;  // position in the live list; absent: no window was found
    WindowMatcher::Evidence evidence;       // why this pair
    double score = 0;
    std::optional<std::string> displayID;               // target display
    std::optional<DisplayMapper::Placement> placement;  // absent when no display is attached
    std::optional<SpaceID> desktop;  // target desktop; absent: it stays on the one where it is by then

    // Steps that the live window's state calls for, in this order.
    bool leaveFullscreen = false;  // before it can be moved, or to change display
    bool unminimize = false;
    bool write = false;            // frame and minimized state; false for a window that stands right
    bool moveToDesktop = false;    // to `desktop`; false where it is known to stand there, and there alone
    bool enterFullscreen = false;  // enter, or confirm where it is so already
    bool minimized = false;        // state the write asks for
    std::string skipReason;        // why nothing is done, when liveIndex is absent; else why it is not placed

    /// There is a live window, and nothing is to be done with it.
    bool standsRight() const;
};

/// Whether a frame is the wanted one, as far as window managers keep to what they are asked.
bool standsAt(const Rect& frame, const Rect& wanted);

/// The plan of one pair (liveIndex 0): what the live window's present state still calls for. Placement asks
/// again after each effect. `liveSpaces`: those that hold the live window, empty where that was not asked.
WindowPlan planPair(const WindowSnapshot& saved, const LiveWindowInfo& live,
                    DisplayMapper::DisplayList savedDisplays, DisplayMapper::DisplayList currentDisplays,
                    const DesktopTargets& desktops = {}, std::span<const SpaceID> liveSpaces = {});

/// What carrying out the plan changes on its live window. `desktops`, as they are or will be, tell the number
/// of a space.
WindowChange changeOf(const WindowPlan& plan, const LiveWindowInfo& live, std::span<const SpaceID> liveSpaces,
                      std::span<const NativeDesktop> desktops);

/// One plan per saved window, by savedIndex: matched ones in full, the others with the reason. `liveSpaces`
/// is empty or has one answer for each live window; `noWindows` is the reason where there is no live one.
std::vector<WindowPlan> planWindows(std::span<const WindowSnapshot> saved,
                                    std::span<const LiveWindowInfo> live,
                                    DisplayMapper::DisplayList savedDisplays,
                                    DisplayMapper::DisplayList currentDisplays,
                                    const DesktopTargets& desktops = {},
                                    std::span<const std::vector<SpaceID>> liveSpaces = {},
                                    std::string_view noWindows = noWindowsOfMac);

}  // namespace quillo
