#include <gtest/gtest.h>

#include "WindowEngine/CaptureFilter.hpp"

namespace quillo {
namespace {

using Keys = std::set<std::string>;

ContextWindow contextWindow(std::optional<std::int64_t> source, std::vector<const char*> addresses) {
    ContextWindow window{.sourceWindowIndex = source, .urls = {}, .sourceWindowID = {}};
    for (const char* address : addresses) window.urls.push_back(*Url::parse(address));
    return window;
}

TEST(CaptureFilter, RemovesDomainsWithTheirSubdomains) {
    struct Case {
        Keys domains;
        const char* address;
        bool kept;
    };
    const Case cases[] = {
        {{" Example.ORG\n"}, "https://www.example.org/x", false},
        {{" Example.ORG\n"}, "https://EXAMPLE.org", false},
        {{"example.org"}, "https://example.com/example.org", true},
        {{"example.org"}, "https://badexample.org", true},
        {{"example.org"}, "https://example.org.evil.net", true},
        {{"example.org"}, "https://user@example.org:8080/?q=1", false},
        {{"example.org"}, "about:blank", true},
        {{".example.org"}, "https://www.example.org", true},
        {{"", " \t"}, "https://example.org", true},
        {{}, "https://example.org", true},
        {{"a.net", "b.net"}, "https://b.net", false},
        {{"пример.рф"}, "https://Пример.рф/", false},
    };
    for (const Case& c : cases) {
        const AppContext context{"chromium", {contextWindow(0, {c.address})}};
        const auto expected = c.kept ? std::optional(context) : std::nullopt;
        EXPECT_EQ(CaptureFilter::removingDomains(c.domains, context), expected) << c.address;
    }
}

TEST(CaptureFilter, KeepsWhatIsOnNoExcludedDomainInItsOrder) {
    const AppContext context{"safari",
                             {contextWindow(0, {"https://a.net/1", "https://b.net", "https://a.net/2"}),
                              contextWindow(1, {"https://b.net"}), contextWindow({}, {"https://c.net"})}};
    const AppContext expected{
        "safari",
        {contextWindow(0, {"https://a.net/1", "https://a.net/2"}), contextWindow({}, {"https://c.net"})}};
    EXPECT_EQ(CaptureFilter::removingDomains({"b.net"}, context), expected);
    const AppContext folders{"finder", {contextWindow(0, {"file://b.net/share/"})}};
    EXPECT_EQ(CaptureFilter::removingDomains({"b.net"}, folders), folders);
    EXPECT_EQ(CaptureFilter::removingDomains({"b.net"}, std::nullopt), std::nullopt);
}

TEST(CaptureFilter, WritesKeys) {
    EXPECT_EQ(CaptureFilter::windowKey("com.apple.TextEdit", 2), "com.apple.TextEdit#window#2");
    EXPECT_EQ(CaptureFilter::contextURLKey("com.google.Chrome", 0, 3), "com.google.Chrome#context#0#3");
}

// Windows with the indices 0, 1, 2 and three context windows: of window 1, of window 2 and of none.
WorkspaceSnapshot desktop() {
    ApplicationSnapshot browser{"org.browser", "Browser", {}, {}, {}};
    browser.windows.resize(3);
    for (std::size_t i = 0; i < 3; ++i) browser.windows[i].index = static_cast<std::int64_t>(i);
    browser.context =
        AppContext{"chromium",
                   {contextWindow(1, {"https://one"}), contextWindow(2, {"https://x", "https://y"}),
                    contextWindow({}, {"https://loose", "https://looser"})}};
    ApplicationSnapshot editor{"org.editor", "Editor", {}, std::vector<WindowSnapshot>(1), {}};
    WorkspaceSnapshot snapshot;
    snapshot.notes = {"a note"};
    snapshot.applications = {browser, editor};
    return snapshot;
}

using Context = std::vector<ContextWindow>;

TEST(CaptureFilter, RemovesWhatWasUnticked) {
    WorkspaceSnapshot expected = desktop();
    EXPECT_EQ(CaptureFilter::apply(desktop(), {}, {}, {}), expected);

    expected.applications.erase(expected.applications.begin());
    EXPECT_EQ(CaptureFilter::apply(desktop(), {"org.browser"}, {}, {}), expected);

    expected = desktop();
    expected.applications[1].windows.clear();
    EXPECT_EQ(CaptureFilter::apply(desktop(), {}, {"org.editor#window#0", "org.browser#window#9"}, {}),
              expected)
        << "an application stays without its windows";
}

TEST(CaptureFilter, AWindowTakesItsContextWithIt) {
    WorkspaceSnapshot expected = desktop();
    auto& browser = expected.applications[0];
    browser.windows.erase(browser.windows.begin() + 1);
    browser.context->windows.erase(browser.context->windows.begin());
    EXPECT_EQ(CaptureFilter::apply(desktop(), {}, {"org.browser#window#1"}, {}), expected);
    // The loose context window has moved up to place 1 by then.
    browser.context->windows[1].urls.erase(browser.context->windows[1].urls.begin());
    EXPECT_EQ(CaptureFilter::apply(desktop(), {}, {"org.browser#window#1"}, {"org.browser#context#1#0"}),
              expected);
}

TEST(CaptureFilter, RemovesSingleLocations) {
    const auto contextAfter = [](const Keys& keys) {
        return CaptureFilter::apply(desktop(), {}, {}, keys).applications[0].context;
    };
    const Context all = desktop().applications[0].context->windows;
    // Places are those before anything was removed; source index 2 and place 2 share a key.
    EXPECT_EQ(contextAfter({"org.browser#context#2#0"})->windows,
              (Context{all[0], contextWindow(2, {"https://y"}), contextWindow({}, {"https://looser"})}));
    EXPECT_EQ(contextAfter({"org.browser#context#1#0", "org.browser#context#0#0"})->windows,
              (Context{all[1], all[2]}));
    EXPECT_EQ(contextAfter({"org.browser#context#1#0", "org.browser#context#2#0", "org.browser#context#2#1"}),
              std::nullopt);
}

}  // namespace
}  // namespace quillo
