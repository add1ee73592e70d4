#include "WindowEngine/desktop/DesktopSpaces.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

#include "WindowEngine/support/Poll.hpp"

namespace quillo::DesktopSpaces {
namespace {

using namespace std::chrono_literals;

constexpr Duration animationPatience = 2s;
constexpr Duration pollingInterval = 50ms;

WindowFacts facts(DesktopAccess& desktop, WindowNumber windowID) {
    return desktop.platform.windowServer.facts({&windowID, 1}).front();
}

bool holds(const std::vector<SpaceID>& spaces, SpaceID space) {
    return std::ranges::find(spaces, space) != spaces.end();
}

/// Empty when no display shows the desktop.
std::string displayOf(DesktopAccess& desktop, SpaceID space) {
    const std::vector<NativeDesktop> desktops = current(desktop);
    const auto found = std::ranges::find(desktops, space, &NativeDesktop::id);
    return found == desktops.end() ? std::string{} : found->displayID;
}

}  // namespace

std::vector<NativeDesktop> current(DesktopAccess& desktop) {
    std::vector<NativeDesktop> desktops;
    for (const DisplaySpaces& display : desktop.platform.windowServer.displaySpaces()) {
        std::int64_t index = 0;
        for (const Space& space : display.spaces) {
            if (space.kind == SpaceKind::standard)
                desktops.push_back({space.id, display.displayID, index++, space.uuid});
        }
    }
    return desktops;
}

DesktopSnapshot snapshot(const NativeDesktop& desktop) {
    return {desktop.displayID, desktop.index, desktop.uuid};
}

std::optional<DesktopSnapshot> desktopOf(const WindowFacts& facts, std::span<const NativeDesktop> desktops,
                                         const std::optional<std::string>& preferredDisplay) {
    std::vector<const NativeDesktop*> holding;
    for (const NativeDesktop& desktop : desktops) {
        if (holds(facts.spaces, desktop.id)) holding.push_back(&desktop);
    }
    if (holding.size() > 1)
        std::erase_if(holding,
                      [&](const NativeDesktop* desktop) { return desktop->displayID != preferredDisplay; });
    if (holding.size() != 1) return std::nullopt;
    return snapshot(*holding.front());
}

WindowNumber frontTab(DesktopAccess& desktop, WindowNumber windowID) {
    const WindowServerReading server = Accessibility::readWindowServer(desktop);
    const auto own = std::ranges::find(server.windows, windowID, &WindowListEntry::number);
    if (own == server.windows.end() || own->layer != 0 || !server.facts.at(windowID).spaces.empty())
        return windowID;
    const auto front = std::ranges::find_if(server.windows, [&](const WindowListEntry& other) {
        return other.layer == 0 && other.ownerPid == own->ownerPid && other.bounds == own->bounds &&
               !server.facts.at(other.number).spaces.empty();
    });
    return front == server.windows.end() ? windowID : front->number;
}

std::vector<std::vector<SpaceID>> spacesOf(DesktopAccess& desktop, std::span<const LiveWindow> windows,
                                           bool tabbed) {
    std::vector<WindowNumber> numbers;
    for (const LiveWindow& window : windows) numbers.push_back(window.windowID.value_or(0));
    std::vector<std::vector<SpaceID>> spaces;
    for (WindowFacts& read : desktop.platform.windowServer.facts(numbers))
        spaces.push_back(std::move(read.spaces));
    for (std::size_t i = 0; tabbed && i < spaces.size(); ++i) {
        if (spaces[i].empty()) spaces[i] = facts(desktop, frontTab(desktop, numbers[i])).spaces;
    }
    return spaces;
}

Task<void> waitWhileAnimating(DesktopAccess& desktop, std::string displayID) {
    co_await pollUntil([&] { return !desktop.platform.windowServer.isAnimating(displayID); }, pollingInterval,
                       animationPatience);
}

Task<bool> move(DesktopAccess& desktop, WindowNumber windowID, SpaceID space, Duration timeout) {
    if (facts(desktop, windowID).spaces == std::vector{space}) co_return true;
    co_await waitWhileAnimating(desktop, displayOf(desktop, space));
    if (!desktop.platform.windowServer.moveWindow(windowID, space)) co_return false;
    co_return co_await pollUntil([&] { return holds(facts(desktop, windowID).spaces, space); },
                                 pollingInterval, timeout, desktop.platform.windowServer.watch(windowID));
}

}  // namespace quillo::DesktopSpaces
