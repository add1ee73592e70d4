#include <gtest/gtest.h>

#include <algorithm>

#include "WindowEngine/records/NativeTabs.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo {
namespace {

using samples::window;
using Windows = std::vector<WindowSnapshot>;

constexpr const char* terminal = "com.apple.Terminal";

TEST(NativeTabs, FoldsAStackIntoItsFirstWindow) {
    constexpr Rect frame{10, 20, 300, 200};
    Windows windows{window(frame, "a"), window({0, 0, 300, 200}, "elsewhere"), window(frame, "b"),
                    window(frame, "c")};
    windows[2].documentURL = Url::parse("file:///tmp/b");
    for (const char* identifier : {"com.mitchellh.ghostty", terminal, "com.apple.finder"}) {
        Windows expected{windows[0], windows[1]};
        expected[0].tabs = {{{"a", {}}, {"b", windows[2].documentURL}, {"c", {}}}};
        EXPECT_EQ(NativeTabs::collapse(windows, identifier), expected) << identifier;
    }
    const ApplicationSnapshot browser{"org.browser", "Browser", {}, windows, {}};
    EXPECT_EQ(NativeTabs::collapse(browser), browser);
}

bool isStack(const WindowSnapshot& a, const WindowSnapshot& b) {
    return a.frame == b.frame && a.displayID == b.displayID && a.isMinimized == b.isMinimized &&
           a.isFullscreen == b.isFullscreen && a.subrole == b.subrole && a.desktop == b.desktop;
}

std::optional<DesktopSnapshot> plainInheritance(const Windows& windows, const WindowSnapshot& window) {
    std::optional<DesktopSnapshot> only;
    for (const WindowSnapshot& other : windows) {
        if (other.frame != window.frame || !other.desktop) continue;
        if (only && only != other.desktop) return std::nullopt;
        only = other.desktop;
    }
    return only;
}

// Every window against every other one.
Windows plainCollapse(const Windows& windows) {
    Windows result;
    for (WindowSnapshot w : windows) {
        if (!w.desktop) w.desktop = plainInheritance(windows, w);
        const auto first = std::ranges::find_if(result, [&](const auto& e) { return isStack(e, w); });
        if (first == result.end()) {
            result.push_back(w);
            continue;
        }
        if (!first->tabs) first->tabs = {{first->title, first->documentURL}};
        const auto tabs = w.tabs.value_or(std::vector<TabSnapshot>{{w.title, w.documentURL}});
        first->tabs->insert(first->tabs->end(), tabs.begin(), tabs.end());
    }
    return result;
}

WindowSnapshot someWindow(samples::Random& random) {
    WindowSnapshot w = window({0.0, random.flip() ? 0.0 : -0.0, 100.0 + random.below(2), 50},
                              random.maybe<std::string>("title"));
    w.displayID = random.maybe<std::string>("D");
    if (random.below(3) == 0)
        w.desktop = DesktopSnapshot{"D", random.below(2), random.maybe<std::string>("u")};
    w.isMinimized = random.below(5) == 0;
    w.isFullscreen = random.below(5) == 0;
    w.subrole = random.maybe<std::string>("AXStandardWindow");
    if (random.below(4) == 0) w.tabs.emplace(static_cast<std::size_t>(random.below(3)));
    return w;
}

TEST(NativeTabs, FoldsLikeThePlainRulesAndOnlyOnce) {
    for (unsigned seed = 0; seed < 500; ++seed) {
        samples::Random random(seed);
        Windows windows(static_cast<std::size_t>(random.below(20)));
        for (WindowSnapshot& each : windows) each = someWindow(random);
        const Windows folded = NativeTabs::collapse(windows, terminal);
        EXPECT_EQ(folded, plainCollapse(windows)) << "seed " << seed;
        EXPECT_EQ(NativeTabs::collapse(folded, terminal), folded) << "seed " << seed;
    }
}

}  // namespace
}  // namespace quillo
