#include <gtest/gtest.h>

#include "WindowEngine/DisplayMapper.hpp"
#include "WindowEngine/Displays.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo {
namespace {

using DisplayMapper::Placement;
using samples::display;
using Displays = std::vector<DisplaySnapshot>;

const Displays laptopAndMonitor{display("laptop", {0, 0, 1000, 800}, true, 2),
                                display("monitor", {1000, 0, 2000, 1000})};

WindowSnapshot savedOn(const char* displayID, Rect frame, Rect normalized) {
    WindowSnapshot window = samples::window(frame);
    if (displayID) window.displayID = displayID;
    window.normalizedFrame = normalized;
    return window;
}

TEST(DisplayMapper, PlacesWindowsOnWhatIsThereNow) {
    const Displays monitorSmaller{laptopAndMonitor[0], display("monitor", {1000, 0, 1000, 500})};
    const Displays monitorMoved{laptopAndMonitor[0], display("monitor", {-2000, 0, 2000, 1000})};
    const Displays monitorSwapped{laptopAndMonitor[0], display("other", {0, -1000, 2000, 1000})};
    const Displays laptopOnly{laptopAndMonitor[0]};
    const Displays laptopSecond{display("x", {-500, 0, 500, 500}),
                                display("laptop", {0, 0, 1000, 800}, true)};
    const Rect quarter{0.25, 0.25, 0.5, 0.5};
    struct Case {
        const char* what;
        WindowSnapshot window;
        Displays current;
        std::optional<Placement> expected;
    };
    const Case cases[] = {
        {"all as before", savedOn("monitor", {1100, 50, 400, 300}, {}), laptopAndMonitor,
         Placement{{1100, 50, 400, 300}, false}},
        {"under the menu bar", savedOn("monitor", {1100, 10, 400, 300}, {}), laptopAndMonitor,
         Placement{{1100, 30, 400, 300}, true}},
        {"off screen to the left and below", savedOn("laptop", {-50, 700, 400, 300}, {}), laptopAndMonitor,
         Placement{{0, 500, 400, 300}, true}},
        {"larger than the display", savedOn("laptop", {10, 40, 1500, 900}, {}), laptopAndMonitor,
         Placement{{0, 30, 1000, 770}, true}},
        {"another resolution", savedOn("monitor", {1, 2, 3, 4}, quarter), monitorSmaller,
         Placement{{1250, 125, 500, 250}, true}},
        {"moved, frame the same by chance", savedOn("monitor", {-1500, 250, 1000, 500}, quarter),
         monitorMoved, Placement{{-1500, 250, 1000, 500}, true}},
        {"its like under another id", savedOn("monitor", {1, 2, 3, 4}, quarter), monitorSwapped,
         Placement{{500, -750, 1000, 500}, true}},
        {"its like, without fractions", savedOn("monitor", {1500, 250, 1000, 500}, {}), monitorSwapped,
         Placement{{0, -970, 0, 0}, true}},
        {"lost", savedOn("monitor", {1, 2, 3, 4}, quarter), laptopOnly,
         Placement{{250, 200, 500, 400}, true}},
        {"lost, without fractions", savedOn("monitor", {1500, 250, 1000, 500}, {}), laptopOnly,
         Placement{{250, 200, 500, 400}, true}},
        {"on no display, without fractions", savedOn(nullptr, {100, 200, 300, 400}, {}), laptopSecond,
         Placement{{100, 200, 300, 400}, true}},
        {"on a display that was not saved", savedOn("x", {100, 200, 300, 400}, quarter), laptopSecond,
         Placement{{250, 200, 500, 400}, true}},
        {"no display at all", savedOn("laptop", {1, 2, 3, 4}, quarter), {}, std::nullopt},
    };
    for (const Case& c : cases)
        EXPECT_EQ(DisplayMapper::place(c.window, laptopAndMonitor, c.current), c.expected) << c.what;
}

TEST(DisplayMapper, FindsIdenticalMonitorsAgainBySide) {
    const Displays saved{display("laptop", {0, 0, 1000, 800}, true, 2),
                         display("left", {-2000, 0, 2000, 1000}), display("right", {1000, 0, 2000, 1000})};
    // New names, the other order, another resolution on the laptop.
    const Displays current{display("p", {1500, 0, 2000, 1000}), display("q", {-2000, 0, 2000, 1000}),
                           display("laptop", {0, 0, 1500, 1200}, true, 2)};
    EXPECT_EQ(DisplayMapper::targetDisplay("left", saved, current)->id, "q");
    EXPECT_EQ(DisplayMapper::targetDisplay("right", saved, current)->id, "p");
    EXPECT_EQ(DisplayMapper::bestTopologyMatch(saved[1], saved, current)->id, "q");
    // Same size at another scale is another display.
    EXPECT_EQ(DisplayMapper::bestTopologyMatch(display("s", {0, 0, 2000, 1000}, false, 2), saved, current),
              nullptr);

    Displays withoutPrimary = current;
    withoutPrimary[2].isPrimary = false;
    EXPECT_EQ(DisplayMapper::targetDisplay("left", saved, withoutPrimary)->id, "p")
        << "the first of its kind";
    EXPECT_EQ(DisplayMapper::bestTopologyMatch(saved[1], {}, current)->id, "p");
    // Places are in units of the primary display: beside a laptop that is three times as wide, the right
    // monitor's place is three times as far.
    const Displays wide{display("near", {3000, 0, 2000, 1000}), display("far", {5000, 0, 2000, 1000}),
                        display("laptop", {0, 0, 3000, 800}, true, 2)};
    EXPECT_EQ(DisplayMapper::targetDisplay("right", saved, wide)->id, "far");
    // Equally far: the earlier one.
    const Displays mirrored{display("first", {-2000, 0, 2000, 1000}),
                            display("second", {1000, 0, 2000, 1000}),
                            display("laptop", {0, 0, 1000, 800}, true)};
    EXPECT_EQ(DisplayMapper::bestTopologyMatch(display("above", {-500, -1000, 2000, 1000}),
                                               {{display("laptop", {0, 0, 1000, 800}, true)}}, mirrored)
                  ->id,
              "first");
}

TEST(DisplayMapper, StandsInWithThePrimaryDisplay) {
    const Displays current{display("a", {0, 0, 500, 500}), display("b", {500, 0, 600, 600}, true)};
    struct Case {
        std::optional<std::string> id;
        const char* target;
    };
    for (const Case& c : {Case{"monitor", "b"}, {std::nullopt, "b"}, {"a", "b"}})
        EXPECT_EQ(DisplayMapper::targetDisplay(c.id, laptopAndMonitor, current)->id, c.target);
    EXPECT_EQ(DisplayMapper::targetDisplay(std::nullopt, {}, std::span(current).first(1))->id, "a");
    EXPECT_EQ(DisplayMapper::targetDisplay("laptop", laptopAndMonitor, {}), nullptr);
}

TEST(DisplayMapper, AClampedFrameIsInsideAndMovesNoMoreThanItMust) {
    constexpr double rounding = 1e-9;
    for (unsigned seed = 0; seed < 1000; ++seed) {
        samples::Random random(seed);
        const Rect rect = random.rect(), bounds = random.rect();
        const Rect clamped = DisplayMapper::clamp(rect, bounds);
        SCOPED_TRACE(seed);
        EXPECT_GE(clamped.minX(), bounds.minX() - rounding);
        EXPECT_GE(clamped.minY(), bounds.minY() - rounding);
        EXPECT_LE(clamped.maxX(), bounds.maxX() + rounding);
        EXPECT_LE(clamped.maxY(), bounds.maxY() + rounding);
        EXPECT_EQ(clamped.width, std::min(rect.width, bounds.width));
        EXPECT_EQ(clamped.height, std::min(rect.height, bounds.height));
        if (rect.minX() >= bounds.minX() && rect.maxX() <= bounds.maxX()) EXPECT_EQ(clamped.x, rect.x);
        const Rect again = DisplayMapper::clamp(clamped, bounds);
        EXPECT_NEAR(again.x, clamped.x, rounding);
        EXPECT_NEAR(again.y, clamped.y, rounding);
    }
}

}  // namespace
}  // namespace quillo
