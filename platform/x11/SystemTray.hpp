// Whether a system tray of the older kind (XEmbed) stands on the screen.
#pragma once
#include "platform/x11/X11Connection.hpp"

namespace quillo::x11 {

/// One round trip. A tray owns the selection _NET_SYSTEM_TRAY_S0 (freedesktop.org, System Tray Protocol).
bool hasSystemTray(const X11Connection& connection);

}  // namespace quillo::x11
