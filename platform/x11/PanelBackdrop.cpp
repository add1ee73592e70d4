#include "platform/x11/PanelBackdrop.hpp"

#include <xcb/shape.h>

#include <array>
#include <string>
#include <string_view>

namespace quillo::x11 {
namespace {

xcb_atom_t atomOf(xcb_connection_t* xcb, std::string_view name) {
    const Reply<xcb_intern_atom_reply_t> atom(xcb_intern_atom_reply(
        xcb, xcb_intern_atom(xcb, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr));
    return atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE};
}

}  // namespace

bool isComposited(const X11Connection& connection) {
    xcb_connection_t* const xcb = connection.xcb();
    int screen = 0;
    for (auto roots = xcb_setup_roots_iterator(xcb_get_setup(xcb)); roots.data->root != connection.root();
         xcb_screen_next(&roots))
        ++screen;
    const xcb_atom_t selection = atomOf(xcb, "_NET_WM_CM_S" + std::to_string(screen));
    const Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, selection), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

void declareShadow(xcb_connection_t* xcb, xcb_window_t window, std::uint32_t width, std::uint32_t height,
                   const ShadowWidths& shadow) {
    const std::array extents{shadow.left, shadow.right, shadow.top, shadow.bottom};
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, atomOf(xcb, "_GTK_FRAME_EXTENTS"),
                        XCB_ATOM_CARDINAL, 32, extents.size(), extents.data());
    const xcb_query_extension_reply_t* shape = xcb_get_extension_data(xcb, &xcb_shape_id);
    if (!shape || !shape->present) return;
    const xcb_rectangle_t within{static_cast<std::int16_t>(shadow.left),
                                 static_cast<std::int16_t>(shadow.top),
                                 static_cast<std::uint16_t>(width - shadow.left - shadow.right),
                                 static_cast<std::uint16_t>(height - shadow.top - shadow.bottom)};
    xcb_shape_rectangles(xcb, XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window, 0, 0,
                         1, &within);
}

}  // namespace quillo::x11
