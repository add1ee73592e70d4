// What integrations add to the capture of one application, and what they take from it. Internal to Capture.
#pragma once
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/capture/Capture.hpp"

namespace quillo::Capture {

/// Asks the enabled integration that handles the application, if there is one, and applies its answer: the
/// context, the windows it excludes, the titles it withholds, its notes. A failure becomes a note and a line
/// in the log.
///
/// `live` are the windows as they were read, before anything was awaited. Where the application's own window
/// list is not the one accessibility gave (windows on other desktops, one that came to the front meanwhile),
/// places in it say nothing: then, if one window is private, titles and documents of all are left out, since
/// nobody can tell whose they are.
Task<void> captureContext(DesktopAccess& desktop, const Options& options, std::span<const LiveWindow> live,
                          ApplicationSnapshot& application, std::vector<std::string>& notes);

}  // namespace quillo::Capture
