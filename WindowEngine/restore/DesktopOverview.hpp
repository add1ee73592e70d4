// The overview of all desktops, which the Dock's process shows, and its Add Desktop buttons: the one way to
// make a desktop where the window server makes none itself. Internal to DesktopCreation.
#pragma once
#include <optional>
#include <string>

#include "WindowEngine/desktop/Accessibility.hpp"

namespace quillo::DesktopSpaces {

/// Closes with the object whatever happened, if it was opened through it: a cancelled restore leaves nobody
/// in the overview.
class DesktopOverview {
  public:
    explicit DesktopOverview(DesktopAccess& desktop) : desktop_(desktop) {}
    DesktopOverview(const DesktopOverview&) = delete;
    DesktopOverview& operator=(const DesktopOverview&) = delete;
    ~DesktopOverview();

    /// Presses the button of the display once it shows and nothing animates there, opening the overview
    /// unless it is open already; the reason when that cannot be done. The desktop comes later.
    Task<std::optional<std::string>> addDesktop(std::string displayID);

  private:
    /// The button that lies within `display`, as it is now.
    std::optional<Element> addButton(const Rect& display);

    DesktopAccess& desktop_;
    bool opened_ = false;
};

/// Where a display lies now; absent once it is no longer attached.
std::optional<Rect> displayFrame(DesktopAccess& desktop, const std::string& displayID);

inline constexpr std::string_view displayDisconnected =
    "The target display disconnected before its desktops could be created";

}  // namespace quillo::DesktopSpaces
