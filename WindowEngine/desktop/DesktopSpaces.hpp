// Desktops (spaces): what exists now, on which of them a window stands, and moving it to another. Which
// desktop stands for a saved one is DesktopTargets' subject, making missing ones DesktopCreation's.
#pragma once
#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/desktop/Accessibility.hpp"

namespace quillo {

/// One ordinary desktop as the window server reports it now.
struct NativeDesktop {
    SpaceID id = 0;
    std::string displayID;
    std::int64_t index = 0;  // among the ordinary desktops of its display, from 0
    std::optional<std::string> uuid;

    bool operator==(const NativeDesktop&) const = default;
};

namespace DesktopSpaces {

inline constexpr Duration arrivalPatience = std::chrono::seconds(2);  // for a window to arrive on a desktop

/// In the order of displays and their desktops; empty where spaces cannot be read.
std::vector<NativeDesktop> current(DesktopAccess& desktop);
DesktopSnapshot snapshot(const NativeDesktop& desktop);

/// The one of `desktops` that holds a window with these facts; of several (one list shared by all displays)
/// the only one on the preferred display; otherwise none, as for a window that stands on every desktop.
std::optional<DesktopSnapshot> desktopOf(const WindowFacts& facts, std::span<const NativeDesktop> desktops,
                                         const std::optional<std::string>& preferredDisplay);

/// The window that the server holds responsible for the place of this one: the tab in front, which alone
/// stands on a desktop, for a native tab behind it; otherwise the window itself. A tab is told by its window:
/// of the same process, exactly as large and in the same place. Ask only about windows known to have tabs:
/// two windows may happen to lie on top of each other.
WindowNumber frontTab(DesktopAccess& desktop, WindowNumber windowID);

/// The spaces that hold each window, read together; for `tabbed` windows that list none, those of the tab in
/// front.
std::vector<std::vector<SpaceID>> spacesOf(DesktopAccess& desktop, std::span<const LiveWindow> windows,
                                           bool tabbed);

/// Waits, at most 2 s, until the display does not animate from one space to another.
Task<void> waitWhileAnimating(DesktopAccess& desktop, std::string displayID);

/// Moves a window to a desktop and confirms that it stands there; nothing is asked for where it stands there
/// already. False when the move is refused or is not confirmed within `timeout`: then it may still come. The
/// desktop in front stays in front.
Task<bool> move(DesktopAccess& desktop, WindowNumber windowID, SpaceID space, Duration timeout);

}  // namespace DesktopSpaces
}  // namespace quillo
