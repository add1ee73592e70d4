#include "platform/x11/WindowMover.hpp"

#include "platform/x11/WindowRequests.hpp"

namespace quillo::x11 {
namespace {

using namespace std::chrono_literals;

constexpr Duration patience = 2s;  // the slowest step seen took 0.6 s
constexpr Duration pollInterval = 20ms;
constexpr Duration stableInterval = 50ms;

bool looksSame(const WindowReading& a, const WindowReading& b) {
    return a.client == b.client && a.decoration == b.decoration && a.invisibleBorder == b.invisibleBorder &&
           a.hidden == b.hidden && a.shaded == b.shaded && a.maximized == b.maximized &&
           a.fullscreen == b.fullscreen;
}

}  // namespace

Task<std::optional<WindowReading>> WindowMover::waitUntil(xcb_window_t window, Condition condition,
                                                          std::uint32_t argument) {
    const auto deadline = view_.executor().timeAfter(patience);
    const auto changes = changes_.watch(window);
    for (;;) {
        auto reading = view_.windowNow(window);
        if (!reading || condition(*reading, argument)) co_return reading;
        if (view_.executor().now() >= deadline) co_return std::nullopt;
        co_await changes->next(pollInterval);
    }
}

Task<std::optional<WindowReading>> WindowMover::waitUntilStable(xcb_window_t window) {
    const auto deadline = view_.executor().timeAfter(patience);
    auto before = view_.windowNow(window);
    while (before) {
        co_await sleepFor(stableInterval);
        auto now = view_.windowNow(window);
        if (!now || looksSame(*before, *now) || view_.executor().now() >= deadline) co_return now;
        before = std::move(now);
    }
    co_return std::nullopt;
}

Task<bool> WindowMover::bringHere(xcb_window_t window) {
    const auto reading = view_.windowNow(window);
    const auto current = view_.currentDesktopNow();
    if (!reading) co_return false;
    const bool isElsewhere =
        current && reading->desktop && *reading->desktop != everyDesktop && *reading->desktop != *current;
    if (!isElsewhere) co_return true;
    auto& move = moves_[window];
    if (!move.cameFrom) move.cameFrom = reading->desktop;
    if (WindowRequests(view_).moveToDesktop(window, *current) != codeDone) co_return false;
    const auto arrived = co_await waitUntil(
        window, [](const WindowReading& now, std::uint32_t desktop) { return now.desktop == desktop; },
        *current);
    co_return arrived.has_value();
}

Task<bool> WindowMover::makeMovable(xcb_window_t window) {
    moves_[window].frame.reset();
    if (!co_await bringHere(window)) co_return false;
    auto reading = view_.windowNow(window);
    const bool asItIs = reading && !moves_[window].cameFrom && !reading->shaded && !reading->hidden &&
                        !(reading->maximized && !reading->fullscreen);
    if (asItIs) co_return true;  // nothing was asked of it that would have to come to rest
    if (reading && reading->shaded) {
        WindowRequests(view_).unshade(window);
        reading = co_await waitUntil(
            window, [](const WindowReading& now, std::uint32_t) { return !now.shaded; }, 0);
    }
    if (reading && reading->hidden) {
        WindowRequests(view_).restore(*reading, true);
        reading = co_await waitUntil(
            window, [](const WindowReading& now, std::uint32_t) { return !now.hidden; }, 0);
    }
    if (reading && reading->maximized && !reading->fullscreen) {
        WindowRequests(view_).unmaximize(window);
        reading = co_await waitUntil(
            window, [](const WindowReading& now, std::uint32_t) { return !now.maximized; }, 0);
    }
    if (!reading) co_return false;
    co_return (co_await waitUntilStable(window)).has_value();
}

void WindowMover::frameWritten(const WindowReading& before, const Rect& frame, bool maximized) {
    const auto move = moves_.find(before.window);
    if (move == moves_.end()) return;  // nobody will ask to settle it
    move->second.frame = frame;
    move->second.maximized = maximized;
    move->second.decoration = before.decoration;
    move->second.invisibleBorder = before.invisibleBorder;
}

bool WindowMover::missed(const WindowReading& now, const Move& move) {
    if (move.maximized) return !now.maximized;
    return now.decoration != move.decoration || now.invisibleBorder != move.invisibleBorder;
}

Task<void> WindowMover::settleInPlace(xcb_window_t window) {
    const auto found = moves_.find(window);
    const Move move = found == moves_.end() ? Move{} : found->second;
    auto reading = co_await waitUntilStable(window);
    if (reading && move.frame && missed(*reading, move)) {
        WindowRequests(view_).moveResize(*reading, *move.frame, FrameParts::both);
        reading = co_await waitUntilStable(window);
    }
    moves_.erase(window);
    if (!reading || !move.cameFrom) co_return;
    WindowRequests(view_).moveToDesktop(window, *move.cameFrom);
    co_await waitUntil(
        window, [](const WindowReading& now, std::uint32_t desktop) { return now.desktop == desktop; },
        *move.cameFrom);
}

}  // namespace quillo::x11
