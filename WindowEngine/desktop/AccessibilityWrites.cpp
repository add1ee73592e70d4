// The writing half of Accessibility: nothing counts as done until it was read back.
#include <algorithm>
#include <chrono>
#include <cmath>

#include "WindowEngine/desktop/AccessibilityReading.hpp"
#include "WindowEngine/desktop/FullscreenTransition.hpp"

namespace quillo::Accessibility {
namespace {

using namespace std::chrono_literals;

constexpr Duration verificationTime = 3s;
constexpr Duration pollingInterval = 100ms;

std::optional<bool> readFlag(DesktopAccess& desktop, const LiveWindow& window, std::string_view name) {
    const Attribute attribute = read(desktop, window.pid, {window.element, {&name, 1}}).front();
    const bool* value = attribute ? std::get_if<bool>(&*attribute) : nullptr;
    return value ? std::optional(*value) : std::nullopt;
}

/// Asks for a change. Where the owner let its messaging timeout pass, nobody waits for it again at once.
template <class Ask>
auto ask(DesktopAccess& desktop, const LiveWindow& window, Ask change) {
    constexpr Duration silence = 900ms;
    const TimePoint began = desktop.platform.executor.now();
    auto answer = change(desktop.platform.accessibility);
    const TimePoint now = desktop.platform.executor.now();
    if (now - began >= silence) desktop.handles.unresponsive.timedOut(window.pid, now);
    return answer;
}

bool writeFlag(DesktopAccess& desktop, const LiveWindow& window, std::string_view name, bool value) {
    if (unresponsive(desktop, window.pid)) return false;
    return bool(ask(desktop, window, [&](AccessibilityService& service) {
        return service.write(window.element, name, value);
    }));
}

bool near(double a, double b) {
    return std::abs(a - b) <= positionTolerance;
}

bool isFinite(const Rect& frame) {
    return std::isfinite(frame.x) && std::isfinite(frame.y) && std::isfinite(frame.width) &&
           std::isfinite(frame.height);
}

Task<void> pauseBetweenReadings() {
    co_await sleepFor(pollingInterval);
}

}  // namespace

WindowMutationResult compare(const std::optional<LiveWindow>& now, const Rect& frame, bool minimized) {
    if (!now) return {};
    const Rect& actual = now->info.frame;
    return {.positionSet = near(actual.x, frame.x) && near(actual.y, frame.y),
            .sizeSet = near(actual.width, frame.width) && near(actual.height, frame.height),
            .minimizedSet = now->info.isMinimized == minimized};
}

bool setMinimized(DesktopAccess& desktop, const LiveWindow& window, bool value) {
    if (readFlag(desktop, window, ax::minimized) == value) return true;
    return writeFlag(desktop, window, ax::minimized, value);
}

bool setFullscreen(DesktopAccess& desktop, const LiveWindow& window, bool value) {
    return writeFlag(desktop, window, ax::fullScreen, value);
}

WindowMutationResult set(DesktopAccess& desktop, const LiveWindow& window, const Rect& frame,
                         bool minimized) {
    const bool restored = setMinimized(desktop, window, false);
    if (!isFinite(frame) || unresponsive(desktop, window.pid)) return {};
    const FrameWrite written = ask(desktop, window, [&](AccessibilityService& service) {
        return service.writeFrame(window.element, frame);
    });
    const bool set = setMinimized(desktop, window, minimized);
    return {.positionSet = written.positionSet, .sizeSet = written.sizeSet, .minimizedSet = restored && set};
}

Task<WindowMutationResult> setAndWait(DesktopAccess& desktop, LiveWindow window, Rect frame, bool minimized) {
    const WindowMutationResult written = set(desktop, window, frame, minimized);
    if (!written.positionSet || !written.minimizedSet) co_return written;

    const Context context = co_await quillo::context();
    const TimePoint deadline = context.now() + verificationTime;
    // Most window servers are done at once.
    Duration pause = 10ms;
    while (context.now() < deadline) {
        co_await checkpoint();
        const auto result =
            compare(readWindow(desktop, window.element, window.pid, window.info.index), frame, minimized);
        if (result.positionSet && result.minimizedSet) co_return result;
        co_await sleepFor(pause);
        pause = std::min(2 * pause, pollingInterval);
    }
    co_return compare(readWindow(desktop, window.element, window.pid, window.info.index), frame, minimized);
}

Task<bool> unminimizeAndWait(DesktopAccess& desktop, LiveWindow window) {
    const Context context = co_await quillo::context();
    writeFlag(desktop, window, ax::minimized, false);
    const TimePoint deadline = context.now() + verificationTime;
    // Three readings in a row: while the window animates the attribute flips back and forth.
    for (int agreeing = 0; context.now() < deadline;) {
        co_await checkpoint();
        agreeing = readFlag(desktop, window, ax::minimized) == false ? agreeing + 1 : 0;
        if (agreeing == 3) co_return true;
        co_await sleepFor(pollingInterval);
    }
    co_return false;
}

Task<bool> transitionFullscreen(DesktopAccess& desktop, LiveWindow window, bool target) {
    // The closures live in this frame, which outlives the awaited task.
    FullscreenTransition::Steps steps{
        .read = [&] { return readFlag(desktop, window, ax::fullScreen); },
        .request =
            [&] {
                if (!unresponsive(desktop, window.pid))
                    ask(desktop, window, [&](AccessibilityService& service) {
                        return service.perform(window.element, ax::raise);
                    });
                return setFullscreen(desktop, window, target);
            },
        .pause = pauseBetweenReadings,
    };
    co_return co_await FullscreenTransition::apply(target, 6.0, 1.0, std::move(steps));
}

}  // namespace quillo::Accessibility
