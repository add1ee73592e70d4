// The overview of all desktops and its Add Desktop buttons. That it takes a moment to show, that a desktop
// takes a moment to appear and that a press at the limit is accepted without effect is what automation of it
// has to expect by public accounts; it was not measured here.
#include <algorithm>
#include <chrono>

#include "platform/simulated/World.hpp"

namespace quillo::simulated {
namespace {

using namespace std::chrono_literals;

constexpr Duration overviewOpens = 300ms, desktopAppears = 250ms;
constexpr std::size_t desktopLimit = 16;  // of one display

}  // namespace

bool World::openOverview() {
    if (fault(FaultKind::overviewRefused)) return false;
    if (!overviewShownAt_) overviewShownAt_ = executor_.now() + overviewOpens;
    return true;
}

bool World::overviewShown() const {
    return overviewShownAt_ && *overviewShownAt_ <= executor_.now();
}

bool World::showsAddDesktop(std::string_view displayID) const {
    return overviewShown() && display(displayID) && !fault(FaultKind::addDesktopMissing);
}

std::int32_t World::pressAddDesktop(std::string_view displayID) {
    if (!showsAddDesktop(displayID)) return code::invalidElement;
    if (fault(FaultKind::addDesktopRefused)) return code::failure;
    if (fault(FaultKind::addDesktopIgnored)) return code::success;
    at(executor_.now() + desktopAppears, [this, id = std::string(displayID)] {
        const auto grown = std::ranges::find(displays_, id, [](const Display& one) { return one.scene.id; });
        if (grown != displays_.end() && grown->desktops.size() < desktopLimit)
            grown->desktops.push_back(nextSpace_++);
    });
    return code::success;
}

void World::removeDesktop(std::string_view displayID, std::int64_t index) {
    const auto shrunk =
        std::ranges::find(displays_, displayID, [](const Display& one) { return one.scene.id; });
    if (shrunk == displays_.end() || shrunk->desktops.size() < 2) return;
    const auto removed = shrunk->desktops.begin() + index;
    const SpaceID gone = *removed, refuge = index > 0 ? *(removed - 1) : *(removed + 1);
    for (Window& window : windows_) {
        if (window.space == gone) window.space = refuge;
    }
    if (likeX11_) {
        for (Display& display : displays_) std::erase(display.desktops, gone);
    } else {
        shrunk->desktops.erase(removed);
    }
    if (shrunk->scene.shownDesktop >= index && shrunk->scene.shownDesktop > 0) --shrunk->scene.shownDesktop;
}

}  // namespace quillo::simulated
