#include <gtest/gtest.h>

#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/DisplayMapper.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo {
namespace {

using DisplayMapper::Placement;
using samples::display;
using Displays = std::vector<DisplaySnapshot>;

const Displays laptopAndMonitor{display("laptop", {0, 0, 1000, 800}, true, 2),
                                display("monitor", {1000, 0, 2000, 1000})};

TEST(DisplayMapper, PlacesWindowsOnWhatIsThereNow) {
    const Displays same = laptopAndMonitor, laptop{same[0]};
    const Displays smaller{same[0], display("monitor", {1000, 0, 1000, 500})};
    const Displays moved{same[0], display("monitor", {-2000, 0, 2000, 1000})};
    const Displays renamed{same[0], display("other", {0, -1000, 2000, 1000})};
    const Displays second{display("x", {-500, 0, 500, 500}), display("laptop", {0, 0, 1000, 800}, true)};
    const Rect quarter{0.25, 0.25, 0.5, 0.5}, any{1, 2, 3, 4}, right{1500, 250, 1000, 500};
    struct Case {
        const char* what;
        std::optional<std::string> savedOn;
        Rect frame, normalized;
        Displays current;
        std::optional<Placement> expected;
    };
    const Case cases[] = {
        {"all as before", "monitor", {1100, 50, 400, 300}, {}, same, {{{1100, 50, 400, 300}, false}}},
        {"under the menu bar", "monitor", {1100, 10, 400, 300}, {}, same, {{{1100, 30, 400, 300}, true}}},
        {"off left and below", "laptop", {-50, 700, 400, 300}, {}, same, {{{0, 500, 400, 300}, true}}},
        {"too large", "laptop", {10, 40, 1500, 900}, {}, same, {{{0, 30, 1000, 770}, true}}},
        {"another resolution", "monitor", any, quarter, smaller, {{{1250, 125, 500, 250}, true}}},
        {"moved, same by chance",
         "monitor",
         {-1500, 250, 1000, 500},
         quarter,
         moved,
         {{{-1500, 250, 1000, 500}, true}}},
        {"under another id", "monitor", any, quarter, renamed, {{{500, -750, 1000, 500}, true}}},
        {"another id, no fractions", "monitor", right, {}, renamed, {{{0, -970, 0, 0}, true}}},
        {"lost", "monitor", any, quarter, laptop, {{{250, 200, 500, 400}, true}}},
        {"lost, no fractions", "monitor", right, {}, laptop, {{{250, 200, 500, 400}, true}}},
        {"on no display", {}, {100, 200, 300, 400}, {}, second, {{{100, 200, 300, 400}, true}}},
        {"not saved", "x", {100, 200, 300, 400}, quarter, second, {{{250, 200, 500, 400}, true}}},
        {"no display at all", "laptop", any, quarter, {}, {}},
    };
    for (const Case& c : cases) {
        WindowSnapshot window = samples::window(c.frame);
        window.displayID = c.savedOn;
        window.normalizedFrame = c.normalized;
        EXPECT_EQ(DisplayMapper::place(window, laptopAndMonitor, c.current), c.expected) << c.what;
    }
}

TEST(DisplayMapper, FindsTheDisplayOfAWindowAgain) {
    const DisplaySnapshot& laptop = laptopAndMonitor[0];
    const auto monitor = [](std::string id, double x) { return display(std::move(id), {x, 0, 2000, 1000}); };
    const Displays saved{laptop, monitor("left", -2000), monitor("right", 1000),
                         display("above", {-500, -1000, 1500, 700})};
    // New names, the other order, another resolution on the laptop.
    const Displays swapped{monitor("p", 1500), monitor("q", -2000),
                           display("laptop", {0, 0, 1500, 1200}, true, 2)};
    const Displays noPrimary{swapped[0], swapped[1], display("laptop", {0, 0, 1500, 1200}, false, 2)};
    const Displays wide{monitor("near", 3000), monitor("far", 5000),
                        display("laptop", {0, 0, 3000, 800}, true, 2)};
    const Displays mirrored{display("first", {-1750, 0, 1500, 700}), display("second", {750, 0, 1500, 700}),
                            laptop};
    const Displays sharper{laptop, display("left", {-2000, 0, 2000, 1000}, false, 2)};
    const Displays others{display("a", {0, 0, 500, 500}), display("b", {500, 0, 600, 600}, true)};
    struct Case {
        const char* what;
        std::optional<std::string> id;
        Displays current;
        const char* expected;
    };
    const Case cases[] = {
        {"identical ones by side", "left", swapped, "q"},
        {"identical ones by side", "right", swapped, "p"},
        {"no side without a primary: the first of its kind", "left", noPrimary, "p"},
        {"places count in primary displays: three times as wide, three times as far", "right", wide, "far"},
        {"equally far: the earlier", "above", mirrored, "first"},
        {"not there: the primary", "left", others, "b"},
        {"on none: the primary", {}, others, "b"},
        {"an id that was not saved: the primary", "a", others, "b"},
        {"no primary: the first", {}, {others[0]}, "a"},
        {"no display", "left", {}, ""},
    };
    for (const Case& c : cases) {
        const DisplaySnapshot* found = DisplayMapper::targetDisplay(c.id, saved, c.current);
        EXPECT_EQ(found ? found->id : "", c.expected) << c.what;
    }
    EXPECT_EQ(DisplayMapper::bestTopologyMatch(saved[1], {}, swapped)->id, "p");
    EXPECT_EQ(DisplayMapper::bestTopologyMatch(saved[1], saved, sharper), nullptr) << "another scale";
}

TEST(DisplayMapper, AClampedFrameIsInsideAndMovesNoMoreThanItMust) {
    constexpr double rounding = 1e-9;
    for (unsigned seed = 0; seed < 1000; ++seed) {
        SCOPED_TRACE(seed);
        samples::Random random(seed);
        const Rect rect = random.rect(), bounds = random.rect();
        const Rect clamped = DisplayMapper::clamp(rect, bounds);
        EXPECT_GE(clamped.minX(), bounds.minX() - rounding);
        EXPECT_GE(clamped.minY(), bounds.minY() - rounding);
        EXPECT_LE(clamped.maxX(), bounds.maxX() + rounding);
        EXPECT_LE(clamped.maxY(), bounds.maxY() + rounding);
        EXPECT_EQ(clamped.width, std::min(rect.width, bounds.width));
        EXPECT_EQ(clamped.height, std::min(rect.height, bounds.height));
        if (rect.minX() >= bounds.minX() && rect.maxX() <= bounds.maxX()) EXPECT_EQ(clamped.x, rect.x);
        if (rect.minY() >= bounds.minY() && rect.maxY() <= bounds.maxY()) EXPECT_EQ(clamped.y, rect.y);
    }
}

}  // namespace
}  // namespace quillo
