#include "platform/x11/X11Connection.hpp"

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <utility>

namespace quillo::x11 {

std::span<const std::uint32_t> Property::words() const {
    if (!reply_ || reply_->format != 32) return {};
    const auto* words = static_cast<const std::uint32_t*>(xcb_get_property_value(reply_.get()));
    return {words, static_cast<std::size_t>(xcb_get_property_value_length(reply_.get())) / 4};
}

std::string_view Property::bytes() const {
    if (!reply_ || reply_->format != 8) return {};
    const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply_.get()));
    return {bytes, static_cast<std::size_t>(xcb_get_property_value_length(reply_.get()))};
}

std::optional<std::uint32_t> Property::firstWord() const {
    const auto all = words();
    return all.empty() ? std::nullopt : std::optional(all.front());
}

namespace {

xcb_screen_t* screenAt(xcb_connection_t* xcb, int number) {
    auto screens = xcb_setup_roots_iterator(xcb_get_setup(xcb));
    while (number-- > 0 && screens.rem > 0) xcb_screen_next(&screens);
    return screens.rem > 0 ? screens.data : nullptr;
}

/// As the session's own variables say; only where no X server is to be had does that matter.
bool isWaylandSession() {
    const char* display = std::getenv("WAYLAND_DISPLAY");
    const char* type = std::getenv("XDG_SESSION_TYPE");
    return (display && *display) || (type && std::string_view(type) == "wayland");
}

std::string noServerText(const std::string& display) {
    if (!display.empty()) {
        return "No X server answers at display " + display +
               ". Check the display's name and that it may be used.";
    }
    const char* fromEnvironment = std::getenv("DISPLAY");
    if (fromEnvironment && *fromEnvironment) {
        return std::string("No X server answers at display ") + fromEnvironment +
               ", which the variable DISPLAY names. Run this inside a graphical session of the X Window "
               "System.";
    }
    if (isWaylandSession())
        return "This is a Wayland session, which lets no program save or move the windows of others. Log out "
               "and "
               "choose an X11 (Xorg) session.";
    return "The variable DISPLAY is not set, so there is no X server to talk to. Run this inside a graphical "
           "session of the X Window System.";
}

}  // namespace

X11Connection::X11Connection(xcb_connection_t* xcb, xcb_screen_t* screen, std::string displayName)
    : xcb_(xcb), screen_(screen), displayName_(std::move(displayName)) {}

X11Connection::~X11Connection() {
    xcb_ewmh_connection_wipe(&ewmh_);
    xcb_disconnect(xcb_);
}

Result<std::unique_ptr<X11Connection>> X11Connection::open(const std::string& display) {
    int screenNumber = 0;
    xcb_connection_t* xcb = xcb_connect(display.empty() ? nullptr : display.c_str(), &screenNumber);
    if (xcb_connection_has_error(xcb) != 0) {
        xcb_disconnect(xcb);
        return fail(ErrorKind::unavailable, noServerText(display));
    }
    const char* fromEnvironment = std::getenv("DISPLAY");
    std::string name = display.empty() && fromEnvironment ? fromEnvironment : display;
    std::unique_ptr<X11Connection> connection(
        new X11Connection(xcb, screenAt(xcb, screenNumber), std::move(name)));
    if (!connection->screen_ || !connection->internAtoms()) {
        return fail(ErrorKind::unavailable,
                    "The X server stopped answering while it was being asked for its names.");
    }
    connection->learnExtensions();
    return connection;
}

bool X11Connection::internAtoms() {
    static constexpr std::array<std::pair<const char*, xcb_atom_t ExtraAtoms::*>, 10> names{{
        {"_GTK_FRAME_EXTENTS", &ExtraAtoms::gtkFrameExtents},
        {"_GTK_APPLICATION_ID", &ExtraAtoms::gtkApplicationID},
        {"_KDE_NET_WM_DESKTOP_FILE", &ExtraAtoms::kdeDesktopFile},
        {"_BAMF_DESKTOP_FILE", &ExtraAtoms::bamfDesktopFile},
        {"WM_CHANGE_STATE", &ExtraAtoms::changeState},
        {"WM_DELETE_WINDOW", &ExtraAtoms::deleteWindow},
        {"EDID", &ExtraAtoms::edid},
        {"AT_SPI_BUS", &ExtraAtoms::accessibilityBus},
        {"I3_FLOATING_WINDOW", &ExtraAtoms::i3Floating},
        {"WM_WINDOW_ROLE", &ExtraAtoms::windowRole},
    }};
    std::array<xcb_intern_atom_cookie_t, names.size()> cookies{};
    for (std::size_t i = 0; i < names.size(); ++i) {
        const auto length = static_cast<std::uint16_t>(std::strlen(names[i].first));
        cookies[i] = xcb_intern_atom(xcb_, 0, length, names[i].first);
    }
    bool complete = xcb_ewmh_init_atoms_replies(&ewmh_, xcb_ewmh_init_atoms(xcb_, &ewmh_), nullptr) != 0;
    for (std::size_t i = 0; i < names.size(); ++i) {
        const Reply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(xcb_, cookies[i], nullptr));
        if (reply) extra_.*names[i].second = reply->atom;
        complete = complete && reply;
    }
    return complete;
}

