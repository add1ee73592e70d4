#include "platform/x11/XEmbedTray.hpp"

#include <xcb/xcb.h>

#include <memory>
#include <string_view>

#include "platform/x11/X11Connection.hpp"

namespace quillo::x11 {
namespace {

struct Disconnect {
    void operator()(xcb_connection_t* server) const noexcept { xcb_disconnect(server); }
};

constexpr std::string_view selection = "_NET_SYSTEM_TRAY_S0";  // its owner draws the icons

}  // namespace

bool xembedTrayIsThere() {
    const std::unique_ptr<xcb_connection_t, Disconnect> server(xcb_connect(nullptr, nullptr));
    const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        server.get(), xcb_intern_atom(server.get(), true, selection.size(), selection.data()), nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE) return false;
    const Reply<xcb_get_selection_owner_reply_t> owner(xcb_get_selection_owner_reply(
        server.get(), xcb_get_selection_owner(server.get(), atom->atom), nullptr));
    return owner && owner->owner != XCB_NONE;
}

}  // namespace quillo::x11
