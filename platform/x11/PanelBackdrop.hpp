// What a floating panel needs of an X server to be translucent: somebody who puts windows together, and a
// shadow that nothing takes for a part of the window.
#pragma once
#include <cstdint>

#include "platform/x11/X11Connection.hpp"

namespace quillo::x11 {

/// Whether a compositing manager runs: on the screen n it owns the selection _NET_WM_CM_Sn (freedesktop.org,
/// Extended Window Manager Hints). Without one, what is translucent comes out black. Two round trips.
bool isComposited(const X11Connection& connection);

/// How wide the shadow is on each side, in pixels.
struct ShadowWidths {
    std::uint32_t left, right, top, bottom;
};

/// Of a window that this connection made, as large as given: presses on its shadow go to what lies below,
/// window managers place it by what is within, and compositing managers add no shadow of their own
/// (_GTK_FRAME_EXTENTS). To be said again when its size changes. No round trip; a server without the Shape
/// extension is told of the extents alone.
void declareShadow(xcb_connection_t* xcb, xcb_window_t window, std::uint32_t width, std::uint32_t height,
                   const ShadowWidths& shadow);

}  // namespace quillo::x11
