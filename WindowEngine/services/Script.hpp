// What is asked of an application through its scripts, as a value: an interpreter is handed its text
// (AppleScript::text).
#pragma once
#include <set>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "WindowEngine/support/Url.hpp"

namespace quillo {

/// Whatever lists windows prints one line for each, front to back, its fields separated by tabs.
namespace ScriptRequest {

// Of Finder.

/// Each window's folder; an empty line for a window without one.
struct ListFolders {};
/// In a new window; fails where there is no such folder.
struct OpenFolder {
    std::string path;
};

// Of a browser of the Chromium family, which gives its windows identifiers of its own.

/// Each window's addresses, for a private one `privateMarker` alone.
struct ListTabs {
    bool identified;  // each line of addresses begins with the window's identifier
};
/// Makes a window that shows `first`; prints its identifier.
struct NewWindow {
    Url first;
};
/// Fails where there is no such window or it is a private one.
struct OpenTabs {
    std::string window;
    std::vector<Url> urls;  // not empty
    bool intoActiveTab;     // the first goes into the tab in front, which is empty
};

// Of Safari, where a window goes by its number.

/// Of each window that is allowed: its number, then its addresses.
struct ListSafariTabs {
    std::set<WindowNumber> allowed;
};
/// Makes a window that shows `first`; prints its number.
struct NewSafariWindow {
    Url first;
};
struct OpenSafariTabs {
    WindowNumber window;
    std::vector<Url> urls;  // not empty
    bool intoCurrentTab;    // the first goes into the tab in front, which is empty
};

/// Stands in the output for a window whose addresses are nobody's business.
inline constexpr std::string_view privateMarker = "__QUILLO_PRIVATE_WINDOW__";

}  // namespace ScriptRequest

struct Script {
    std::string bundleIdentifier;  // of the application that is asked
    std::variant<ScriptRequest::ListFolders, ScriptRequest::OpenFolder, ScriptRequest::ListTabs,
                 ScriptRequest::NewWindow, ScriptRequest::OpenTabs, ScriptRequest::ListSafariTabs,
                 ScriptRequest::NewSafariWindow, ScriptRequest::OpenSafariTabs>
        request;
};

}  // namespace quillo
