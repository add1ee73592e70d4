// The scripts to the letter, and that no text in one can become part of it.
#include <fmt/format.h>
#include <gtest/gtest.h>

#include "WindowEngine/integrations/AppleScriptText.hpp"

namespace quillo {
namespace {

using namespace ScriptRequest;
using Texts = std::vector<std::string>;

const std::string finder = "com.apple.finder", chrome = "com.google.Chrome", safari = "com.apple.Safari";

std::vector<Url> addresses(const Texts& texts) {
    std::vector<Url> urls;
    for (const std::string& text : texts) urls.push_back(Url::parse(text).value());
    return urls;
}

const std::string joinList = R"(on joinList(lst, delim)
    set {tid, AppleScript's text item delimiters} to {AppleScript's text item delimiters, delim}
    set out to lst as text
    set AppleScript's text item delimiters to tid
    return out
end joinList
)";

std::string tabsOf(const std::string& application, const std::string& report) {
    return joinList + "tell application \"" + application + R"("
    set out to {}
    set windowIDs to id of every window
    repeat with i from 1 to (count of windowIDs)
        set windowID to item i of windowIDs
        try
            if mode of window id windowID is "incognito" then
                set end of out to "__QUILLO_PRIVATE_WINDOW__"
            else
                set end of out to )" +
           report + R"(
            end if
        on error
            set end of out to ""
        end try
    end repeat
end tell
return my joinList(out, linefeed))";
}

TEST(AppleScriptText, IsThisToTheLetter) {
    const auto a = addresses({"https://a.org"}), ab = addresses({"https://a.org", "https://b.org/\"\\"});
    const std::string tabs = "my joinList(URL of every tab of window id windowID, ASCII character 9)",
                      identified = "(windowID as text) & (ASCII character 9) & " + tabs;
    const std::pair<Script, std::string> cases[] = {
        {{finder, ListFolders{}}, joinList + R"(tell application "Finder"
    set out to {}
    repeat with i from 1 to (count of Finder windows)
        try
            set end of out to POSIX path of (target of Finder window i as alias)
        on error
            set end of out to ""
        end try
    end repeat
end tell
return my joinList(out, linefeed))"},
        {{finder, OpenFolder{R"(/a "b" \)"}}, R"(tell application "Finder"
    set target of (make new Finder window) to (POSIX file "/a \"b\" \\" as alias)
end tell)"},
        {{chrome, ListTabs{false}}, tabsOf("Google Chrome", tabs)},
        {{"com.brave.Browser", ListTabs{true}}, tabsOf("Brave Browser", identified)},
        {{"com.microsoft.edgemac", ListTabs{false}}, tabsOf("Microsoft Edge", tabs)},
        {{"company.thebrowser.Browser", NewWindow{ab[1]}}, R"(tell application "Arc"
    set windowID to id of (make new window)
    set URL of active tab of window id windowID to "https://b.org/\"\\"
    return windowID as text
end tell)"},
        {{chrome, OpenTabs{"7", ab, true}}, R"(tell application "Google Chrome"
    set windowIDs to id of every window
    repeat with i from 1 to (count of windowIDs)
        set windowID to item i of windowIDs
        if (windowID as text) is "7" then
            if mode of window id windowID is "incognito" then error "the window is private"
            set URL of active tab of window id windowID to "https://a.org"
            make new tab at end of tabs of window id windowID with properties {URL:"https://b.org/\"\\"}
            return
        end if
    end repeat
end tell
error "the window is gone")"},
        {{safari, ListSafariTabs{{1, 20}}}, joinList + R"(tell application "Safari"
    set allowedIDs to {1, 20}
    set out to {}
    repeat with w in windows
        if (id of w) is in allowedIDs then
            try
                set end of out to ((id of w) as text) & (ASCII character 9) & my joinList(URL of every tab of w, ASCII character 9)
            end try
        end if
    end repeat
end tell
return my joinList(out, linefeed))"},
        {{safari, NewSafariWindow{a[0]}}, R"(tell application "Safari"
    make new document with properties {URL:"https://a.org"}
    return id of front window
end tell)"},
        {{safari, OpenSafariTabs{9, a, true}}, R"(tell application "Safari"
    set targetWindow to first window whose id is 9
    set URL of current tab of targetWindow to "https://a.org"
end tell)"},
        {{safari, OpenSafariTabs{9, a, false}}, R"(tell application "Safari"
    set targetWindow to first window whose id is 9
    make new tab at end of tabs of targetWindow with properties {URL:"https://a.org"}
end tell)"},
    };
    for (const auto& [script, text] : cases) EXPECT_EQ(AppleScript::text(script), text);
}

/// A script as an interpreter reads it: its words, and what its literals say.
struct Read {
    std::string words;
    Texts literals;
};

Read read(const std::string& text) {
    Read result;
    bool inside = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '"') {
            inside = !inside;
            if (inside) result.literals.emplace_back();
        } else if (inside) {
            if (text[i] == '\\' && text.at(++i) != '"' && text[i] != '\\') result.words += "<wrong escape>";
            result.literals.back() += text[i];
        } else {
            result.words += text[i];
        }
    }
    return result;
}

TEST(AppleScriptText, NoTextEndsItsLiteral) {
    const Texts pieces{"\" & (do shell script \"beep\") & \"",
                       "\"}\nend tell\nbeep\n--",
                       "\"",
                       "\\",
                       "\\\"",
                       "\\\\",
                       "\n",
                       "\r",
                       "\t",
                       " ",
                       "¬\n",
                       "'",
                       "é",
                       "日本",
                       "𝄞",
                       "--",
                       "(*",
                       "*)",
                       "{",
                       "}",
                       "&",
                       "\\n",
                       "%41",
                       "«",
                       "|",
                       "$(x)",
                       "`beep`",
                       "#1",
                       "?",
                       "\x7f"};
    const auto scripts = [](const std::string& text) {
        const Url address = Url::parse("https://h.org/" + text).value_or(addresses({"https://h.org/"})[0]);
        const std::vector<Url> two{address, address};
        return std::vector<Script>{{finder, OpenFolder{text}},
                                   {chrome, NewWindow{address}},
                                   {chrome, OpenTabs{text, two, true}},
                                   {safari, NewSafariWindow{address}},
                                   {safari, OpenSafariTabs{1, two, true}}};
    };
    const auto plain = scripts("plain");
    for (const std::string& one : pieces) {
        for (const std::string& other : pieces) {
            const auto hostile = scripts(one + other);
            for (std::size_t i = 0; i < plain.size(); ++i) {
                const Read got = read(AppleScript::text(hostile[i])),
                           harmless = read(AppleScript::text(plain[i]));
                EXPECT_EQ(got.words, harmless.words);
                EXPECT_EQ(got.literals.size(), harmless.literals.size());
            }
            EXPECT_EQ(read(AppleScript::text(hostile[0])).literals.back(), one + other);
            const auto address = Url::parse(fmt::format("https://h.org/{}{}", one, other));
            if (address) EXPECT_EQ(read(AppleScript::text(hostile[3])).literals.back(), address->string());
        }
    }
}

}  // namespace
}  // namespace quillo
