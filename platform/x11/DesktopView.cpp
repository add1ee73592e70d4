#include "platform/x11/DesktopView.hpp"

#include <algorithm>
#include <unordered_set>

namespace quillo::x11 {
namespace {

constexpr std::uint32_t mostWindows = 65536;

bool holds(std::span<const std::uint32_t> list, std::uint32_t word) {
    return std::ranges::find(list, word) != list.end();
}

}  // namespace

const WindowReading* DesktopReading::find(xcb_window_t window) const {
    const auto found = std::ranges::find(windows, window, &WindowReading::window);
    return found == windows.end() ? nullptr : &*found;
}

DesktopView::DesktopView(Executor& executor, X11Connection& connection)
    : executor_(executor), connection_(connection) {}

void DesktopView::dropAfterThisTurn() {
    executor_.post([turn = std::weak_ptr(turn_)] {
        if (const auto held = turn.lock()) held->reset();
    });
}

const DesktopReading& DesktopView::reading() {
    if (turn_->reading) return *turn_->reading;
    const auto& ewmh = connection_.atoms();
    const auto root = connection_.root();
    const auto clients = connection_.ask(root, ewmh._NET_CLIENT_LIST, mostWindows);
    const auto stacking = connection_.ask(root, ewmh._NET_CLIENT_LIST_STACKING, mostWindows);
    const auto count = connection_.ask(root, ewmh._NET_NUMBER_OF_DESKTOPS, 1);
    const auto current = connection_.ask(root, ewmh._NET_CURRENT_DESKTOP, 1);
    DesktopReading reading;
    const auto opened = connection_.take(clients);
    const auto stacked = connection_.take(stacking);
    reading.desktopCount = connection_.take(count).firstWord().value_or(0);
    reading.currentDesktop = connection_.take(current).firstWord();
    reading.windows = readWindows(connection_, opened.words());
    const auto stackOrder = stacked.words().empty() ? opened.words() : stacked.words();
    reading.frontToBack.assign(stackOrder.rbegin(), stackOrder.rend());
    turn_->reading = std::move(reading);
    dropAfterThisTurn();
    return *turn_->reading;
}

const std::vector<KnownApplication>& DesktopView::applications() {
    if (!turn_->applications) {
        const auto& windows = reading().windows;
        turn_->applications = registry_.applications({windows.begin(), windows.end()});
    }
    return *turn_->applications;
}

const KnownApplication* DesktopView::applicationOf(ProcessID pid) {
    const auto& all = applications();
    const auto found = std::ranges::find_if(all, [pid](const KnownApplication& one) {
        return std::ranges::find(one.processes, pid) != one.processes.end();
    });
    return found == all.end() ? nullptr : &*found;
}

const KnownApplication* DesktopView::applicationNamed(std::string_view identifier) {
    const auto& all = applications();
    const auto found = std::ranges::find_if(
        all, [&](const KnownApplication& one) { return one.running.bundleIdentifier == identifier; });
    return found == all.end() ? nullptr : &*found;
}

OpenedKinds DesktopView::opensOf(const WindowReading& window) {
    const auto* known = turn_->applications ? applicationOf(window.pid) : nullptr;
    return known ? known->opens : registry_.opens(window);
}

std::vector<WindowReading> DesktopView::readManaged(std::span<const xcb_window_t> wanted) {
    const auto cookie =
        connection_.ask(connection_.root(), connection_.atoms()._NET_CLIENT_LIST, mostWindows);
    auto readings = readWindows(connection_, wanted);
    const auto clients = connection_.take(cookie);
    std::erase_if(readings, [&](const WindowReading& one) { return !holds(clients.words(), one.window); });
    return readings;
}

std::vector<WindowReading> DesktopView::windows(std::span<const xcb_window_t> wanted) {
    if (!turn_->reading) return readManaged(wanted);
    const std::unordered_set<xcb_window_t> set(wanted.begin(), wanted.end());
    std::vector<WindowReading> found;
    std::ranges::copy_if(turn_->reading->windows, std::back_inserter(found),
                         [&](const WindowReading& one) { return set.contains(one.window); });
    return found;
}

std::optional<WindowReading> DesktopView::windowNow(xcb_window_t window) {
    auto readings = readManaged(std::span(&window, 1));
    return readings.empty() ? std::nullopt : std::optional(std::move(readings.front()));
}

std::optional<std::uint32_t> DesktopView::currentDesktopNow() {
    return connection_.take(connection_.ask(connection_.root(), connection_.atoms()._NET_CURRENT_DESKTOP, 1))
        .firstWord();
}

std::optional<xcb_window_t> DesktopView::activeWindowNow() {
    const auto asked = connection_.ask(connection_.root(), connection_.atoms()._NET_ACTIVE_WINDOW, 1);
    const auto window = connection_.take(asked).firstWord();
    return window == XCB_WINDOW_NONE ? std::nullopt : window;
}

std::uint32_t DesktopView::desktopCount() {
    if (turn_->reading) return turn_->reading->desktopCount;
    const auto asked = connection_.ask(connection_.root(), connection_.atoms()._NET_NUMBER_OF_DESKTOPS, 1);
    return connection_.take(asked).firstWord().value_or(0);
}

std::string DesktopView::accessibilityBus() {
    constexpr std::uint32_t longestAddress = 256;  // words
    const auto property = connection_.take(
        connection_.ask(connection_.root(), connection_.extra().accessibilityBus, longestAddress));
    const auto address = property.bytes();
    return std::string(address.substr(0, address.find('\0')));
}

bool DesktopView::managedByI3() {
    const auto& ewmh = connection_.atoms();
    const auto manager =
        connection_.take(connection_.ask(connection_.root(), ewmh._NET_SUPPORTING_WM_CHECK, 1)).firstWord();
    return manager && connection_.take(connection_.ask(*manager, ewmh._NET_WM_NAME, 8)).bytes() == "i3";
}

bool DesktopView::isTiled(xcb_window_t window) {
    const auto asked = connection_.ask(window, connection_.extra().i3Floating, 1);
    return managedByI3() && !connection_.take(asked).exists();
}

Capability DesktopView::access() {
    const auto& ewmh = connection_.atoms();
    const auto named =
        connection_.take(connection_.ask(connection_.root(), ewmh._NET_SUPPORTING_WM_CHECK, 1)).firstWord();
    // A window manager that ended leaves the root's word behind; its own window is gone then.
    const auto itself =
        named ? connection_.take(connection_.ask(*named, ewmh._NET_SUPPORTING_WM_CHECK, 1)).firstWord()
              : std::nullopt;
    if (!connection_.alive()) {
        return Capability::unavailable(
            "The X server has gone away. Start this again inside a graphical session.");
    }
    if (!named || itself != named) {
        return Capability::unavailable(
            "No window manager that speaks EWMH runs on display " + connection_.displayName() +
            ". Start one (openbox, xfwm4, metacity, kwin and mutter do) and try again.");
    }
    return Capability::available();
}

}  // namespace quillo::x11
