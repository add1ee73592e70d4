#include "WindowEngine/integrations/AppleScriptText.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <initializer_list>
#include <map>
#include <span>
#include <string_view>

namespace quillo::AppleScript {
namespace {

using namespace ScriptRequest;

/// Names in scripts, by bundle identifier.
const std::string& nameOf(const std::string& bundleIdentifier) {
    static const std::map<std::string, std::string> names{
        {"com.apple.finder", "Finder"},
        {"com.apple.Safari", "Safari"},
        {"com.google.Chrome", "Google Chrome"},
        {"com.brave.Browser", "Brave Browser"},
        {"com.microsoft.edgemac", "Microsoft Edge"},
        {"company.thebrowser.Browser", "Arc"},
    };
    return names.at(bundleIdentifier);
}

/// A text as a literal of the language: backslashes doubled, quotes escaped, the whole in double quotes.
std::string asLiteral(std::string_view text) {
    std::string literal = "\"";
    for (const char c : text) {
        if (c == '\\' || c == '"') literal += '\\';
        literal += c;
    }
    return literal += '"';
}

std::string asLiteral(const Url& url) {
    return asLiteral(url.string());
}

std::string joined(std::initializer_list<std::string_view> parts) {
    return fmt::format("{}", fmt::join(parts, ""));
}

/// The handler with which every script that lists something begins.
constexpr std::string_view joinList = R"(on joinList(lst, delim)
    set {tid, AppleScript's text item delimiters} to {AppleScript's text item delimiters, delim}
    set out to lst as text
    set AppleScript's text item delimiters to tid
    return out
end joinList
)";

/// A window of the Chromium family, as each statement names it. A place in the list of windows (`w` of
/// `repeat with w in windows` is nothing else) is looked up anew by each request, and is another window's as
/// soon as the person brings one forward. The identifier is used as the browser gave it, never written into
/// the script: some browsers have texts, some numbers, and large numbers print with an exponent.
constexpr std::string_view byIdentifier = "window id windowID";

/// The lines that go through the windows of the Chromium family.
constexpr std::string_view eachWindow = R"(    set windowIDs to id of every window
    repeat with i from 1 to (count of windowIDs)
        set windowID to item i of windowIDs
)";

/// The lines, each with this indent, that open the addresses in `window`, a reference in the script's own
/// words: the first in the tab called `into`, where it is not empty, the others as further tabs.
std::string opening(std::span<const Url> urls, std::string_view indent, std::string_view window,
                    std::string_view into) {
    std::string lines;
    if (!into.empty()) {
        lines += fmt::format("{}set URL of {} of {} to {}\n", indent, into, window, asLiteral(urls.front()));
        urls = urls.subspan(1);
    }
    for (const Url& url : urls)
        lines += fmt::format("{}make new tab at end of tabs of {} with properties {{URL:{}}}\n", indent,
                             window, asLiteral(url));
    return lines;
}

/// Writes a request; `tell` is the line that addresses the application.
struct Writing {
    std::string tell;

    std::string operator()(const ListFolders&) const {
        return joined({joinList, tell, R"(    set out to {}
    repeat with i from 1 to (count of Finder windows)
        try
            set end of out to POSIX path of (target of Finder window i as alias)
        on error
            set end of out to ""
        end try
    end repeat
end tell
return my joinList(out, linefeed))"});
    }
    std::string operator()(const OpenFolder& folder) const {
        return joined({tell, "    set target of (make new Finder window) to (POSIX file ",
                       asLiteral(folder.path),
                       R"( as alias)
end tell)"});
    }
    std::string operator()(const ListTabs& tabs) const {
        return joined({joinList, tell, "    set out to {}\n", eachWindow, R"(        try
            if mode of )",
                       byIdentifier, R"( is "incognito" then
                set end of out to )",
                       asLiteral(privateMarker), R"(
            else
                set end of out to )",
                       tabs.identified ? "(windowID as text) & (ASCII character 9) & " : "",
                       "my joinList(URL of every tab of ", byIdentifier, R"(, ASCII character 9)
            end if
        on error
            set end of out to ""
        end try
    end repeat
end tell
return my joinList(out, linefeed))"});
    }
    std::string operator()(const NewWindow& window) const {
        return joined({tell, R"(    set windowID to id of (make new window)
    set URL of active tab of )",
                       byIdentifier, " to ", asLiteral(window.first), R"(
    return windowID as text
end tell)"});
    }
    std::string operator()(const OpenTabs& tabs) const {
        return joined(
            {tell, eachWindow, "        if (windowID as text) is ", asLiteral(tabs.window), R"( then
            if mode of )",
             byIdentifier, R"( is "incognito" then error "the window is private"
)",
             opening(tabs.urls, "            ", byIdentifier, tabs.intoActiveTab ? "active tab" : ""),
             R"(            return
        end if
    end repeat
end tell
error "the window is gone")"});
    }
    std::string operator()(const ListSafariTabs& tabs) const {
        return joined(
            {joinList, tell, fmt::format("    set allowedIDs to {{{}}}", fmt::join(tabs.allowed, ", ")), R"(
    set out to {}
    repeat with w in windows
        if (id of w) is in allowedIDs then
            try
                set end of out to ((id of w) as text) & (ASCII character 9) & my joinList(URL of every tab of w, ASCII character 9)
            end try
        end if
    end repeat
end tell
return my joinList(out, linefeed))"});
    }
    std::string operator()(const NewSafariWindow& window) const {
        return joined({tell, "    make new document with properties {URL:", asLiteral(window.first), R"(}
    return id of front window
end tell)"});
    }
    std::string operator()(const OpenSafariTabs& tabs) const {
        return joined({tell,
                       fmt::format("    set targetWindow to first window whose id is {}\n", tabs.window),
                       opening(tabs.urls, "    ", "targetWindow", tabs.intoCurrentTab ? "current tab" : ""),
                       "end tell"});
    }
};

}  // namespace

std::string text(const Script& script) {
    const Writing writing{"tell application " + asLiteral(nameOf(script.bundleIdentifier)) + "\n"};
    return std::visit(writing, script.request);
}

}  // namespace quillo::AppleScript
