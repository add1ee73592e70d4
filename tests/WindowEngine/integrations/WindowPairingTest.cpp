// Which window on the screen is which in a browser's file. Private windows stand on the screen only.
#include <gtest/gtest.h>

#include "WindowEngine/integrations/WindowPairing.hpp"

namespace quillo {
namespace {

using WindowPairing::Evidence;

/// Title, place and width; the height is always the same. No width: maximized.
struct At {
    std::string title;
    double x = 0, width = 800;
    std::optional<std::int64_t> desktop = std::nullopt;
};

ShownBrowserWindow shown(const At& at) {
    const Rect client{at.x, 20, at.width, 600};
    return {.title = at.title.empty() ? "" : at.title + " - Browser",
            .frame = {at.x - 1, 0, at.width + 2, 621},
            .client = client,
            .isPlain = at.width > 0,
            .desktop = at.desktop};
}
BrowserWindow saved(const At& at) {
    return {.tabs = {{"https://a.org", at.title}},
            .frame = Rect{at.x, 20, at.width, 600},
            .isPlain = at.width > 0,
            .desktop = at.desktop};
}

TEST(WindowPairing, IsSureOnlyWhereNothingElseIsPossible) {
    const struct {
        std::vector<At> shown, saved;
        std::string pairs;  // the place on the screen of each saved window, "?" where it is not sure
        Evidence evidence = Evidence::sizeAndTitle;
    } cases[] = {
        {{}, {}, ""},
        {{{"A"}, {"B"}}, {{""}, {""}}, "01"},  // as many as there are
        {{{"A"}, {"P"}}, {{""}}, "?"},         // one of them is private, of one size
        {{{"A"}, {"P"}}, {{"A"}}, "0"},
        {{{"A", 10}, {"P", 40}}, {{"", 40}}, "1"},              // the place tells
        {{{"A", 0, 800}, {"P", 0, 700}}, {{"", 0, 800}}, "0"},  // the size tells
        {{{"A"}, {"P"}, {"B"}}, {{""}, {""}}, "??"},
        {{{"A"}, {"P"}, {"B"}}, {{"A"}, {"B"}}, "02"},
        {{{"A"}, {"P", 0, 700}, {"B"}}, {{""}, {""}}, "02"},
        {{{"A"}, {"A"}, {"B"}}, {{"A"}, {"B"}}, "?2"},  // a title that two have
        {{{"P"}, {"A"}, {"Q"}}, {{"A"}, {"A"}}, "??"},  // one that speaks for two
        {{{"A", 0, 800, 0}, {"P", 0, 800, 1}}, {{"", 0, 800, 1}}, "1"},
        {{{"A", 0, 0}, {"P"}}, {{"", 0, 0}}, "0"},  // maximized
        {{{"A"}}, {{"A"}, {"B"}}, "!??"},           // the file tells of one that is gone
        {{{"A", 0, 700}}, {{"A", 0, 800}}, "!?"},
        {{{"B"}, {"A"}}, {{"A"}, {"B"}}, "01"},       // the order in which they were made holds
        {{{"A"}}, {{""}}, "?", Evidence::titleOnly},  // it may be private, the file's own gone
        {{{"A", 9, 700}, {"P"}}, {{"A"}}, "0", Evidence::titleOnly},
    };
    for (const auto& one : cases) {
        std::vector<ShownBrowserWindow> onScreen;
        std::vector<BrowserWindow> inFile;
        for (const At& at : one.shown) onScreen.push_back(shown(at));
        for (const At& at : one.saved) inFile.push_back(saved(at));
        const auto pairs = WindowPairing::match(onScreen, inFile, one.evidence);
        std::string text = pairs.consistent ? "" : "!";
        for (const auto& pair : pairs.shown) text += pair ? std::to_string(*pair) : "?";
        EXPECT_EQ(text, one.pairs) << &one - cases;
    }
}

}  // namespace
}  // namespace quillo
