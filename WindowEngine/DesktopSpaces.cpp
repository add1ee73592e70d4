#include "WindowEngine/DesktopSpaces.hpp"

#include <algorithm>

namespace quillo::DesktopSpaces {

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
        if (std::ranges::find(facts.spaces, desktop.id) != facts.spaces.end()) holding.push_back(&desktop);
    }
    if (holding.size() > 1)
        std::erase_if(holding,
                      [&](const NativeDesktop* desktop) { return desktop->displayID != preferredDisplay; });
    if (holding.size() != 1) return std::nullopt;
    return snapshot(*holding.front());
}

bool isFullscreen(DesktopAccess& desktop, WindowNumber windowID) {
    return desktop.platform.windowServer.facts({&windowID, 1}).front().isFullscreen;
}

bool isStandardWindow(DesktopAccess& desktop, WindowNumber windowID) {
    return desktop.platform.windowServer.facts({&windowID, 1}).front().isStandard;
}

std::optional<WindowNumber> windowID(DesktopAccess& desktop, const Element& window) {
    return desktop.platform.accessibility.windowNumber(window);
}

}  // namespace quillo::DesktopSpaces
