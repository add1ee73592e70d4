#include "platform/x11/SystemTray.hpp"

#include <string_view>

namespace quillo::x11 {

bool hasSystemTray(const X11Connection& connection) {
    constexpr std::string_view name = "_NET_SYSTEM_TRAY_S0";
    auto* xcb = connection.xcb();
    const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        xcb, xcb_intern_atom(xcb, 1, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE) return false;
    const Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, atom->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

}  // namespace quillo::x11
