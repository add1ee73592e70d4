#include "WindowEngine/restore/DesktopOverview.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <chrono>

#include "WindowEngine/desktop/AccessibilityReading.hpp"
#include "WindowEngine/desktop/DesktopSpaces.hpp"
#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/support/Poll.hpp"

namespace quillo::DesktopSpaces {
namespace {

using namespace std::chrono_literals;

constexpr std::string_view dock = "com.apple.dock", addDesktopButton = "mc.spaces.add";
constexpr Duration buttonPatience = 2s, lookingInterval = 200ms;
constexpr double messagingTimeout = 1.0;  // seconds
constexpr int deepestLevel = 10;          // the button is known to stand on the fourth

constexpr std::array childrenName{ax::children};
constexpr std::array partNames{ax::children, ax::identifier, ax::position, ax::size};

std::vector<Element> childrenOf(const Attribute& attribute) {
    const auto* children = attribute ? std::get_if<std::vector<Element>>(&*attribute) : nullptr;
    return children ? *children : std::vector<Element>{};
}

/// Whether the attributes of partNames are those of an Add Desktop button within `display`.
bool isAddButton(const std::vector<Attribute>& part, const Rect& display) {
    if (part[1] != AttributeValue(std::string(addDesktopButton))) return false;
    const auto* position = part[2] ? std::get_if<Point>(&*part[2]) : nullptr;
    const auto* size = part[3] ? std::get_if<Size>(&*part[3]) : nullptr;
    return position && size &&
           display.contains(Rect{position->x, position->y, size->width, size->height}.center());
}

std::vector<std::vector<Attribute>> readParts(DesktopAccess& desktop, ProcessID pid,
                                              const std::vector<Element>& parts) {
    std::vector<Accessibility::OwnedRequest> requests;
    for (const Element& part : parts) {
        desktop.platform.accessibility.setMessagingTimeout(part, messagingTimeout);
        requests.push_back({pid, {part, partNames}});
    }
    return Accessibility::read(desktop, requests);
}

}  // namespace

std::optional<Rect> displayFrame(DesktopAccess& desktop, const std::string& displayID) {
    const auto displays = Displays::current(desktop.platform.screens);
    const auto found = std::ranges::find(displays, displayID, &DisplaySnapshot::id);
    return found == displays.end() ? std::nullopt : std::optional(found->frame);
}

DesktopOverview::~DesktopOverview() {
    if (opened_) desktop_.platform.windowServer.closeOverview();
}

std::optional<Element> DesktopOverview::addButton(const Rect& display) {
    const std::optional<ProcessID> pid = desktop_.platform.applications.serviceProcess(dock);
    if (!pid) return std::nullopt;
    const Element application = desktop_.platform.accessibility.application(*pid);
    desktop_.platform.accessibility.setMessagingTimeout(application, messagingTimeout);
    std::vector<Element> level =
        childrenOf(Accessibility::read(desktop_, *pid, {application, childrenName}).front());
    for (int depth = 1; depth <= deepestLevel && !level.empty(); ++depth) {
        std::vector<Element> below;
        const auto parts = readParts(desktop_, *pid, level);
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (isAddButton(parts[i], display)) return level[i];
            std::ranges::copy(childrenOf(parts[i][0]), std::back_inserter(below));
        }
        level = std::move(below);
    }
    return std::nullopt;
}

Task<std::optional<std::string>> DesktopOverview::addDesktop(std::string displayID) {
    std::optional<Rect> display = displayFrame(desktop_, displayID);
    if (!display) co_return std::string(displayDisconnected);
    // Asking for an overview that shows would close it on some systems.
    if (!addButton(*display)) {
        opened_ = true;
        if (!desktop_.platform.windowServer.openOverview()) co_return "macOS could not open Mission Control";
    }
    co_await waitWhileAnimating(desktop_, displayID);
    std::optional<Element> button;
    const auto looked = [&] {
        display = displayFrame(desktop_, displayID);
        button = display ? addButton(*display) : std::nullopt;
        return button || !display;
    };
    co_await pollUntil(looked, lookingInterval, buttonPatience);
    if (!display) co_return std::string(displayDisconnected);
    if (!button) co_return "Mission Control did not expose its Add Desktop button";
    const AccessibilityCode pressed = desktop_.platform.accessibility.perform(*button, ax::press);
    if (!pressed)
        co_return fmt::format("Mission Control refused Add Desktop (Accessibility error {})", pressed.code);
    co_return std::nullopt;
}

}  // namespace quillo::DesktopSpaces
