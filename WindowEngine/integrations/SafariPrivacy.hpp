// Which of Safari's windows are provably normal browsing. A private window must never enter a workspace nor
// be moved by a restore, and no attribute says that a window is private: so only those windows are taken
// whose toolbar shows the address field of a normal one, in the words of an English Safari. Whatever cannot
// be verified (another language, a hidden toolbar, a locked window) is left out.
#pragma once
#include <set>
#include <string_view>
#include <vector>

#include "WindowEngine/desktop/Accessibility.hpp"

namespace quillo::SafariPrivacy {

inline constexpr std::string_view safari = "com.apple.Safari";

/// Numbers of the windows that are verified now: of those that are listed, and of those on other desktops
/// that an enumeration has come to know. (A window that were left out for standing on another desktop would
/// be opened again by every restore.)
std::set<WindowNumber> normalWindowIDs(DesktopAccess& desktop, ProcessID pid);

/// Whether Safari says that it has no window, and none is known on another desktop. Where it does not say, it
/// may have any.
bool hasNoWindow(DesktopAccess& desktop, ProcessID pid);

/// Leaves Safari's verified windows, and all windows of any other application. Whether one was removed.
bool removeUnverified(DesktopAccess& desktop, std::string_view bundleIdentifier, ProcessID pid,
                      std::vector<LiveWindow>& windows);

}  // namespace quillo::SafariPrivacy
