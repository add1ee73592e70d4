#include "WindowEngine/restore/BringForward.hpp"

#include <algorithm>
#include <chrono>

namespace quillo::Restore {
namespace {

using namespace std::chrono_literals;

/// A person who has just chosen a workspace does not go elsewhere as fast as this.
constexpr Duration settling = 300ms;
constexpr Duration often = 50ms, later = 100ms;

}  // namespace

std::map<WindowNumber, Element> byNumber(AccessibilityService& accessibility,
                                         const std::vector<Element>& windows) {
    std::map<WindowNumber, Element> numbered;
    for (const Element& window : windows) {
        if (const auto number = accessibility.windowNumber(window)) numbered.emplace(*number, window);
    }
    return numbered;
}

void bringToFront(AccessibilityService& accessibility, const Element& window, ProcessID owner) {
    (void)accessibility.perform(window, ax::raise);
    // Where a window rises among those of its application only.
    (void)accessibility.write(accessibility.application(owner), ax::frontmost, true);
}

Task<void> BringForward::look() {
    inFront_ = desktop_.platform.windowServer.windowInFront();
    const TimePoint settled = desktop_.platform.executor.now() + settling;
    while (true) {
        const bool settles = desktop_.platform.executor.now() < settled;
        co_await sleepFor(settles ? often : later);
        const auto now = desktop_.platform.windowServer.windowInFront();
        if (!now || now == inFront_) continue;
        if (settles)
            inFront_ = now;
        else
            visited_.insert(*now);
    }
}

void BringForward::raise() {
    AccessibilityService& accessibility = desktop_.platform.accessibility;
    const std::map<WindowNumber, Element> back = byNumber(accessibility, windows);
    const auto inFront = desktop_.platform.windowServer.windowInFront();
    if (inFront && inFront != inFront_) visited_.insert(*inFront);
    const auto isBack = [&](WindowNumber number) { return back.contains(number); };
    if (!std::ranges::all_of(visited_, isBack)) return;
    auto upwards = desktop_.platform.windowServer.windowList();
    std::ranges::reverse(upwards);
    const auto last = std::ranges::find_if(upwards, [&](const auto& one) { return one.number == inFront; });
    if (last != upwards.end()) std::rotate(last, last + 1, upwards.end());
    for (const WindowListEntry& one : upwards) {
        const auto found = back.find(one.number);
        if (found != back.end()) bringToFront(accessibility, found->second, one.ownerPid);
    }
}

}  // namespace quillo::Restore
