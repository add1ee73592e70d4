// What the X server tells of a window, read for any number of windows in one pipelined round trip.
#pragma once
#include <xcb/xcb.h>

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "WindowEngine/support/Rect.hpp"
#include "platform/linux/ApplicationRegistry.hpp"
#include "platform/x11/X11Connection.hpp"

namespace quillo::x11 {

enum class WindowType {
    normal,     // also where a window names no type
    dialog,     // also a normal window that belongs to another one
    auxiliary,  // a palette or splash screen: listed, never saved
    furniture,  // docks, desktops, menus, notifications: no window of an application
    desktop,    // the background itself
};

/// Space around something, in pixels.
struct Extents {
    std::int32_t left = 0, right = 0, top = 0, bottom = 0;
    bool operator==(const Extents&) const = default;
};

inline constexpr std::uint32_t everyDesktop = 0xFFFFFFFF;  // _NET_WM_DESKTOP of a sticky window

struct WindowReading : WindowEvidence {
    xcb_window_t window = 0;
    WindowType type = WindowType::normal;
    bool isDock = false;                   // a panel, whose struts count
    std::string title;                     // UTF-8
    std::optional<std::uint32_t> desktop;  // number, or everyDesktop
    bool hidden = false;                   // minimized
    bool fullscreen = false, maximized = false, shaded = false;
    Rect client;              // content, in root coordinates
    Extents decoration;       // what the window manager draws around it
    Extents invisibleBorder;  // shadow that the application draws inside it

    /// What a person sees of it: with its decoration, without its shadow.
    Rect frame() const;
    bool isListed() const { return !isFurniture; }
};

/// One entry per window that exists, in the order given.
std::vector<WindowReading> readWindows(X11Connection& connection, std::span<const xcb_window_t> windows);

}  // namespace quillo::x11
