// The whole desktop as it is in the present turn of the executor: one pass over the window manager's client
// list in two round trips, from which every service answers. The turn over, or anything written, it is read
// afresh: nothing is ever answered from an earlier turn.
#pragma once
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "WindowEngine/services/Capability.hpp"
#include "WindowEngine/support/Executor.hpp"
#include "platform/linux/ApplicationRegistry.hpp"
#include "platform/x11/WindowReading.hpp"
#include "platform/x11/X11Connection.hpp"

namespace quillo::x11 {

struct DesktopReading {
    std::uint32_t desktopCount = 0;  // 0: the window manager has no desktops
    std::optional<std::uint32_t> currentDesktop;
    std::vector<WindowReading> windows;     // in the order in which they were opened
    std::vector<xcb_window_t> frontToBack;  // all of them

    const WindowReading* find(xcb_window_t window) const;
};

class DesktopView {
  public:
    DesktopView(Executor& executor, X11Connection& connection);
    DesktopView(const DesktopView&) = delete;
    DesktopView& operator=(const DesktopView&) = delete;

    X11Connection& connection() { return connection_; }
    Executor& executor() { return executor_; }
    ApplicationRegistry& registry() { return registry_; }

    const DesktopReading& reading();
    const std::vector<KnownApplication>& applications();
    const KnownApplication* applicationOf(ProcessID pid);
    const KnownApplication* applicationNamed(std::string_view identifier);

    /// What the application of a window opens, without reading more for it.
    OpenedKinds opensOf(const WindowReading& window);

    /// Only these windows, where no reading of the whole desktop is at hand; those that are gone or no longer
    /// managed are missing.
    std::vector<WindowReading> windows(std::span<const xcb_window_t> wanted);
    /// Read afresh, in one round trip.
    std::optional<WindowReading> windowNow(xcb_window_t window);
    std::optional<std::uint32_t> currentDesktopNow();
    /// The one that has the keyboard, as the window manager tells.
    std::optional<xcb_window_t> activeWindowNow();
    /// 0: the window manager has no desktops. Without a reading of the whole desktop for it.
    std::uint32_t desktopCount();

    /// Whether this is i3: it tiles windows and minimizes none, and its desktops come and go with those that
    /// stand on them.
    bool managedByI3();
    /// Whether the window manager decides where a window stands. i3 marks those that float; others tell
    /// nothing.
    bool isTiled(xcb_window_t window);

    /// Where the accessibility bus of this display listens, as the root window tells; empty where there is
    /// none.
    std::string accessibilityBus();

    /// Something was changed: what has been read is void.
    void invalidate() { turn_->reset(); }

    /// Whether an X server and a window manager that speaks EWMH answer right now.
    Capability access();

  private:
    struct Turn {
        std::optional<DesktopReading> reading;
        std::optional<std::vector<KnownApplication>> applications;
        void reset() { *this = {}; }
    };

    void dropAfterThisTurn();
    std::vector<WindowReading> readManaged(std::span<const xcb_window_t> wanted);

    Executor& executor_;
    X11Connection& connection_;
    ApplicationRegistry registry_;
    std::shared_ptr<Turn> turn_ = std::make_shared<Turn>();
};

}  // namespace quillo::x11
