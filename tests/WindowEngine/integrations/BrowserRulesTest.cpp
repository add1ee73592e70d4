// The pure rules of the integrations, with output as it was once seen.
#include <gtest/gtest.h>

#include "WindowEngine/integrations/Adapters.hpp"
#include "WindowEngine/integrations/AppleScript.hpp"
#include "WindowEngine/integrations/BrowserRestorePlan.hpp"
#include "WindowEngine/integrations/BrowserScripts.hpp"
#include "WindowEngine/records/ChromiumURLCodec.hpp"

namespace quillo {
namespace {

using Texts = std::vector<std::string>;

TEST(AppleScript, SplitsItsOutputIntoRowsOfFields) {
    const struct {
        std::string output;
        AppleScript::Rows rows;
    } cases[] = {{"", {}},
                 {"\n", {}},
                 {"a\tb\n\nc", {{"a", "b"}, {}, {"c"}}},
                 {"\t\tx\n", {{"x"}}},
                 {"a\n\n", {{"a"}, {}}},
                 {"a\r\n", {{"a\r"}}},
                 {"\xff\n", {}}};
    for (const auto& one : cases) EXPECT_EQ(AppleScript::rows(one.output), one.rows) << one.output;
}

TEST(ChromiumURLCodec, KeepsWebAddressesOnly) {
    const struct {
        Texts fields, urls;
    } cases[] = {
        {{"chrome://newtab/"}, {}},
        {{"about:blank", "chrome://settings/", "file:///etc", "nonsense", ""}, {}},
        {{"https://a.org/", "HTTP://b.org"}, {"https://a.org/", "HTTP://b.org"}},
        {{"https://a.orgchrome://newtab/http://b.orgchrome://newtab/"}, {"https://a.org", "http://b.org"}}};
    for (const auto& one : cases) {
        Texts urls;
        for (const Url& url : ChromiumURLCodec::decode(one.fields)) urls.push_back(url.string());
        EXPECT_EQ(urls, one.urls);
    }
}

/// Sites by their letters.
std::vector<ContextWindow> windows(const Texts& letters) {
    std::vector<ContextWindow> result(letters.size());
    for (std::size_t i = 0; i < letters.size(); ++i) {
        for (const char letter : letters[i])
            result[i].urls.push_back(Url::parse(std::string("https://") + letter + ".org").value());
    }
    return result;
}

/// "0:a" for a step into the first window, "+a" for one into a new one.
std::string stepsOf(const Texts& saved, const Texts& live, bool reuse) {
    std::string text;
    for (const auto& step : BrowserRestorePlan::make(windows(saved), windows(live), reuse)) {
        text += (text.empty() ? "" : " ") + (step.index ? std::to_string(*step.index) + ":" : "+");
        for (const Url& url : step.urls) text += url.string().at(8);
    }
    return text;
}

TEST(BrowserRestorePlan, ReusesBeforeItMakesNew) {
    const struct {
        Texts saved, live;
        std::string steps;
        bool reuse = true;
    } cases[] = {{{"ab"}, {}, "+ab"},
                 {{"ab", ""}, {"ba"}, ""},
                 {{"abc"}, {"x", "cx"}, "1:ab"},
                 {{"a", "abc"}, {"abc", "a"}, ""},
                 {{"ab", "ac"}, {"a"}, "0:b +ac"},
                 {{"ab", "cd", "ef"}, {"c", "", "x"}, "1:ab 0:d +ef"},
                 {{"a"}, {"x"}, "+a"},
                 {{"ab"}, {"ab", ""}, "+ab", false}};
    for (const auto& one : cases)
        EXPECT_EQ(stepsOf(one.saved, one.live, one.reuse), one.steps) << testing::PrintToString(one.saved);
}

TEST(BrowserScripts, GetNeitherTooManyAddressesNorTooLongOnes) {
    const struct {
        std::vector<std::size_t> bytes, portions;
    } cases[] = {{{}, {}},
                 {std::vector<std::size_t>(81, 99), {40, 40, 1}},
                 {std::vector<std::size_t>(6, 32 * 1024), {2, 2, 2}},
                 {{64 * 1024 - 20, 21, 30}, {1, 2}},
                 {{20, 65 * 1024, 20, 20}, {1, 1, 2}}};
    for (const auto& one : cases) {
        std::vector<Url> urls;
        for (const std::size_t bytes : one.bytes)
            urls.push_back(Url::parse("https://a.org/" + std::string(bytes - 14, 'a')).value());
        std::vector<std::size_t> portions;
        for (const auto portion : BrowserScripts::portions(urls)) portions.push_back(portion.size());
        EXPECT_EQ(portions, one.portions);
    }
}

TEST(Adapters, AreFoundByApplicationWhenEnabled) {
    EXPECT_EQ(Adapters::adapter("com.google.Chrome", {"finder"}), nullptr);
    EXPECT_EQ(Adapters::adapter("com.google.Chrome", {"finder", "chromium"}), Adapters::named("chromium"));
    EXPECT_EQ(Adapters::adapter("com.apple.Safari", {"safari"})->id(), "safari");
    EXPECT_EQ(Adapters::named("other"), nullptr);
}

}  // namespace
}  // namespace quillo
