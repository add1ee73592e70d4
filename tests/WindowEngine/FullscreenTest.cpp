#include <gtest/gtest.h>

#include <string>

#include "WindowEngine/FullscreenCaptureMerge.hpp"
#include "WindowEngine/FullscreenTransition.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

struct Script {
    std::string_view readings;  // t, f or - (unreadable), the last one for ever
    int refusedRequest = 0;     // the how-manieth request is refused
    std::size_t reads = 0;
    std::vector<std::chrono::milliseconds> requests;  // when
};

Task<void> pauseOnce() {
    co_await sleepFor(100ms);
}

struct Ending {
    std::optional<bool> result;  // none: cancelled
    std::chrono::milliseconds after{};
};

Ending transition(Script& script, std::optional<Duration> cancelAfter = {}, double retryDelay = 1.0) {
    VirtualExecutor executor;
    const auto elapsed = [&] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(executor.now().time_since_epoch());
    };
    const FullscreenTransition::Steps steps{
        .read = [&]() -> std::optional<bool> {
            const char reading = script.readings[std::min(script.reads++, script.readings.size() - 1)];
            return reading == '-' ? std::nullopt : std::optional(reading == 't');
        },
        .request =
            [&] {
                script.requests.push_back(elapsed());
                return std::ssize(script.requests) != script.refusedRequest;
            },
        .pause = pauseOnce};
    Job<bool> job(executor, FullscreenTransition::apply(true, 6.0, retryDelay, steps));
    if (cancelAfter) executor.postAfter(*cancelAfter, [&] { job.cancel(); });
    executor.runUntil([&] { return job.done(); }, 1h);
    const Outcome<bool> outcome = job.outcome();
    return {outcome.hasValue() ? std::optional(outcome.value()) : std::nullopt, elapsed()};
}

TEST(FullscreenTransition, AsksAndWaitsForThreeAgreeingReadings) {
    using Times = std::vector<std::chrono::milliseconds>;
    struct Case {
        const char* what;
        std::string_view readings;
        int refusedRequest;
        bool result;
        std::chrono::milliseconds after;
        Times requests;
    };
    std::string alternating;
    while (alternating.size() < 200) alternating += "ft";
    const Case cases[] = {
        {"there already: nothing is asked", "t", 0, true, 200ms, {}},
        {"one request suffices", "fttt", 0, true, 200ms, {0ms}},
        {"an unreadable state asks", "-ttt", 0, true, 200ms, {0ms}},
        {"flickers at first", "fttfttt", 0, true, 500ms, {0ms}},
        {"unreadable in between starts over", "ftt-ttt", 0, true, 500ms, {0ms}},
        {"never agrees with itself", alternating, 0, false, 6000ms, {0ms}},
        {"flickers once", "ftf", 0, false, 6000ms, {0ms, 1000ms, 2000ms}},
        {"never readable", "-", 0, false, 6000ms, {0ms}},
        {"never comes", "f", 0, false, 6000ms, {0ms, 1000ms, 2000ms}},
        {"refused at once", "f", 1, false, 0ms, {0ms}},
        {"refused when asked again", "f", 2, false, 1000ms, {0ms, 1000ms}},
        {"comes after the second request", "ffffffffffffttt", 0, true, 1300ms, {0ms, 1000ms}},
        {"falls out at once: asked without delay", "tfffttt", 0, true, 500ms, {200ms}},
        {"two matches do not count", "tttfffttt", 0, true, 700ms, {400ms}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Script script{.readings = c.readings, .refusedRequest = c.refusedRequest, .requests = {}};
        const Ending ending = transition(script);
        EXPECT_EQ(ending.result, c.result);
        EXPECT_EQ(ending.after, c.after);
        EXPECT_EQ(script.requests, c.requests);
    }
}

TEST(FullscreenTransition, EachRequestIsGivenThreeReadings) {
    Script script{.readings = "f", .requests = {}};
    EXPECT_EQ(transition(script, {}, 0.0).result, false);
    EXPECT_EQ(script.requests, (std::vector<std::chrono::milliseconds>{0ms, 200ms, 500ms}));
}

TEST(FullscreenTransition, EndsWhenCancelled) {
    Script script{.readings = "f", .requests = {}};
    const Ending ending = transition(script, 250ms);
    EXPECT_EQ(ending.result, std::nullopt);
    EXPECT_EQ(ending.after, 250ms);
}

TEST(FullscreenCaptureMerge, AddsWhatOnlyTheWindowServerKnows) {
    const std::vector displays{samples::display("A", {0, 0, 1000, 500}, true)};
    const std::vector<WindowSnapshot> captured(2, samples::window({1, 2, 3, 4}, "seen"));
    const std::vector<HiddenWindowCandidate> hidden{
        {7, {0, 0, 1000, 500}, true}, {8, {250, 250, 500, 125}, false}, {9, {5000, 5000, 10, 10}, false}};
    const auto lookup = [](WindowNumber number, const std::optional<std::string>& preferred) {
        return std::optional(DesktopSnapshot{preferred.value_or("none"), number, {}});
    };
    const auto merged = FullscreenCaptureMerge::apply(captured, hidden, displays, lookup);

    std::vector<WindowSnapshot> expected = captured;
    for (std::size_t i = 0; i < hidden.size(); ++i) {
        WindowSnapshot window = samples::window(hidden[i].frame);
        window.subrole = "AXStandardWindow";
        window.isFullscreen = hidden[i].isFullscreen;
        window.fullscreenConfirmed = true;
        window.index = static_cast<std::int64_t>(2 + i);
        expected.push_back(window);
    }
    expected[2].displayID = expected[3].displayID = "A";
    expected[3].desktop = DesktopSnapshot{"A", 8, {}};
    expected[4].desktop = DesktopSnapshot{"none", 9, {}};
    expected[2].normalizedFrame = expected[4].normalizedFrame = {0, 0, 1, 1};
    expected[3].normalizedFrame = {0.25, 0.5, 0.5, 0.25};
    EXPECT_EQ(merged, expected);
    EXPECT_EQ(FullscreenCaptureMerge::apply(captured, {}, displays, lookup), captured);
}

}  // namespace
}  // namespace quillo
