#include "WindowEngine/integrations/SafariPrivacy.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <variant>

#include "WindowEngine/desktop/AccessibilityReading.hpp"

namespace quillo::SafariPrivacy {
namespace {

constexpr double messagingTimeout = 0.5;  // seconds
constexpr int deepest = 7;                // levels below a toolbar

using Attributes = std::vector<Attribute>;

struct Browser {
    DesktopAccess& desktop;
    ProcessID pid;
};

Attributes read(Browser browser, const Element& element, std::span<const std::string_view> names) {
    return Accessibility::read(browser.desktop, browser.pid, {element, names});
}

bool isText(const Attribute& attribute, std::string_view text) {
    const auto* value = attribute ? std::get_if<std::string>(&*attribute) : nullptr;
    return value && *value == text;
}

std::vector<Element> elements(const Attribute& attribute) {
    const auto* value = attribute ? std::get_if<std::vector<Element>>(&*attribute) : nullptr;
    return value ? *value : std::vector<Element>{};
}

std::vector<Element> elements(Browser browser, const Element& element, std::string_view name) {
    return elements(read(browser, element, {&name, 1}).front());
}

/// What Safari answers when it is asked for its windows.
Attribute listed(Browser browser) {
    AccessibilityService& service = browser.desktop.platform.accessibility;
    const Element application = service.application(browser.pid);
    service.setMessagingTimeout(application, messagingTimeout);
    return read(browser, application, {&ax::windows, 1}).front();
}

/// Those that are listed, and those that are known from an enumeration.
std::vector<Element> windowsOf(Browser browser, const Attribute& list) {
    std::vector<Element> windows = elements(list);
    for (Element& known : Accessibility::knownElements(browser.desktop, browser.pid)) {
        if (std::ranges::find(windows, known) == windows.end()) windows.push_back(std::move(known));
    }
    return windows;
}

bool holdsAddressField(Browser browser, const Element& element, int depth) {
    static constexpr std::array names{ax::identifier, ax::description, ax::children};
    if (depth > deepest) return false;
    const Attributes attributes = read(browser, element, names);
    if (isText(attributes[0], "WEB_BROWSER_ADDRESS_AND_SEARCH_FIELD") &&
        isText(attributes[1], "smart search field"))
        return true;
    return std::ranges::any_of(elements(attributes[2]), [&](const Element& child) {
        return holdsAddressField(browser, child, depth + 1);
    });
}

bool isNormal(Browser browser, const Element& window) {
    return std::ranges::any_of(elements(browser, window, ax::children), [&](const Element& child) {
        return isText(read(browser, child, {&ax::role, 1}).front(), "AXToolbar") &&
               holdsAddressField(browser, child, 0);
    });
}

}  // namespace

std::set<WindowNumber> normalWindowIDs(DesktopAccess& desktop, ProcessID pid) {
    const Browser browser{desktop, pid};
    std::set<WindowNumber> numbers;
    for (const Element& window : windowsOf(browser, listed(browser))) {
        if (!isNormal(browser, window)) continue;
        if (const auto number = desktop.platform.accessibility.windowNumber(window)) numbers.insert(*number);
    }
    return numbers;
}

bool hasNoWindow(DesktopAccess& desktop, ProcessID pid) {
    const Browser browser{desktop, pid};
    const Attribute list = listed(browser);
    if (!list && list.error().reason != AttributeMiss::Reason::absent) return false;
    return std::ranges::all_of(windowsOf(browser, list), [&](const Element& window) {
        const Attribute role = read(browser, window, {&ax::role, 1}).front();
        return !role && role.error().reason == AttributeMiss::Reason::gone;
    });
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
