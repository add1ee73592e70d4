#include <gtest/gtest.h>

#include "WindowEngine/capture/CaptureFilter.hpp"

namespace quillo {
namespace {

using Keys = std::set<std::string>;

ContextWindow contextWindow(std::optional<std::int64_t> source, const std::vector<const char*>& addresses) {
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
        {{" Example.ORG\n"}, "https://www.EXAMPLE.org/x", false},
        {{"example.org"}, "https://example.com/example.org", true},
        {{"example.org"}, "https://badexample.org", true},
        {{"example.org"}, "https://example.org.evil.net", true},
        {{"example.org"}, "https://user@example.org:8080/?q=1", false},
        {{"example.org"}, "about:blank", true},
        {{".example.org"}, "https://www.example.org", false},
        {{"*.example.org"}, "https://example.org", false},
        {{"https://Example.org:8080/path?q"}, "http://www.example.org", false},
        {{"example.org/path"}, "https://example.org/other", false},
        {{"*", ".", "*.", "https://", "two words", "mailto:x"}, "https://example.org", true},
        {{"example.org."}, "https://example.org", false},
        {{"example.org"}, "https://www.example.org./", false},
        {{"2001:db8::1"}, "http://[2001:DB8::1]:80/", false},
        {{"[2001:db8::1]"}, "http://[2001:db8::1]/", false},
        {{"2001:db8::1"}, "https://2001", true},
        {{"müller.example"}, "https://m%C3%BCller.example/", false},
        {{"MÜLLER.example"}, "https://mu\u0308ller.example/", false},
        {{"müller.example"}, "https://www.xn--mller-kva.EXAMPLE/", false},
        {{"XN--mller-kva.example"}, "https://müller.example", false},
        {{"straße.example"}, "https://strasse.example", true},
        {{"例え。example"}, "https://例え.example", false},
        {{"r3---sn.example"}, "https://r3---sn.example", false},
        {{"a_b.example"}, "https://-x.a_b.example", false},
        {{"xn--a.example"}, "https://XN--A.example", false},
        {{"example.org"}, "https://%zz.example.org", false},
        {{"", " \t"}, "https://example.org", true},
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
    AppContext expected = context;
    expected.windows.erase(expected.windows.begin() + 1);
    expected.windows[0] = contextWindow(0, {"https://a.net/1", "https://a.net/2"});
    EXPECT_EQ(CaptureFilter::removingDomains({"b.net"}, context), expected);
    const AppContext folders{"finder", {contextWindow(0, {"file://b.net/share/"})}};
    EXPECT_EQ(CaptureFilter::removingDomains({"b.net"}, folders), folders);
}

TEST(CaptureFilter, RemovesDocumentsOnExcludedDomainsFromWindowsAndTabs) {
    const auto page = Url::parse("https://www.secret.example/x"), plain = Url::parse("http://open.example"),
               share = Url::parse("smb://secret.example/x"), file = Url::parse("file://secret.example/x");
    std::vector<WindowSnapshot> windows(4);
    windows[0].title = "kept";
    windows[0].documentURL = page;
    windows[0].tabs = {{{"a", page}, {"b", plain}, {"c", {}}}};
    windows[1].documentURL = plain;
    windows[2].documentURL = share;
    windows[3].documentURL = file;
    EXPECT_EQ(CaptureFilter::removingWebDocuments({}, windows), windows);
    auto expected = windows;
    expected[0].documentURL.reset();
    expected[0].tabs = {{{"a", {}}, {"b", plain}, {"c", {}}}};
    EXPECT_EQ(CaptureFilter::removingWebDocuments({" Secret.example"}, windows), expected);
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

TEST(CaptureFilter, RemovesWhatWasUnticked) {
    WorkspaceSnapshot expected = desktop();
    EXPECT_EQ(CaptureFilter::apply(desktop(), {}, {}, {}), expected);
    expected.applications[1].windows.clear();
    EXPECT_EQ(CaptureFilter::apply(desktop(), {}, {"org.editor#window#0", "org.browser#window#9"}, {}),
              expected)
        << "an application stays without its windows";
    expected.applications = {desktop().applications[1]};
    EXPECT_EQ(CaptureFilter::apply(desktop(), {"org.browser"}, {}, {}), expected);
}

TEST(CaptureFilter, RemovesWindowsWithTheirContextAndSingleLocations) {
    const auto one = contextWindow(1, {"https://one"}), two = contextWindow(2, {"https://x", "https://y"}),
               loose = contextWindow({}, {"https://loose", "https://looser"}),
               looser = contextWindow({}, {"https://looser"});
    struct Case {
        const char* what;
        Keys windows, locations;
        std::vector<ContextWindow> left;
    };
    const Case cases[] = {
        {"a window takes its context with it", {"org.browser#window#1"}, {}, {two, loose}},
        {"the loose one has moved up", {"org.browser#window#1"}, {"org.browser#context#1#0"}, {two, looser}},
        {"source index 2 and place 2 share a key",
         {},
         {"org.browser#context#2#0"},
         {one, contextWindow(2, {"https://y"}), looser}},
        {"places are those before anything was removed",
         {},
         {"org.browser#context#1#0", "org.browser#context#0#0"},
         {two, loose}},
        {"nothing left",
         {},
         {"org.browser#context#1#0", "org.browser#context#2#0", "org.browser#context#2#1"},
         {}},
    };
    for (const Case& c : cases) {
        const auto browser = CaptureFilter::apply(desktop(), {}, c.windows, c.locations).applications[0];
        EXPECT_EQ(browser.windows.size(), 3 - c.windows.size()) << c.what;
        EXPECT_EQ(browser.context ? browser.context->windows : std::vector<ContextWindow>(), c.left)
            << c.what;
        EXPECT_EQ(browser.context.has_value(), !c.left.empty()) << c.what;
    }
}

}  // namespace
}  // namespace quillo
