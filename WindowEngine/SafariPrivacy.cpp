#include "WindowEngine/SafariPrivacy.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <variant>

namespace quillo::SafariPrivacy {
namespace {

constexpr double messagingTimeout = 0.5;  // seconds
constexpr int deepest = 7;                // levels below a toolbar

using Attributes = std::vector<Attribute>;

Attributes read(DesktopAccess& desktop, const Element& element, std::span<const std::string_view> names) {
    const AttributeRequest request{element, names};
    return std::move(desktop.platform.accessibility.read({&request, 1}).front());
}

bool isText(const Attribute& attribute, std::string_view text) {
    const auto* value = attribute ? std::get_if<std::string>(&*attribute) : nullptr;
    return value && *value == text;
}

std::vector<Element> elements(const Attribute& attribute) {
    const auto* value = attribute ? std::get_if<std::vector<Element>>(&*attribute) : nullptr;
    return value ? *value : std::vector<Element>{};
}

std::vector<Element> elements(DesktopAccess& desktop, const Element& element, std::string_view name) {
    return elements(read(desktop, element, {&name, 1}).front());
}

bool holdsAddressField(DesktopAccess& desktop, const Element& element, int depth) {
    static constexpr std::array names{ax::identifier, ax::description, ax::children};
    if (depth > deepest) return false;
    const Attributes attributes = read(desktop, element, names);
    if (isText(attributes[0], "WEB_BROWSER_ADDRESS_AND_SEARCH_FIELD") &&
        isText(attributes[1], "smart search field"))
        return true;
    return std::ranges::any_of(elements(attributes[2]), [&](const Element& child) {
        return holdsAddressField(desktop, child, depth + 1);
    });
}

bool isNormal(DesktopAccess& desktop, const Element& window) {
    return std::ranges::any_of(elements(desktop, window, ax::children), [&](const Element& child) {
        return isText(read(desktop, child, {&ax::role, 1}).front(), "AXToolbar") &&
               holdsAddressField(desktop, child, 0);
    });
}

}  // namespace

std::set<WindowNumber> normalWindowIDs(DesktopAccess& desktop, ProcessID pid) {
    AccessibilityService& service = desktop.platform.accessibility;
    const Element application = service.application(pid);
    service.setMessagingTimeout(application, messagingTimeout);
    std::set<WindowNumber> numbers;
    for (const Element& window : elements(desktop, application, ax::windows)) {
        if (!isNormal(desktop, window)) continue;
        if (const auto number = service.windowNumber(window)) numbers.insert(*number);
    }
    return numbers;
}

bool removeUnverified(DesktopAccess& desktop, std::string_view bundleIdentifier, ProcessID pid,
                      std::vector<LiveWindow>& windows) {
    if (bundleIdentifier != safari || windows.empty()) return false;
    const std::set<WindowNumber> normal = normalWindowIDs(desktop, pid);
    const auto removed = std::erase_if(windows, [&](const LiveWindow& window) {
        return !window.windowID || !normal.contains(*window.windowID);
    });
    return removed > 0;
}

}  // namespace quillo::SafariPrivacy
