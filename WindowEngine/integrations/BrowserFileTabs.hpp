// Capture and restore of the tabs of browsers that no script speaks to, for the integrations of both
// families.
#pragma once
#include <string>
#include <vector>

#include "WindowEngine/integrations/ContextAdapter.hpp"

namespace quillo::BrowserFileTabs {

struct Browser {
    std::string identifier;  // of the application
    BrowserFamily family = BrowserFamily::chromium;
    std::string adapter;
};

/// All ordinary windows' web addresses. Which window on the screen each is decides nothing but where titles
/// stay: a window that is not surely an ordinary one keeps none. Where Chromium may be about to write, it is
/// given the time.
Task<AdapterCaptureResult> capture(DesktopAccess& desktop, Browser browser);

/// As ContextAdapter::awaitOwnWindows(): until the files tell of as many windows as the screen shows.
Task<std::optional<std::string>> awaitOwnWindows(DesktopAccess& desktop, Browser browser);

/// Opens what `current` lacks: new windows by a command each, one after the last one's window has come, and
/// tabs in a window that is brought forward for that. A window that nobody is sure of on the screen gets
/// none: what it lacks, and no other window shows, comes in a new one. Without `current` nobody knows what is
/// open, and nothing is opened.
Task<AdapterRestoreResult> restore(DesktopAccess& desktop, Browser browser, AppContext saved,
                                   std::optional<AppContext> current);

}  // namespace quillo::BrowserFileTabs
