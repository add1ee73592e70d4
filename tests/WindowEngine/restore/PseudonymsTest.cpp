#include <gtest/gtest.h>

#include "WindowEngine/restore/Pseudonyms.hpp"
#include "WindowEngine/restore/WindowMatcher.hpp"

namespace quillo {
namespace {

TEST(Pseudonyms, TitlesStayEqualAndHoldOneAnotherAsTheyDid) {
    const std::vector<std::string> titles{"Letter to Ada - Editor",
                                          "letter to  ada - Editor",
                                          "• Letter to Ada - Editor — Edited",
                                          "Letter",
                                          "Let",
                                          "ter to",
                                          "Document",
                                          "doc",
                                          "Äußerst geheim",
                                          "geheim",
                                          "- | -",
                                          "a",
                                          "日本語の手紙",
                                          "手紙",
                                          ""};
    const auto relation = [](const std::string& a, const std::string& b) {
        return a == b ? 2 : a.find(b) != std::string::npos ? 1 : 0;
    };
    for (std::uint64_t seed = 1; seed < 20; ++seed) {
        Pseudonyms names(seed);
        names.learnTitles(titles);
        for (const std::string& one : titles) {
            const std::string made = names.title(one);
            EXPECT_EQ(WindowMatcher::normalize(made), made);
            if (one.size() > 3) EXPECT_EQ(made.find(one), std::string::npos);
            for (const std::string& other : titles)
                EXPECT_EQ(relation(made, names.title(other)),
                          relation(WindowMatcher::normalize(one), WindowMatcher::normalize(other)))
                    << one << " | " << other << " | " << made << " | " << names.title(other);
        }
    }
}

TEST(Pseudonyms, AddressesKeepWhatTellsWhatTheyAre) {
    Pseudonyms names(1);
    const auto made = [&](const char* url) { return names.url(*Url::parse(url)).string(); };
    const std::string home = made("file:///home/ada"), letter = made("file:///home/ada/secret.letter.txt");
    EXPECT_EQ(letter.substr(0, home.size() + 1), home + "/");
    EXPECT_TRUE(letter.ends_with(".txt"));
    EXPECT_EQ(made("file:///home//ada/./secret.letter.txt"), letter);
    EXPECT_TRUE(made("file:///home/ada/").ends_with("/"));
    for (const char* name : {"file:///home/ada.b/offer.txt/to.BMW", "file:///offer.txt/"})
        EXPECT_EQ(made(name).find('.'), std::string::npos) << name;
    const std::string page = made("https://bank.example/account?id=7");
    EXPECT_EQ(page, made("https://bank.example/account?id=7"));
    EXPECT_EQ(page.substr(0, page.find('/', 8)), made("https://bank.example/").substr(0, page.find('/', 8)));
    EXPECT_NE(page, made("https://bank.example/account?id=8"));
    EXPECT_EQ(made("about:blank"), "about:blank");
    const std::string all = home + letter + page;
    for (const char* secret : {"home", "/ada", "secret", "letter", "bank", "account", "id="})
        EXPECT_EQ(all.find(secret), std::string::npos) << secret;
    EXPECT_EQ(made("corp-wiki://page/1").substr(0, 8), "other://");
}

}  // namespace
}  // namespace quillo
