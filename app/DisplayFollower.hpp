// Notices that other displays are attached: a laptop that was docked, a monitor that was switched off.
#pragma once
#include <functional>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/services/Screens.hpp"
#include "app/TaskSlot.hpp"

namespace quillo {

/// For the executor's thread. A dock brings its displays one after the other, and the window manager moves
/// windows meanwhile: they are told of once nothing has changed for some seconds. That none is attached is
/// not told; what comes after is compared with what was before.
class DisplayFollower {
  public:
    using Came = std::function<void(const std::vector<DisplaySnapshot>& displays)>;

    /// `executor` and `screens` must outlive it. Told in turns of its own.
    DisplayFollower(Executor& executor, Screens& screens, Came came);

    /// Something has changed, and it is not known yet whether that is all.
    bool changing() const { return changing_; }

  private:
    Task<> follow();

    Screens& screens_;
    Came came_;
    bool changing_ = false;
    TaskSlot following_;
};

}  // namespace quillo
