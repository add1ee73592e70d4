// Whether the X server shows its screens: the screen saver and power saving.
#pragma once
#include <xcb/xcb.h>

namespace quillo::x11 {

/// A screen saver of the server's is on, or the displays are switched off to save power. False where the
/// server has neither extension. At most two round trips.
bool isBlank(xcb_connection_t* xcb, xcb_window_t root);

}  // namespace quillo::x11
