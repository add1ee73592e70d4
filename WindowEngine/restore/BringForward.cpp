#include "WindowEngine/restore/BringForward.hpp"

#include <algorithm>
#include <chrono>
#include <map>

namespace quillo::Restore {
namespace {

using namespace std::chrono_literals;

/// Faster than a person who has just chosen a workspace goes elsewhere.
constexpr int looks = 6;
constexpr Duration lookInterval = 50ms;

}  // namespace

BringForward::BringForward(DesktopAccess& desktop)
    : desktop_(desktop), inFront_(desktop.platform.windowServer.windowInFront()) {}

Task<void> BringForward::look() {
    for (int look = 0; look < looks; ++look) {
        co_await sleepFor(lookInterval);
        const auto now = desktop_.platform.windowServer.windowInFront();
        if (now && now != inFront_) {
            inFront_ = now;
            co_return;
        }
    }
}

void BringForward::raise() {
    AccessibilityService& accessibility = desktop_.platform.accessibility;
    std::map<WindowNumber, Element> back;
    for (const Element& window : windows) {
        if (const auto number = accessibility.windowNumber(window)) back.emplace(*number, window);
    }
    const auto inFront = desktop_.platform.windowServer.windowInFront();
    if (inFront && inFront != inFront_ && !back.contains(*inFront)) return;
    auto upwards = desktop_.platform.windowServer.windowList();
    std::ranges::reverse(upwards);
    const auto last = std::ranges::find_if(upwards, [&](const auto& one) { return one.number == inFront; });
    if (last != upwards.end()) std::rotate(last, last + 1, upwards.end());
    for (const WindowListEntry& one : upwards) {
        const auto found = back.find(one.number);
        if (found == back.end()) continue;
        (void)accessibility.perform(found->second, ax::raise);
        // Where a window rises among those of its application only.
        (void)accessibility.write(accessibility.application(one.ownerPid), ax::frontmost, true);
    }
}

}  // namespace quillo::Restore
