// The older kind of tray, which X servers know of.
#pragma once

namespace quillo::x11 {

/// Whether the display's first screen has such a tray now; false without a display. Three round trips.
bool xembedTrayIsThere();

}  // namespace quillo::x11
