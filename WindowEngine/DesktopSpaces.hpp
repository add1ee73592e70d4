// Desktops (spaces): what exists now and on which of them a window stands. Preparing desktops and moving
// windows between them join here.
#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/Accessibility.hpp"

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

/// In the order of displays and their desktops; empty where spaces cannot be read.
std::vector<NativeDesktop> current(DesktopAccess& desktop);
DesktopSnapshot snapshot(const NativeDesktop& desktop);

/// The one of `desktops` that holds a window with these facts; of several (one list shared by all displays)
/// the only one on the preferred display; otherwise none, as for a window that stands on every desktop.
std::optional<DesktopSnapshot> desktopOf(const WindowFacts& facts, std::span<const NativeDesktop> desktops,
                                         const std::optional<std::string>& preferredDisplay);

bool isFullscreen(DesktopAccess& desktop, WindowNumber windowID);
bool isStandardWindow(DesktopAccess& desktop, WindowNumber windowID);
std::optional<WindowNumber> windowID(DesktopAccess& desktop, const Element& window);

}  // namespace DesktopSpaces
}  // namespace quillo
