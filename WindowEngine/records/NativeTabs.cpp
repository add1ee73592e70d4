#include "WindowEngine/records/NativeTabs.hpp"

#include <cstddef>
#include <map>
#include <tuple>
#include <utility>

namespace quillo::NativeTabs {
namespace {

auto placeOf(const WindowSnapshot& window) {
    const Rect& frame = window.frame;
    return std::tuple(frame.x, frame.y, frame.width, frame.height);
}

/// Everything two windows must share to be tabs of one.
auto stackOf(const WindowSnapshot& window) {
    return std::tuple(placeOf(window), window.displayID, window.isMinimized, window.isFullscreen,
                      window.subrole, window.desktop);
}

/// A tab that is not in front often has no desktop of its own: it takes that of the others in its place,
/// where they agree on one.
void inheritDesktops(std::vector<WindowSnapshot>& windows) {
    std::map<decltype(placeOf(windows.front())), std::set<DesktopSnapshot>> desktops;
    for (const WindowSnapshot& window : windows) {
        if (window.desktop) desktops[placeOf(window)].insert(*window.desktop);
    }
    for (WindowSnapshot& window : windows) {
        if (window.desktop) continue;
        const auto found = desktops.find(placeOf(window));
        if (found != desktops.end() && found->second.size() == 1) window.desktop = *found->second.begin();
    }
}

TabSnapshot tabOf(const WindowSnapshot& window) {
    return {window.title, window.documentURL};
}

void fold(WindowSnapshot window, WindowSnapshot& into) {
    if (!into.tabs) into.tabs = {tabOf(into)};
    if (window.tabs) {
        for (TabSnapshot& tab : *window.tabs) into.tabs->push_back(std::move(tab));
    } else {
        into.tabs->push_back(tabOf(window));
    }
}

}  // namespace

const std::set<std::string, std::less<>>& applications() {
    static const std::set<std::string, std::less<>> identifiers{"com.mitchellh.ghostty", "com.apple.Terminal",
                                                                "com.apple.finder"};
    return identifiers;
}

std::vector<WindowSnapshot> collapse(std::vector<WindowSnapshot> windows, std::string_view bundleIdentifier) {
    if (!applications().contains(bundleIdentifier)) return windows;
    inheritDesktops(windows);

    std::vector<WindowSnapshot> result;
    std::map<decltype(stackOf(windows.front())), std::size_t> stacks;  // places in the result
    for (WindowSnapshot& window : windows) {
        const auto [stack, isNew] = stacks.try_emplace(stackOf(window), result.size());
        if (isNew) {
            result.push_back(std::move(window));
        } else {
            fold(std::move(window), result[stack->second]);
        }
    }
    return result;
}

ApplicationSnapshot collapse(ApplicationSnapshot application) {
    application.windows = collapse(std::move(application.windows), application.bundleIdentifier);
    return application;
}

}  // namespace quillo::NativeTabs
