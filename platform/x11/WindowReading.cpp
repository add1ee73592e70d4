#include "platform/x11/WindowReading.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>

#include "WindowEngine/support/Text.hpp"

namespace quillo::x11 {
namespace {

enum Asked : std::size_t {
    windowClass,
    utf8Title,
    plainTitle,
    processID,
    machine,
    desktopNumber,
    states,
    types,
    owner,
    frameExtents,
    gtkExtents,
    gtkApplication,
    kdeFile,
    bamfFile,
    askedCount
};

constexpr std::uint32_t textWords = 1024;  // 4 KiB: no title is longer in practice
constexpr std::uint32_t listWords = 32;

struct Cookies {
    std::array<xcb_get_property_cookie_t, askedCount> properties{};
    xcb_res_query_client_ids_cookie_t process{};
    xcb_get_geometry_cookie_t geometry{};
    xcb_translate_coordinates_cookie_t origin{};
};

Cookies askAll(const X11Connection& connection, xcb_window_t window) {
    const auto& ewmh = connection.atoms();
    const auto& extra = connection.extra();
    const std::array<std::pair<xcb_atom_t, std::uint32_t>, askedCount> wanted{{
        {XCB_ATOM_WM_CLASS, textWords},
        {ewmh._NET_WM_NAME, textWords},
        {XCB_ATOM_WM_NAME, textWords},
        {ewmh._NET_WM_PID, 1},
        {XCB_ATOM_WM_CLIENT_MACHINE, 64},
        {ewmh._NET_WM_DESKTOP, 1},
        {ewmh._NET_WM_STATE, listWords},
        {ewmh._NET_WM_WINDOW_TYPE, listWords},
        {XCB_ATOM_WM_TRANSIENT_FOR, 1},
        {ewmh._NET_FRAME_EXTENTS, 4},
        {extra.gtkFrameExtents, 4},
        {extra.gtkApplicationID, textWords},
        {extra.kdeDesktopFile, textWords},
        {extra.bamfDesktopFile, textWords},
    }};
    Cookies cookies;
    for (std::size_t i = 0; i < askedCount; ++i) {
        cookies.properties[i] = connection.ask(window, wanted[i].first, wanted[i].second);
    }
    if (connection.hasClientProcesses()) cookies.process = connection.askProcess(window);
    cookies.geometry = xcb_get_geometry(connection.xcb(), window);
    cookies.origin = xcb_translate_coordinates(connection.xcb(), window, connection.root(), 0, 0);
    return cookies;
}

WindowType typeNamed(const xcb_ewmh_connection_t& ewmh, xcb_atom_t name) {
    if (name == ewmh._NET_WM_WINDOW_TYPE_NORMAL) return WindowType::normal;
    if (name == ewmh._NET_WM_WINDOW_TYPE_DIALOG) return WindowType::dialog;
    if (name == ewmh._NET_WM_WINDOW_TYPE_DESKTOP) return WindowType::desktop;
    if (name == ewmh._NET_WM_WINDOW_TYPE_UTILITY || name == ewmh._NET_WM_WINDOW_TYPE_SPLASH) {
        return WindowType::auxiliary;
    }
    return WindowType::furniture;
}

bool isKnownType(const xcb_ewmh_connection_t& ewmh, xcb_atom_t name) {
    const std::array known{ewmh._NET_WM_WINDOW_TYPE_NORMAL,        ewmh._NET_WM_WINDOW_TYPE_DIALOG,
                           ewmh._NET_WM_WINDOW_TYPE_DESKTOP,       ewmh._NET_WM_WINDOW_TYPE_DOCK,
                           ewmh._NET_WM_WINDOW_TYPE_TOOLBAR,       ewmh._NET_WM_WINDOW_TYPE_MENU,
                           ewmh._NET_WM_WINDOW_TYPE_UTILITY,       ewmh._NET_WM_WINDOW_TYPE_SPLASH,
                           ewmh._NET_WM_WINDOW_TYPE_DROPDOWN_MENU, ewmh._NET_WM_WINDOW_TYPE_POPUP_MENU,
                           ewmh._NET_WM_WINDOW_TYPE_NOTIFICATION,  ewmh._NET_WM_WINDOW_TYPE_TOOLTIP,
                           ewmh._NET_WM_WINDOW_TYPE_COMBO,         ewmh._NET_WM_WINDOW_TYPE_DND};
    return std::ranges::find(known, name) != known.end();
}

/// The first type of the list that the standard knows; toolkits put their own before it.
void readType(WindowReading& reading, const X11Connection& connection, const Property& named,
              const Property& owned) {
    const auto& ewmh = connection.atoms();
    const auto names = named.words();
    const auto known = std::ranges::find_if(names, [&](xcb_atom_t name) { return isKnownType(ewmh, name); });
    if (known != names.end()) {
        reading.type = typeNamed(ewmh, *known);
        reading.isDock = *known == ewmh._NET_WM_WINDOW_TYPE_DOCK;
        reading.isFurniture = reading.type == WindowType::furniture || reading.type == WindowType::desktop;
    }
    const auto parent = owned.firstWord().value_or(0);
    if (reading.type == WindowType::normal && parent != 0 && parent != reading.window) {
        reading.type = WindowType::dialog;
    }
}

std::string fromLatin1(std::string_view bytes) {
    std::string utf8;
    for (const char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            utf8 += c;
        } else {
            utf8 += static_cast<char>(0xC0 | (byte >> 6));
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

/// A property's text up to its first NUL. What claims to be UTF-8 and is not (a long title cut inside a
/// character, an old toolkit) is taken as far as it is valid, or as Latin-1.
std::string textOf(const X11Connection& connection, const Property& property) {
    std::string_view bytes = property.bytes();
    bytes = bytes.substr(0, bytes.find('\0'));
    const auto declaredUtf8 = property.type() == connection.atoms().UTF8_STRING;
    for (std::size_t cut = 0; cut < 4 && cut <= bytes.size(); ++cut) {
        const auto whole = bytes.substr(0, bytes.size() - cut);
        if (text::isValidUtf8(whole)) return std::string(whole);
        if (!declaredUtf8) break;
    }
    return fromLatin1(bytes);
}

void readClass(WindowReading& reading, const Property& property) {
    const std::string_view both = property.bytes();
    const auto middle = both.find('\0');
    reading.instanceName = both.substr(0, middle);
    if (middle == std::string_view::npos) return;
    const auto rest = both.substr(middle + 1);
    reading.className = rest.substr(0, rest.find('\0'));
}

void readStates(WindowReading& reading, const xcb_ewmh_connection_t& ewmh, const Property& property) {
    for (const auto state : property.words()) {
        reading.hidden |= state == ewmh._NET_WM_STATE_HIDDEN;
        reading.shaded |= state == ewmh._NET_WM_STATE_SHADED;
        reading.fullscreen |= state == ewmh._NET_WM_STATE_FULLSCREEN;
        reading.maximized |=
            state == ewmh._NET_WM_STATE_MAXIMIZED_HORZ || state == ewmh._NET_WM_STATE_MAXIMIZED_VERT;
    }
    // metacity calls a window hidden that is rolled up to its title bar.
    reading.hidden &= !reading.shaded;
}

Extents extentsOf(const Property& property) {
    const auto words = property.words();
    if (words.size() < 4) return {};
    const auto at = [&](std::size_t i) { return static_cast<std::int32_t>(std::min(words[i], 0x7FFFu)); };
    return {at(0), at(1), at(2), at(3)};
}

std::string hostName() {
    std::array<char, 256> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

bool isElsewhere(const Property& machine) {
    static const std::string here = hostName();
    auto where = machine.bytes();
    where = where.substr(0, where.find('\0'));
    return !where.empty() && where != here && where != "localhost";
}

/// The server itself knows which process holds a connection: what a window says of its process is a number of
/// its own sandbox or of another machine, and what it says of its machine may be a container's name, or an
/// old one.
void readProcess(WindowReading& reading, const X11Connection& connection, const Cookies& cookies) {
    const auto named = connection.take(cookies.properties[processID]).firstWord().value_or(0);
    const bool elsewhere = isElsewhere(connection.take(cookies.properties[machine]));
    const auto holder = connection.hasClientProcesses() ? connection.processIn(cookies.process) : 0;
    // Windows of other machines arrive through a process here.
    reading.isRemote = elsewhere && (holder == 0 || isForwarder(holder));
    if (reading.isRemote) return;
    reading.pid = holder != 0 ? holder : static_cast<ProcessID>(named & 0x7FFFFFFF);
}

bool takeGeometry(WindowReading& reading, const X11Connection& connection, const Cookies& cookies) {
    xcb_generic_error_t* error = nullptr;
    const Reply<xcb_get_geometry_reply_t> geometry(
        xcb_get_geometry_reply(connection.xcb(), cookies.geometry, &error));
    std::free(std::exchange(error, nullptr));
    const Reply<xcb_translate_coordinates_reply_t> origin(
        xcb_translate_coordinates_reply(connection.xcb(), cookies.origin, &error));
    std::free(error);
    if (!geometry || !origin) return false;
    reading.client = {double(origin->dst_x), double(origin->dst_y), double(geometry->width),
                      double(geometry->height)};
    // Some tiling window managers draw no frame of their own but leave the window its border, which counts
    // when it is moved.
    const std::int32_t border = geometry->border_width;
    if (reading.decoration == Extents{}) reading.decoration = {border, border, border, border};
    return true;
}

std::optional<WindowReading> takeWindow(const X11Connection& connection, xcb_window_t window,
                                        const Cookies& cookies) {
    const auto property = [&](Asked which) { return connection.take(cookies.properties[which]); };
    const auto& ewmh = connection.atoms();
    WindowReading reading;
    reading.window = window;
    readClass(reading, property(windowClass));
    const auto title = property(utf8Title);
    const auto oldTitle = property(plainTitle);
    reading.title = textOf(connection, title.exists() ? title : oldTitle);
    readProcess(reading, connection, cookies);
    reading.desktop = property(desktopNumber).firstWord();
    readStates(reading, ewmh, property(states));
    const auto named = property(types);
    readType(reading, connection, named, property(owner));
    reading.decoration = extentsOf(property(frameExtents));
    reading.invisibleBorder = extentsOf(property(gtkExtents));
    reading.gtkApplicationID = textOf(connection, property(gtkApplication));
    const auto kde = textOf(connection, property(kdeFile));
    const auto bamf = textOf(connection, property(bamfFile));
    reading.desktopFile = kde.empty() ? bamf : kde;
    if (reading.fullscreen) reading.invisibleBorder = {};
    if (!takeGeometry(reading, connection, cookies)) return std::nullopt;
    return reading;
}

}  // namespace

Rect WindowReading::frame() const {
    const auto& out = decoration;
    const auto& in = invisibleBorder;
    return {client.x - out.left + in.left, client.y - out.top + in.top,
            client.width + out.left + out.right - in.left - in.right,
            client.height + out.top + out.bottom - in.top - in.bottom};
}

std::vector<WindowReading> readWindows(X11Connection& connection, std::span<const xcb_window_t> windows) {
    std::vector<Cookies> cookies;
    cookies.reserve(windows.size());
    for (const auto window : windows) cookies.push_back(askAll(connection, window));
    std::vector<WindowReading> readings;
    readings.reserve(windows.size());
    for (std::size_t i = 0; i < windows.size(); ++i) {
        if (auto reading = takeWindow(connection, windows[i], cookies[i]))
            readings.push_back(std::move(*reading));
    }
    return readings;
}

}  // namespace quillo::x11
