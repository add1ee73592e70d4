#include "platform/x11/WindowRequests.hpp"

#include <algorithm>
#include <cmath>

namespace quillo::x11 {
namespace {

constexpr std::uint32_t fromPager = 2;  // a tool acting for the person: window managers obey it more readily
constexpr std::uint32_t northWest = 1;  // static gravity is off by the frame on some
constexpr std::uint32_t stateRemove = 0, stateAdd = 1;
constexpr std::uint32_t iconicState = 3;

std::uint32_t signedWord(double value) {
    return static_cast<std::uint32_t>(static_cast<std::int32_t>(std::lround(value)));
}

std::uint32_t extentWord(double value) {
    return static_cast<std::uint32_t>(std::max(1L, std::lround(value)));
}

}  // namespace

std::int32_t WindowRequests::ask(xcb_window_t window, xcb_atom_t message, std::array<std::uint32_t, 5> data) {
    view_.invalidate();
    return view_.connection().askWindowManager(window, message, data);
}

std::int32_t WindowRequests::changeStates(xcb_window_t window, std::uint32_t action, xcb_atom_t first,
                                          xcb_atom_t second) {
    return ask(window, view_.connection().atoms()._NET_WM_STATE, {action, first, second, fromPager, 0});
}

std::int32_t WindowRequests::moveResize(const WindowReading& now, const Rect& frame, FrameParts parts) {
    const auto& out = now.decoration;
    const auto& in = now.invisibleBorder;
    return ask(
        now.window, view_.connection().atoms()._NET_MOVERESIZE_WINDOW,
        {northWest | static_cast<std::uint32_t>(parts) | fromPager << 12, signedWord(frame.x - in.left),
         signedWord(frame.y - in.top), extentWord(frame.width + in.left + in.right - out.left - out.right),
         extentWord(frame.height + in.top + in.bottom - out.top - out.bottom)});
}

std::int32_t WindowRequests::minimize(xcb_window_t window) {
    const auto code = ask(window, view_.connection().extra().changeState, {iconicState, 0, 0, 0, 0});
    if (code != codeDone) return code;
    // openbox ignores that for a window on another desktop but complies with this; others ignore this.
    return changeStates(window, stateAdd, view_.connection().atoms()._NET_WM_STATE_HIDDEN, 0);
}

std::int32_t WindowRequests::restore(const WindowReading& now, bool isHere) {
    auto& connection = view_.connection();
    const auto window = now.window;
    // openbox brings a window that is mapped to the current desktop, unless it is not iconic any more.
    const auto shown = changeStates(window, stateRemove, connection.atoms()._NET_WM_STATE_HIDDEN, 0);
    if (shown != codeDone) return shown;
    const auto mapped = connection.check(xcb_map_window_checked(connection.xcb(), window));
    if (mapped != codeDone) return mapped;
    // mutter does not listen to that. Elsewhere activation would pull the window here or switch desktops, and
    // metacity pulls it here anyway.
    return isHere ? activate(window) : moveToDesktop(window, *now.desktop);
}

std::int32_t WindowRequests::setFullscreen(xcb_window_t window, bool value) {
    return changeStates(window, value ? stateAdd : stateRemove,
                        view_.connection().atoms()._NET_WM_STATE_FULLSCREEN, 0);
}

std::int32_t WindowRequests::maximize(xcb_window_t window) {
    const auto& ewmh = view_.connection().atoms();
    return changeStates(window, stateAdd, ewmh._NET_WM_STATE_MAXIMIZED_HORZ,
                        ewmh._NET_WM_STATE_MAXIMIZED_VERT);
}

std::int32_t WindowRequests::unmaximize(xcb_window_t window) {
    const auto& ewmh = view_.connection().atoms();
    return changeStates(window, stateRemove, ewmh._NET_WM_STATE_MAXIMIZED_HORZ,
                        ewmh._NET_WM_STATE_MAXIMIZED_VERT);
}

std::int32_t WindowRequests::unshade(xcb_window_t window) {
    return changeStates(window, stateRemove, view_.connection().atoms()._NET_WM_STATE_SHADED, 0);
}

std::int32_t WindowRequests::activate(xcb_window_t window) {
    return ask(window, view_.connection().atoms()._NET_ACTIVE_WINDOW, {fromPager, XCB_CURRENT_TIME, 0, 0, 0});
}

std::int32_t WindowRequests::restack(xcb_window_t window) {
    return ask(window, view_.connection().atoms()._NET_RESTACK_WINDOW,
               {fromPager, 0, XCB_STACK_MODE_ABOVE, 0, 0});
}

std::int32_t WindowRequests::close(xcb_window_t window) {
    return ask(window, view_.connection().atoms()._NET_CLOSE_WINDOW, {XCB_CURRENT_TIME, fromPager, 0, 0, 0});
}

std::int32_t WindowRequests::moveToDesktop(xcb_window_t window, std::uint32_t desktop) {
    return ask(window, view_.connection().atoms()._NET_WM_DESKTOP, {desktop, fromPager, 0, 0, 0});
}

std::int32_t WindowRequests::setDesktopCount(std::uint32_t count) {
    return ask(view_.connection().root(), view_.connection().atoms()._NET_NUMBER_OF_DESKTOPS,
               {count, 0, 0, 0, 0});
}

}  // namespace quillo::x11
