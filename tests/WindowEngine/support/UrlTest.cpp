#include <gtest/gtest.h>

#include "WindowEngine/support/Url.hpp"

namespace quillo {
namespace {

TEST(Url, KeepsTheExactStringOfEveryAddressItAccepts) {
    for (const char* text : {"https://example.org/a|b?q=^{x}", "HTTP://Example.ORG/%7e", "about:blank",
                             "file:///tmp/a%20b/", "https://пример.рф/путь",
                             "https://fa.example/\xe2\x80\x8c\xc2\xad", "mailto:a@b.c", "x-app+1.0:anything"})
        EXPECT_EQ(Url::parse(text).value().string(), text);
}

TEST(Url, RefusesWhatIsNoAbsoluteAddress) {
    for (const std::string& text : {std::string("http://a\0b", 10), std::string("")})
        EXPECT_FALSE(Url::parse(text));
    for (const char* text :
         {"example.org/a", "//host/a", ":a", "1http://a", "ht_tp://a", "http://a b", "http://a\n",
          "http://a\x7f", "http://a\xc2\x85", "http://a\xe2\x80\xa8", "http://a\xc2\xa0", "http://\xff"})
        EXPECT_FALSE(Url::parse(text)) << text;
}

TEST(Url, ReadsSchemeAndHost) {
    struct Case {
        const char *text, *scheme;
        std::optional<std::string> host;
    };
    const Case cases[] = {
        {"HTTPS://user:pw@Example.org:8080/a?b#c", "https", "Example.org"},
        {"http://ex%41mple.org", "http", "ex%41mple.org"},
        {"http://a@b@c.org/", "http", "c.org"},
        {"http://[::1]:80/", "http", "::1"},
        {"http://[::1", "http", "::1"},
        {"http://host?query@other", "http", "host"},
        {"http://host#frag/x@y", "http", "host"},
        {"http://:80/", "http", std::nullopt},
        {"file:///tmp", "file", std::nullopt},
        {"mailto:a@b.c", "mailto", std::nullopt},
        {"http:", "http", std::nullopt},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(Url::parse(c.text).value().scheme(), c.scheme) << c.text;
        EXPECT_EQ(Url::parse(c.text).value().host(), c.host) << c.text;
    }
}

TEST(Url, DecodesThePathOfFileAddressesOnly) {
    const std::pair<const char*, std::optional<std::string>> cases[] = {
        {"file:///tmp/a%20b%25/", "/tmp/a b%"},
        {"FILE://LOCALHOST/x", "/x"},
        {"file:/x", "/x"},
        {"file:///", "/"},
        {"file:///a?b#c", "/a"},
        {"file:///a?b", "/a"},
        {"file:///a#b?c", "/a"},
        {"file://server/x", std::nullopt},
        {"file:///a%2", std::nullopt},
        {"file:///a%zz", std::nullopt},
        {"file:///a%00", std::nullopt},
        {"file:relative", std::nullopt},
        {"https://a/x", std::nullopt},
    };
    for (const auto& [text, path] : cases) EXPECT_EQ(Url::parse(text).value().filePath(), path) << text;
}

TEST(Url, FileAddressesRoundTripEveryByteButNul) {
    std::string path = "/";
    for (int byte = 1; byte < 256; ++byte) path += static_cast<char>(byte);
    const Url url = Url::file(path);
    EXPECT_EQ(url.filePath(), path);
    EXPECT_EQ(Url::parse(url.string()), url);
    EXPECT_EQ(Url::file("/tmp/a b", true).string(), "file:///tmp/a%20b/");
    EXPECT_EQ(Url::file("/", true).string(), "file:///");
    EXPECT_THROW(Url::file("tmp"), std::logic_error);
}

TEST(Url, StandardizedFileAddressesHaveOneSpelling) {
    const std::pair<const char*, const char*> cases[] = {
        {"file:///a/./b/../c/", "file:///a/c"},     {"file:///../../a", "file:///a"},
        {"file:////a//b///", "file:///a/b"},        {"file://localhost/%41%2e", "file:///A."},
        {"file:///a/%2e%2e/b", "file:///b"},        {"file:///a/..", "file:///"},
        {"file:///a/../b?c#d", "file:///b?c#d"},    {"file:///bad%zz/../x", "file:///bad%zz/../x"},
        {"https://a/b/../c/", "https://a/b/../c/"},
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(Url::parse(text).value().standardized().string(), expected);
}

}  // namespace
}  // namespace quillo
