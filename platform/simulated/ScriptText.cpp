#include "platform/simulated/ScriptText.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "WindowEngine/support/Text.hpp"

namespace quillo::simulated {
namespace {

// In a template <name> stands for a text literal, <#name> for a whole number, <##name> for several between
// commas; a line that begins with * may come any number of times, one that begins with ? may be missing.

constexpr std::string_view joinList = R"(on joinList(lst, delim)
    set {tid, AppleScript's text item delimiters} to {AppleScript's text item delimiters, delim}
    set out to lst as text
    set AppleScript's text item delimiters to tid
    return out
end joinList
)";

constexpr std::string_view listFolders = R"(tell application <application>
    set out to {}
    repeat with i from 1 to (count of Finder windows)
        try
            set end of out to POSIX path of (target of Finder window i as alias)
        on error
            set end of out to ""
        end try
    end repeat
end tell
return my joinList(out, linefeed))";

constexpr std::string_view openFolder = R"(tell application <application>
    set target of (make new Finder window) to (POSIX file <folder> as alias)
end tell)";

constexpr std::string_view eachWindow = R"(tell application <application>
    set out to {}
    repeat with w in windows
        try
            if mode of w is "incognito" then
                set end of out to <marker>
            else
)";
constexpr std::string_view tabsOfWindow =
    R"(                set end of out to my joinList(URL of every tab of w, ASCII character 9)
)";
constexpr std::string_view identifierAndTabs =
    R"(                set end of out to ((id of w) as text) & (ASCII character 9) & my joinList(URL of every tab of w, ASCII character 9)
)";
constexpr std::string_view endOfWindows = R"(            end if
        on error
            set end of out to ""
        end try
    end repeat
end tell
return my joinList(out, linefeed))";

constexpr std::string_view newWindow = R"(tell application <application>
    set targetWindow to make new window
    set URL of active tab of targetWindow to <first>
    return (id of targetWindow) as text
end tell)";

constexpr std::string_view openTabs = R"(tell application <application>
    repeat with w in windows
        if ((id of w) as text) is <window> then
            if mode of w is "incognito" then error "the window is private"
?            set URL of active tab of w to <first>
*            make new tab at end of tabs of w with properties {URL:<next>}
            return
        end if
    end repeat
end tell
error "the window is gone")";

constexpr std::string_view listSafariTabs = R"(tell application <application>
    set allowedIDs to {<##allowed>}
    set out to {}
    repeat with w in windows
        if (id of w) is in allowedIDs then
            try
                set end of out to ((id of w) as text) & (ASCII character 9) & my joinList(URL of every tab of w, ASCII character 9)
            end try
        end if
    end repeat
end tell
return my joinList(out, linefeed))";

constexpr std::string_view newSafariWindow = R"(tell application <application>
    make new document with properties {URL:<first>}
    return id of front window
end tell)";

constexpr std::string_view openSafariTabs = R"(tell application <application>
    set targetWindow to first window whose id is <#window>
?    set URL of current tab of targetWindow to <first>
*    make new tab at end of tabs of targetWindow with properties {URL:<next>}
end tell)";

struct Template {
    Script::Kind kind;
    std::array<std::string_view, 4> parts;
};

constexpr std::array<Template, 9> templates{{
    {Script::Kind::listFolders, {joinList, listFolders}},
    {Script::Kind::openFolder, {openFolder}},
    {Script::Kind::listTabs, {joinList, eachWindow, tabsOfWindow, endOfWindows}},
    {Script::Kind::identifyTabs, {joinList, eachWindow, identifierAndTabs, endOfWindows}},
    {Script::Kind::newWindow, {newWindow}},
    {Script::Kind::openTabs, {openTabs}},
    {Script::Kind::listSafariTabs, {joinList, listSafariTabs}},
    {Script::Kind::newSafariWindow, {newSafariWindow}},
    {Script::Kind::openSafariTabs, {openSafariTabs}},
}};

/// What is left of a text, and what was found in the part before.
struct ScriptReading {
    std::string_view rest;
    Script script;
};

