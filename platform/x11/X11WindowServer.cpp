#include "platform/x11/X11WindowServer.hpp"

#include <algorithm>
#include <unordered_map>

#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/services/Stamp.hpp"
#include "platform/x11/WindowRequests.hpp"

namespace quillo::x11 {
namespace {

constexpr std::int32_t ordinaryLayer = 0;
constexpr std::int32_t furnitureLayer = 20;

SpaceID spaceOf(std::uint32_t desktop) {
    return SpaceID{desktop} + 1;
}

std::vector<SpaceID> spacesOf(const WindowReading& window, std::uint32_t desktopCount) {
    if (!window.desktop) return {};
    if (*window.desktop != everyDesktop) return {spaceOf(*window.desktop)};
    std::vector<SpaceID> all;
    for (std::uint32_t desktop = 0; desktop < desktopCount; ++desktop) all.push_back(spaceOf(desktop));
    return all;
}

Result<void> resultOf(std::int32_t code) {
    switch (code) {
        case codeDone:
            return {};
        case codeGone:
            return fail(ErrorKind::notFound, "the window is gone", code);
        case codeNoConnection:
            return fail(ErrorKind::unavailable, "the X server has gone away", code);
        default:
            return fail(ErrorKind::refused, "the X server refused the request", code);
    }
}

}  // namespace

std::vector<WindowListEntry> X11WindowServer::windowList() {
    const auto& reading = view_.reading();
    std::unordered_map<xcb_window_t, ProcessID> owners;
    for (const auto& application : view_.applications()) {
        for (const auto index : application.windows) {
            owners[reading.windows[index].window] = application.running.pid;
        }
    }
    std::unordered_map<xcb_window_t, const WindowReading*> known;
    for (const auto& window : reading.windows) known[window.window] = &window;
    std::vector<WindowListEntry> list;
    for (const auto number : reading.frontToBack) {
        const auto window = known.find(number);
        if (window == known.end() || window->second->type == WindowType::desktop) continue;
        const auto owner = owners.find(number);
        list.push_back({.ownerPid = owner == owners.end() ? 0 : owner->second,
                        .layer = window->second->isListed() ? ordinaryLayer : furnitureLayer,
                        .number = number,
                        .bounds = window->second->frame(),
                        .process = window->second->pid});
    }
    return list;
}

std::vector<DisplaySpaces> X11WindowServer::displaySpaces() {
    std::vector<Space> spaces;
    for (std::uint32_t desktop = 0; desktop < view_.desktopCount(); ++desktop) {
        spaces.push_back({.id = spaceOf(desktop), .kind = SpaceKind::standard, .uuid = std::nullopt});
    }
    std::vector<DisplaySpaces> displays;
    if (spaces.empty()) return displays;
    for (const auto& screen : screens_.screens()) displays.push_back({Displays::identifier(screen), spaces});
    return displays;
}

std::vector<WindowFacts> X11WindowServer::facts(std::span<const WindowNumber> numbers) {
    const auto windows = view_.windows(numbers);
    const auto desktopCount = view_.desktopCount();
    std::unordered_map<WindowNumber, const WindowReading*> known;
    for (const auto& window : windows) known[window.window] = &window;
    std::vector<WindowFacts> all;
    all.reserve(numbers.size());
    for (const auto number : numbers) {
        const auto window = known.find(number);
        if (window == known.end()) {
            all.emplace_back();
            continue;
        }
        const auto& read = *window->second;
        all.push_back({.spaces = spacesOf(read, desktopCount),
                       .isStandard = read.type == WindowType::normal,
                       .isFullscreen = read.fullscreen});
    }
    return all;
}

std::optional<WindowNumber> X11WindowServer::windowInFront() {
    return view_.activeWindowNow();
}

std::vector<SpaceID> X11WindowServer::spacesInFront() {
    const auto desktop = view_.currentDesktopNow();
    return desktop ? std::vector{spaceOf(*desktop)} : std::vector<SpaceID>{};
}

/// Without asking whose the windows are, which looks at processes.
std::uint64_t X11WindowServer::stamp() {
    const auto& reading = view_.reading();
    Stamp stamp;
    for (const auto number : reading.frontToBack) stamp.add(number);
    for (const auto& window : reading.windows) {
        stamp.add(window.window);
        stamp.add(window.frame());
        stamp.add(window.desktop.value_or(everyDesktop));
        stamp.add((window.hidden ? 1U : 0U) + (window.fullscreen ? 2U : 0U));
        stamp.add(std::hash<std::string>{}(window.title));
    }
    return stamp.value();
}

Capability X11WindowServer::spaces() {
    if (view_.desktopCount() > 0) return Capability::available();
    return Capability::unavailable("The window manager does not tell of any desktops.");
}

Capability X11WindowServer::desktopCreation() {
    if (!view_.managedByI3()) return spaces();
    return Capability::unavailable("i3 makes a workspace only when a person goes there.");
}

bool X11WindowServer::isAnimating(std::string_view) {
    return false;
}

Result<void> X11WindowServer::moveWindow(WindowNumber number, SpaceID space) {
    if (space < 1 || space > view_.desktopCount()) {
        return fail(ErrorKind::invalidArgument, "there is no desktop " + std::to_string(space));
    }
    return resultOf(WindowRequests(view_).moveToDesktop(number, static_cast<std::uint32_t>(space - 1)));
}

Result<void> X11WindowServer::createDesktop(std::string_view) {
    const auto count = view_.desktopCount();
    if (count == 0) return fail(ErrorKind::unavailable, spaces().reason());
    return resultOf(WindowRequests(view_).setDesktopCount(count + 1));
}

}  // namespace quillo::x11
