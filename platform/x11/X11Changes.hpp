// Word of the X server that windows or desktops changed, for whoever waits for that.
#pragma once
#include <memory>
#include <thread>

#include "WindowEngine/support/ChangeWatch.hpp"
#include "platform/x11/X11Connection.hpp"

namespace quillo::x11 {

/// The first watch opens a connection whose events a thread of its own reads. Nothing but what is watched is
/// asked for there, so without a watch both sleep. Where the connection cannot be had, watches know of the
/// time only.
class X11Changes {
  public:
    /// Both must outlive it; watches need not be gone first.
    X11Changes(Executor& executor, const X11Connection& connection)
        : executor_(executor), connection_(connection) {}
    X11Changes(const X11Changes&) = delete;
    X11Changes& operator=(const X11Changes&) = delete;
    ~X11Changes();

    /// Of a window: its state and its desktop; of the root: windows that come and go, and the number of
    /// desktops. One round trip where nobody watches that window yet.
    std::unique_ptr<ChangeWatch> watch(xcb_window_t window);

  private:
    class Listener;
    class Watch;

    Executor& executor_;
    const X11Connection& connection_;
    std::shared_ptr<Listener> listener_;
    std::thread reader_;
};

}  // namespace quillo::x11