/// The language's escapes; any other is a syntax error.
std::optional<char> escaped(char c) {
    switch (c) {
        case '"':
        case '\\':
            return c;
        case 'n':
            return '\n';
        case 'r':
            return '\r';
        case 't':
            return '\t';
        default:
            return std::nullopt;
    }
}

/// A literal may run over several lines; nothing in it is a comment or a continuation.
bool takeLiteral(ScriptReading& reading, const std::string& field) {
    const std::string_view text = reading.rest;
    if (!text.starts_with('"')) return false;
    std::string value;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '"') {
            reading.rest = text.substr(i + 1);
            reading.script.fields[field].push_back(std::move(value));
            return true;
        }
        if (text[i] != '\\') {
            value += text[i];
            continue;
        }
        const auto meant = ++i < text.size() ? escaped(text[i]) : std::nullopt;
        if (!meant) return false;
        value += *meant;
    }
    return false;
}

bool takeNumber(ScriptReading& reading, const std::string& field) {
    const std::size_t length = std::min(reading.rest.find_first_not_of("0123456789"), reading.rest.size());
    if (length == 0) return false;
    reading.script.fields[field].emplace_back(reading.rest.substr(0, length));
    reading.rest.remove_prefix(length);
    return true;
}

bool takeNumbers(ScriptReading& reading, const std::string& field) {
    while (takeNumber(reading, field)) {
        if (!reading.rest.starts_with(", ")) return true;
        reading.rest.remove_prefix(2);
    }
    return false;
}

/// What a place of a template, its name and marks, stands for.
bool takePlace(ScriptReading& reading, std::string_view place) {
    if (place.starts_with("##")) return takeNumbers(reading, std::string(place.substr(2)));
    if (place.starts_with('#')) return takeNumber(reading, std::string(place.substr(1)));
    return takeLiteral(reading, std::string(place));
}

/// The next line of the text; false leaves `reading` as it was.
bool takeLine(ScriptReading& reading, std::string_view pattern) {
    ScriptReading trial = reading;
    while (!pattern.empty()) {
        if (pattern.front() != '<') {
            if (!trial.rest.starts_with(pattern.front())) return false;
            trial.rest.remove_prefix(1);
            pattern.remove_prefix(1);
            continue;
        }
        const std::size_t end = pattern.find('>');
        if (!takePlace(trial, pattern.substr(1, end - 1))) return false;
        pattern.remove_prefix(end + 1);
    }
    if (!trial.rest.empty() && !trial.rest.starts_with('\n')) return false;
    if (!trial.rest.empty()) trial.rest.remove_prefix(1);
    reading = std::move(trial);
    return true;
}

bool takeLines(ScriptReading& reading, std::string_view patterns) {
    while (!patterns.empty()) {
        const std::size_t end = std::min(patterns.find('\n'), patterns.size());
        std::string_view pattern = patterns.substr(0, end);
        patterns.remove_prefix(std::min(end + 1, patterns.size()));
        const bool repeated = pattern.starts_with('*'), optional = pattern.starts_with('?');
        if (repeated || optional) pattern.remove_prefix(1);
        const bool found = takeLine(reading, pattern);
        while (found && repeated && takeLine(reading, pattern)) {
        }
        if (!found && !repeated && !optional) return false;
    }
    return true;
}

}  // namespace

std::string Script::value(std::string_view field) const {
    const auto found = fields.find(field);
    return found == fields.end() ? std::string{} : found->second.front();
}

std::vector<std::string> Script::values(std::string_view field) const {
    const auto found = fields.find(field);
    return found == fields.end() ? std::vector<std::string>{} : found->second;
}

std::optional<Script> readScript(std::string_view text) {
    if (text.contains('\0') || !text::isValidUtf8(text)) return std::nullopt;
    for (const Template& known : templates) {
        ScriptReading reading{text, {known.kind, {}}};
        const bool read =
            std::ranges::all_of(known.parts, [&](std::string_view part) { return takeLines(reading, part); });
        if (read && reading.rest.empty()) return std::move(reading.script);
    }
    return std::nullopt;
}

}  // namespace quillo::simulated
