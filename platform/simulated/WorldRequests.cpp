// What windows and the window server do when they are asked for a change.
#include <algorithm>
#include <chrono>

#include "platform/simulated/World.hpp"
#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated {

std::int32_t World::requestPosition(WindowNumber number, Point position) {
    Window* window = this->window(number);
    if (!window || !suffer(*window)) return code::invalidElement;
    if (fault(FaultKind::moveRefused, *window)) return code::cannotComplete;
    // A full-screen or minimized window takes the request and stays.
    const bool fixed = window->state.fullscreen || window->transition || window->state.minimized;
    if (fixed || fault(FaultKind::moveIgnored, *window)) return code::success;
    Rect frame = window->state.frame;
    frame.x = position.x;
    frame.y = position.y;
    if (const Display* display = displayOf(frame); display && fault(FaultKind::positionClamped, *window)) {
        const Rect& bounds = display->scene.visibleFrame;
        frame.x = std::clamp(frame.x, bounds.minX(), std::max(bounds.minX(), bounds.maxX() - frame.width));
        frame.y = std::clamp(frame.y, bounds.minY(), std::max(bounds.minY(), bounds.maxY() - frame.height));
    }
    move(*window, frame);
    drift(*window);
    return code::success;
}

std::int32_t World::requestSize(WindowNumber number, Size size) {
    Window* window = this->window(number);
    if (!window || !suffer(*window)) return code::invalidElement;
    const SceneWindow& state = window->state;
    if (state.fullscreen || window->transition || state.minimized) return code::success;
    size = allowedSize(state, size);
    if (const Display* display = displayOf(state.frame); display && fault(FaultKind::sizeClamped, *window)) {
        const Rect& bounds = display->scene.frame;
        size = {std::min(size.width, bounds.width / 2), std::min(size.height, bounds.height / 2)};
    }
    move(*window, {state.frame.x, state.frame.y, size.width, size.height});
    return code::success;
}

std::int32_t World::requestMinimized(WindowNumber number, bool value) {
    Window* window = this->window(number);
    if (!window || !suffer(*window)) return code::invalidElement;
    if (fault(value ? FaultKind::minimizeRefused : FaultKind::unminimizeRefused, *window))
        return code::cannotComplete;
    // One that is full screen, or on its way, takes the request and stays.
    const bool fixed = window->state.fullscreen || window->transition;
    if (fixed || fault(FaultKind::minimizeIgnored, *window)) return code::success;
    window->state.minimized = value;
    shareWithTabs(*window);
    return code::success;
}

std::int32_t World::requestFullscreen(WindowNumber number, bool value) {
    using namespace std::chrono_literals;
    Window* window = this->window(number);
    if (!window || !suffer(*window)) return code::invalidElement;
    if (fault(FaultKind::fullscreenRefused, *window)) return code::cannotComplete;
    if (window->state.minimized || fault(FaultKind::fullscreenIgnored, *window)) return code::success;
    if (window->state.fullscreen == value) {
        window->transition.reset();
        shareWithTabs(*window);
        return code::success;
    }
    const Fault* slow = fault(FaultKind::fullscreenSlow, *window);
    window->transition =
        Window::Transition{.target = value,
                           .until = executor_.now() + 350ms + toDuration(slow ? slow->seconds : 0),
                           .flickers = fault(FaultKind::fullscreenFlickers, *window) != nullptr,
                           .shown = random_() % 2 == 0};
    shareWithTabs(*window);
    return code::success;
}

bool World::requestSpace(WindowNumber number, SpaceID space) {
    Window* window = this->window(number);
    const bool known = std::ranges::any_of(displays_, [&](const Display& display) {
        return std::ranges::find(display.desktops, space) != display.desktops.end();
    });
    if (!window || !known || (window->state.fullscreen && !likeX11_) ||
        fault(FaultKind::desktopMoveRefused, *window))
        return false;
    if (fault(FaultKind::desktopMoveIgnored, *window)) return true;
    window->space = space;
    shareWithTabs(*window);
    return true;
}

}  // namespace quillo::simulated
