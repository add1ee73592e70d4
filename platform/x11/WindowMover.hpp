// Brings a window into a state in which it can be moved, and ends that. Window managers ignore moves of
// maximized windows and some of minimized ones, and act on requests for other desktops each in a way of its
// own; only this order works on all: to the current desktop, restore, unmaximize, wait, move, wait, move
// again if the decoration changed, back to the desktop it came from.
#pragma once
#include <functional>
#include <map>
#include <optional>

#include "WindowEngine/support/Task.hpp"
#include "platform/x11/DesktopView.hpp"
#include "platform/x11/X11Changes.hpp"

namespace quillo::x11 {

class WindowMover {
  public:
    WindowMover(DesktopView& view, X11Changes& changes) : view_(view), changes_(changes) {}

    /// False when the window is gone or the window manager did not comply within 2 s for each step.
    Task<bool> makeMovable(xcb_window_t window);
    Task<void> settleInPlace(xcb_window_t window);
    /// A move, or being maximized, was asked for; settleInPlace repeats the move once if the extents are
    /// others by then, and moves the window after all where it was not maximized.
    void frameWritten(const WindowReading& before, const Rect& frame, bool maximized);

  private:
    struct Move {
        std::optional<std::uint32_t> cameFrom;  // desktop to return to
        std::optional<Rect> frame;              // the last one written
        bool maximized = false;                 // that is how it was asked for
        Extents decoration, invisibleBorder;    // as they were when it was
    };
    using Condition = bool (*)(const WindowReading&, std::uint32_t);

    /// Waits until the condition holds; absent when the window is gone or 2 s have passed.
    Task<std::optional<WindowReading>> waitUntil(xcb_window_t window, Condition condition,
                                                 std::uint32_t argument);
    /// Two equal readings 50 ms apart; the last reading after 2 s; absent when the window is gone.
    Task<std::optional<WindowReading>> waitUntilStable(xcb_window_t window);
    Task<bool> bringHere(xcb_window_t window);
    static bool missed(const WindowReading& now, const Move& move);

    DesktopView& view_;
    X11Changes& changes_;
    std::map<xcb_window_t, Move> moves_;
};

}  // namespace quillo::x11