void X11Connection::learnExtensions() {
    xcb_prefetch_extension_data(xcb_, &xcb_randr_id);
    xcb_prefetch_extension_data(xcb_, &xcb_res_id);
    const auto* randr = xcb_get_extension_data(xcb_, &xcb_randr_id);
    const auto* res = xcb_get_extension_data(xcb_, &xcb_res_id);
    if (randr && randr->present) {
        const Reply<xcb_randr_query_version_reply_t> version(
            xcb_randr_query_version_reply(xcb_, xcb_randr_query_version(xcb_, 1, 5), nullptr));
        hasMonitors_ = version && (version->major_version > 1 || version->minor_version >= 5);
    }
    if (res && res->present) {
        const Reply<xcb_res_query_version_reply_t> version(
            xcb_res_query_version_reply(xcb_, xcb_res_query_version(xcb_, 1, 2), nullptr));
        const bool has = version && (version->server_major > 1 || version->server_minor >= 2);
        // A server on another machine, or beyond the wall of a container, numbers other processes than ours.
        hasClientIds_ = has && processIn(askProcess(xcb_get_setup(xcb_)->resource_id_base)) == getpid();
    }
}

xcb_res_query_client_ids_cookie_t X11Connection::askProcess(std::uint32_t resource) const {
    const xcb_res_client_id_spec_t spec{resource, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    return xcb_res_query_client_ids(xcb_, 1, &spec);
}

ProcessID X11Connection::processIn(xcb_res_query_client_ids_cookie_t cookie) const {
    xcb_generic_error_t* error = nullptr;
    const Reply<xcb_res_query_client_ids_reply_t> reply(xcb_res_query_client_ids_reply(xcb_, cookie, &error));
    std::free(error);
    if (!reply) return 0;
    const auto ids = xcb_res_query_client_ids_ids_iterator(reply.get());
    if (ids.rem == 0 || xcb_res_client_id_value_value_length(ids.data) < 1) return 0;
    return static_cast<ProcessID>(*xcb_res_client_id_value_value(ids.data));
}

bool X11Connection::isXwayland() const {
    constexpr std::string_view name = "XWAYLAND";
    const Reply<xcb_query_extension_reply_t> extension(
        xcb_query_extension_reply(xcb_, xcb_query_extension(xcb_, name.size(), name.data()), nullptr));
    if (extension && extension->present) return true;
    if (!hasMonitors_) return false;
    const Reply<xcb_randr_get_monitors_reply_t> monitors(
        xcb_randr_get_monitors_reply(xcb_, xcb_randr_get_monitors(xcb_, root(), 1), nullptr));
    if (!monitors) return false;
    for (auto it = xcb_randr_get_monitors_monitors_iterator(monitors.get()); it.rem > 0;
         xcb_randr_monitor_info_next(&it)) {
        const Reply<xcb_get_atom_name_reply_t> atom(
            xcb_get_atom_name_reply(xcb_, xcb_get_atom_name(xcb_, it.data->name), nullptr));
        if (!atom) continue;
        const auto length = static_cast<std::size_t>(xcb_get_atom_name_name_length(atom.get()));
        if (std::string_view(xcb_get_atom_name_name(atom.get()), length).starts_with(name)) return true;
    }
    return false;
}

xcb_get_property_cookie_t X11Connection::ask(xcb_window_t window, xcb_atom_t property,
                                             std::uint32_t words) const {
    return xcb_get_property(xcb_, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, words);
}

Property X11Connection::take(xcb_get_property_cookie_t cookie) const {
    xcb_generic_error_t* error = nullptr;  // a window that vanished: the empty property says so
    Property property(xcb_get_property_reply(xcb_, cookie, &error));
    std::free(error);
    return property;
}

std::int32_t X11Connection::check(xcb_void_cookie_t cookie) {
    const Reply<xcb_generic_error_t> error(xcb_request_check(xcb_, cookie));
    if (!alive()) return codeNoConnection;
    return error ? error->error_code : codeDone;
}

std::int32_t X11Connection::askWindowManager(xcb_window_t window, xcb_atom_t message,
                                             std::array<std::uint32_t, 5> data) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = message;
    std::copy(data.begin(), data.end(), event.data.data32);
    // The server does not look at the window a message is about, so it is asked for along with it.
    const auto geometry = xcb_get_geometry(xcb_, window);
    const auto sent = xcb_send_event_checked(
        xcb_, 0, root(), XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        reinterpret_cast<const char*>(&event));
    xcb_generic_error_t* error = nullptr;
    const Reply<xcb_get_geometry_reply_t> exists(xcb_get_geometry_reply(xcb_, geometry, &error));
    std::free(error);
    const auto code = check(sent);
    return code == codeDone && !exists ? codeGone : code;
}

std::size_t X11Connection::strayErrors() {
    while (const Reply<xcb_generic_event_t> event{xcb_poll_for_event(xcb_)}) {
        if (event->response_type == 0) ++strayErrors_;
    }
    return strayErrors_;
}

}  // namespace quillo::x11
