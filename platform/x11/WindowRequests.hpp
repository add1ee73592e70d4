// What can be asked of the window manager, in the form that openbox, xfwm4, metacity, kwin and mutter all
// understand. Each is one round trip at most and gives a code (X11Connection.hpp); that a request was
// accepted does not mean that it is complied with. Everything read before is void afterwards.
#pragma once
#include <cstdint>

#include "platform/x11/DesktopView.hpp"

namespace quillo::x11 {

/// Which of a frame's parts a move asks for.
enum class FrameParts : std::uint32_t { position = 0x300, size = 0xC00, both = 0xF00 };

class WindowRequests {
  public:
    explicit WindowRequests(DesktopView& view) : view_(view) {}

    /// `frame` is what a person is to see; `now` tells what lies between that and the client's own area.
    std::int32_t moveResize(const WindowReading& now, const Rect& frame, FrameParts parts);
    std::int32_t minimize(xcb_window_t window);
    /// Ends being minimized, on the desktop where the window is. `isHere`: that is the current one, or all.
    std::int32_t restore(const WindowReading& now, bool isHere);
    std::int32_t setFullscreen(xcb_window_t window, bool value);
    std::int32_t maximize(xcb_window_t window);
    std::int32_t unmaximize(xcb_window_t window);
    /// Ends being rolled up to the title bar.
    std::int32_t unshade(xcb_window_t window);
    std::int32_t activate(xcb_window_t window);
    /// In front of all others, without activating it or switching desktops.
    std::int32_t restack(xcb_window_t window);
    /// The window's application decides; it may ask its person first.
    std::int32_t close(xcb_window_t window);
    std::int32_t moveToDesktop(xcb_window_t window, std::uint32_t desktop);
    std::int32_t setDesktopCount(std::uint32_t count);

  private:
    std::int32_t ask(xcb_window_t window, xcb_atom_t message, std::array<std::uint32_t, 5> data);
    std::int32_t changeStates(xcb_window_t window, std::uint32_t action, xcb_atom_t first, xcb_atom_t second);

    DesktopView& view_;
};

}  // namespace quillo::x11
