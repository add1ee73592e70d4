#include "platform/x11/X11Screens.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>

#include "WindowEngine/services/Stamp.hpp"
#include "platform/x11/Edid.hpp"
#include "platform/x11/ScreenSaver.hpp"

namespace quillo::x11 {
namespace {

constexpr std::uint32_t edidWords = 32;  // the first block

/// What one strut takes from a monitor, edge by edge.
struct Bite {
    Rect area;
    enum { fromLeft, fromRight, fromTop, fromBottom } edge;
};

std::array<Bite, 4> bites(const Strut& strut, Size root) {
    return {{
        {{0, strut.leftStart, strut.left, strut.leftEnd - strut.leftStart + 1}, Bite::fromLeft},
        {{root.width - strut.right, strut.rightStart, strut.right, strut.rightEnd - strut.rightStart + 1},
         Bite::fromRight},
        {{strut.topStart, 0, strut.topEnd - strut.topStart + 1, strut.top}, Bite::fromTop},
        {{strut.bottomStart, root.height - strut.bottom, strut.bottomEnd - strut.bottomStart + 1,
          strut.bottom},
         Bite::fromBottom},
    }};
}

Rect without(const Rect& visible, const Bite& bite) {
    if (!visible.intersects(bite.area)) return visible;
    Rect rest = visible;
    switch (bite.edge) {
        case Bite::fromLeft:
            rest.width = visible.maxX() - bite.area.maxX();
            rest.x = bite.area.maxX();
            break;
        case Bite::fromRight:
            rest.width = bite.area.minX() - visible.minX();
            break;
        case Bite::fromTop:
            rest.height = visible.maxY() - bite.area.maxY();
            rest.y = bite.area.maxY();
            break;
        case Bite::fromBottom:
            rest.height = bite.area.minY() - visible.minY();
            break;
    }
    return rest.width >= 1 && rest.height >= 1 ? rest : visible;  // nothing may cover a whole monitor
}

}  // namespace

Rect visiblePart(const Rect& monitor, std::span<const Strut> struts, Size root,
                 std::span<const Rect> monitors) {
    Rect visible = monitor;
    for (const auto& strut : struts) {
        const bool onAny =
            std::ranges::any_of(monitors, [&](const Rect& one) { return one.intersects(strut.panel); });
        if (onAny && !monitor.intersects(strut.panel)) continue;
        for (const auto& bite : bites(strut, root)) visible = without(visible, bite);
    }
    return visible;
}

X11Screens::Monitor X11Screens::wholeRoot() {
    auto* xcb = view_.connection().xcb();
    const auto cookie = xcb_get_geometry(xcb, view_.connection().root());
    const Reply<xcb_get_geometry_reply_t> root(xcb_get_geometry_reply(xcb, cookie, nullptr));
    if (!root) return {};
    return {{0, 0, double(root->width), double(root->height)}, true, "screen", std::nullopt};
}

std::vector<X11Screens::Monitor> X11Screens::monitors() {
    auto& connection = view_.connection();
    auto* xcb = connection.xcb();
    if (!connection.hasMonitors()) {
        auto root = wholeRoot();
        return root.frame.width > 0 ? std::vector{std::move(root)} : std::vector<Monitor>{};
    }
    const Reply<xcb_randr_get_monitors_reply_t> reply(
        xcb_randr_get_monitors_reply(xcb, xcb_randr_get_monitors(xcb, connection.root(), 1), nullptr));
    struct Asked {
        Monitor monitor;
        xcb_get_atom_name_cookie_t name;
        std::optional<xcb_randr_get_output_property_cookie_t> edid;
    };
    std::vector<Asked> asked;
    if (!reply) return {};
    for (auto it = xcb_randr_get_monitors_monitors_iterator(reply.get()); it.rem > 0;
         xcb_randr_monitor_info_next(&it)) {
        const auto& info = *it.data;
        if (info.width == 0 || info.height == 0) continue;
        Asked one;
        one.monitor.frame = {double(info.x), double(info.y), double(info.width), double(info.height)};
        one.monitor.primary = info.primary != 0;
        one.name = xcb_get_atom_name(xcb, info.name);
        if (xcb_randr_monitor_info_outputs_length(&info) > 0) {
            one.edid =
                xcb_randr_get_output_property(xcb, *xcb_randr_monitor_info_outputs(&info),
                                              connection.extra().edid, XCB_ATOM_ANY, 0, edidWords, 0, 0);
        }
        asked.push_back(std::move(one));
    }
    std::vector<Monitor> monitors;
    for (auto& one : asked) {
        xcb_generic_error_t* error = nullptr;
        if (const Reply<xcb_get_atom_name_reply_t> name{xcb_get_atom_name_reply(xcb, one.name, &error)}) {
            const auto length = static_cast<std::size_t>(xcb_get_atom_name_name_length(name.get()));
            one.monitor.name.assign(xcb_get_atom_name_name(name.get()), length);
        }
        std::free(std::exchange(error, nullptr));
        if (one.edid) {
            const Reply<xcb_randr_get_output_property_reply_t> edid(
                xcb_randr_get_output_property_reply(xcb, *one.edid, &error));
            std::free(error);
            if (edid && edid->format == 8) {
                const auto length =
                    static_cast<std::size_t>(xcb_randr_get_output_property_data_length(edid.get()));
                one.monitor.edid = edidIdentity(
                    std::as_bytes(std::span(xcb_randr_get_output_property_data(edid.get()), length)));
            }
        }
        monitors.push_back(std::move(one.monitor));
    }
    return monitors;
}

std::vector<Strut> X11Screens::struts() {
    auto& connection = view_.connection();
    const auto& ewmh = connection.atoms();
    struct Asked {
        Rect panel;
        xcb_get_property_cookie_t partial, plain;
    };
    std::vector<Asked> asked;
    for (const auto& window : view_.reading().windows) {
        if (!window.isDock) continue;
        asked.push_back({window.client, connection.ask(window.window, ewmh._NET_WM_STRUT_PARTIAL, 12),
                         connection.ask(window.window, ewmh._NET_WM_STRUT, 4)});
    }
    std::vector<Strut> struts;
    constexpr double farAway = 1e6;
    for (const auto& one : asked) {
        const auto partial = connection.take(one.partial);
        const auto plain = connection.take(one.plain);
        const auto words = partial.words().size() >= 12 ? partial.words() : plain.words();
        if (words.size() < 4) continue;
        const auto at = [&](std::size_t i, double otherwise) {
            return words.size() >= 12 ? double(words[i]) : otherwise;
        };
        struts.push_back({.panel = one.panel,
                          .left = double(words[0]),
                          .right = double(words[1]),
                          .top = double(words[2]),
                          .bottom = double(words[3]),
                          .leftStart = at(4, 0),
                          .leftEnd = at(5, farAway),
                          .rightStart = at(6, 0),
                          .rightEnd = at(7, farAway),
                          .topStart = at(8, 0),
                          .topEnd = at(9, farAway),
                          .bottomStart = at(10, 0),
                          .bottomEnd = at(11, farAway)});
    }
    return struts;
}

std::vector<Screen> X11Screens::screens() {
    auto found = monitors();
    if (found.empty()) return {};
    const auto primary = std::ranges::find_if(found, &Monitor::primary);
    if (primary != found.end()) std::rotate(found.begin(), primary, primary + 1);
    std::vector<Rect> frames;
    for (const auto& monitor : found) frames.push_back(monitor.frame);
    const auto keptFree = struts();
    const auto root = wholeRoot().frame;

    std::vector<Screen> screens;
    for (const auto& monitor : found) {
        const auto sameEdid = std::ranges::count(found, monitor.edid, &Monitor::edid);
        const bool byEdid = monitor.edid && sameEdid == 1;  // twins by their connectors
        screens.push_back({.stableID = byEdid ? *monitor.edid : monitor.name,
                           .frame = monitor.frame,
                           .visibleFrame = visiblePart(monitor.frame, keptFree, root.size(), frames),
                           .scale = 1,
                           .model = monitor.edid,
                           .connector = monitor.name});
    }
    return screens;
}

std::uint64_t X11Screens::stamp() {
    Stamp stamp;
    for (const Monitor& monitor : monitors()) {
        stamp.add(monitor.frame);
        stamp.add(std::uint64_t{monitor.primary});
        stamp.add(std::hash<std::string>()(monitor.name + "\n" + monitor.edid.value_or("")));
    }
    return stamp.value();
}

ScreenState X11Screens::state() {
    if (isLocked_ && isLocked_()) return ScreenState::locked;
    const auto& connection = view_.connection();
    return isBlank(connection.xcb(), connection.root()) ? ScreenState::blank : ScreenState::shown;
}

}  // namespace quillo::x11
