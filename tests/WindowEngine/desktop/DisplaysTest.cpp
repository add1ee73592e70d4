#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "WindowEngine/desktop/Displays.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo {
namespace {

using samples::display;

struct FixedScreens : Screens {
    std::vector<Screen> fixed;
    std::vector<Screen> screens() override { return fixed; }
};

TEST(Displays, DescribesScreensPrimaryFirstAndNamesThoseWithoutIdentifier) {
    constexpr Rect a{0, 0, 1512, 982}, below{0, 33, 1512, 949}, b{-200, -1080, 1920.9, 1080};
    FixedScreens screens;
    screens.fixed = {{"A", a, below, 2}, {{}, b, b, 1.5}, {{}, b, b, 2}};
    const std::vector<DisplaySnapshot> expected{
        {"A", a, below, 2, true}, {"1920x1080@1.5", b, b, 1.5, false}, {"1920x1080@2.0", b, b, 2, false}};
    EXPECT_EQ(Displays::current(screens), expected);
    for (const double width : {std::nan(""), std::numeric_limits<double>::infinity(), 1e300})
        EXPECT_THROW(Displays::identifier({{}, {0, 0, width, 982}, {}, 2}), std::logic_error);
}

TEST(Displays, AWindowBelongsToTheDisplayOfItsCentreElseOfItsLargestPart) {
    // B is lower than A, C starts where A ends below B's foot: a gap lies under B.
    const std::vector displays{display("A", {0, 0, 1000, 1000}, true), display("B", {1000, 0, 500, 400}),
                               display("C", {1500, 0, 1000, 1000})};
    const std::pair<Rect, const char*> cases[] = {
        {{900, 100, 300, 300}, "B"},   // centre on B
        {{-5000, 0, 12002, 20}, "B"},  // centre on B, more of it on A
        {{500, 100, 1000, 100}, "B"},  // centre on the border of A and B
        {{900, 500, 600, 200}, "A"},   // centre in the gap, only A touched
        {{900, 500, 700, 200}, "A"},   // as much of it on A as on C: the earlier
        {{900, 500, 701, 200}, "C"},   // more on C
        {{1000, 400, 500, 600}, ""},   // fills the gap and only touches the three
        {{5000, 5000, 10, 10}, ""},
    };
    for (const auto& [rect, id] : cases) {
        const DisplaySnapshot* found = Displays::display(rect, displays);
        EXPECT_EQ(found ? found->id : "", id) << rect.x << ' ' << rect.y << ' ' << rect.width;
    }
    EXPECT_EQ(Displays::display({0, 0, 10, 10}, {}), nullptr);
}

TEST(Displays, FractionsOfADisplayKeepTheOverhangAndComeBack) {
    EXPECT_EQ(Displays::normalize({-100, 600, 400, 250}, {100, 100, 400, 500}), (Rect{-0.5, 1, 1, 0.5}));
    EXPECT_EQ(Displays::normalize({1, 2, 3, 4}, {5, 5, 0, 100}), Rect{});
    EXPECT_EQ(Displays::normalize({1, 2, 3, 4}, {5, 5, 100, -1}), Rect{});
    EXPECT_EQ(Displays::denormalize({0.5, 0.5, 1, 2}, {5, 5, 0, 100}), (Rect{5, 55, 0, 200}));
    for (unsigned seed = 0; seed < 500; ++seed) {
        samples::Random random(seed);
        const Rect rect = random.rect(), frame = random.rect();
        const Rect back = Displays::denormalize(Displays::normalize(rect, frame), frame);
        const double error = std::abs(back.x - rect.x) + std::abs(back.y - rect.y) +
                             std::abs(back.width - rect.width) + std::abs(back.height - rect.height);
        EXPECT_LT(error, 1e-8) << "seed " << seed;
    }
}

}  // namespace
}  // namespace quillo
