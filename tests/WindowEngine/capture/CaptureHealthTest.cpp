// What keeps a capture from being the desktop that anybody wants back.
#include <gtest/gtest.h>

#include "WindowEngine/capture/CaptureHealth.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using namespace CaptureHealth;

TEST(CaptureHealth, TheWeightiestFlawIsTold) {
    const struct {
        Situation situation;
        std::optional<Flaw> flaw;
    } cases[] = {
        {{}, {}},
        {{.access = false, .screen = ScreenState::locked}, Flaw::noAccess},
        {{.screen = ScreenState::locked, .hasDisplay = false}, Flaw::locked},
        {{.screen = ScreenState::blank, .displaysChanging = true}, Flaw::blank},
        {{.hasDisplay = false, .displaysChanging = true}, Flaw::noDisplay},
        {{.displaysChanging = true, .windowsBefore = 9}, Flaw::displaysChanging},
        {{.windowsBefore = 4, .windows = 2}, {}},  // half of them, and no more
        {{.windowsBefore = 5, .windows = 2}, Flaw::windowsVanished},
        {{.windowsBefore = 2, .windows = 7}, {}},
    };
    for (const auto& [situation, flaw] : cases)
        EXPECT_EQ(flawOf(situation), flaw) << (flaw ? words(*flaw) : "healthy");
}

TEST(CaptureHealth, WindowsAreRememberedForAMinute) {
    constexpr TimePoint start{10min};
    WindowTally tally;
    EXPECT_EQ(tally.most(start), 0);
    tally.note(start, 8);
    tally.note(start + 10min, 3);  // eight until then, however long ago they came
    tally.note(start + 10min + 30s, 1);
    EXPECT_EQ(tally.most(start + 11min), 8);
    EXPECT_EQ(tally.most(start + 11min + 1s), 3);
    EXPECT_EQ(tally.most(start + 12min), 1);
    WorkspaceSnapshot last;
    last.capturedAt = Instant{1h};
    last.applications.emplace_back().windows.resize(2);
    EXPECT_EQ(windowsBefore(last, Instant{1h + 1min}), 2);
    EXPECT_EQ(windowsBefore(last, Instant{1h + 61s}), 0);
    EXPECT_EQ(windowsBefore(last, Instant{59min}), 0) << "the clock was set back";
}

}  // namespace
}  // namespace quillo
