// The end of a restore that somebody waits for: what came back stands in front of what was there before,
// unless the person has gone to another window meanwhile. Internal to Restore.
#pragma once
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "WindowEngine/desktop/Accessibility.hpp"

namespace quillo::Restore {

/// Those whose numbers are known.
std::map<WindowNumber, Element> byNumber(AccessibilityService& accessibility,
                                         const std::vector<Element>& windows);
/// Above all others, as its application comes to the front; that shows it where it is hidden.
void bringToFront(AccessibilityService& accessibility, const Element& window, ProcessID owner);

class BringForward {
  public:
    explicit BringForward(DesktopAccess& desktop) : desktop_(desktop) {}

    /// What came back, in any order.
    std::vector<Element> windows;

    /// Goes along with the run from the moment when other applications have been hidden or quit, to notice
    /// when the keyboard goes elsewhere. At first it may do so without anybody's going there, when the panel
    /// closes in which the workspace was chosen.
    Task<void> look();

    /// Raises the windows, each above those that lie below it now. The keyboard goes to the foremost; where
    /// one of them has it already, it keeps it. Nothing is raised where the keyboard has been in another
    /// window meanwhile, whoever has it now: window managers give it to windows that are new.
    void raise();

  private:
    DesktopAccess& desktop_;
    std::optional<WindowNumber> inFront_;
    std::set<WindowNumber> visited_;  // what else has had the keyboard since
};

}  // namespace quillo::Restore
