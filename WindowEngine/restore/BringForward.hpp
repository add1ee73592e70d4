// The end of a restore that somebody waits for: what came back stands in front of what was there before, unless
// the person has gone to another window meanwhile. Internal to Restore.
#pragma once
#include <optional>
#include <vector>

#include "WindowEngine/desktop/Accessibility.hpp"

namespace quillo::Restore {

class BringForward {
  public:
    /// Notes which window has the keyboard now.
    explicit BringForward(DesktopAccess& desktop);

    /// What came back, in any order.
    std::vector<Element> windows;

    /// Goes along with the run's beginning: where a panel was left that closes by now, the keyboard comes to
    /// another window without anybody's going there.
    Task<void> look();

    /// Raises the windows, each above those that lie below it now. The keyboard goes to the foremost; where one
    /// of them has it already, it keeps it. Nothing is raised where the keyboard is in a window that neither
    /// came back nor had it at the beginning.
    void raise();

  private:
    DesktopAccess& desktop_;
    std::optional<WindowNumber> inFront_;
};

}  // namespace quillo::Restore
