#include <gtest/gtest.h>

#include <string>

#include "WindowEngine/capture/FullscreenCaptureMerge.hpp"
#include "WindowEngine/desktop/FullscreenTransition.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "tests/WindowEngine/DesktopSamples.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

using Times = std::vector<std::chrono::milliseconds>;

Task<void> pauseOnce() {
    co_await sleepFor(100ms);
}

struct Transition {
    const char* what;
    std::string readings;        // t, f or - (unreadable), the last one for ever
    std::optional<bool> result;  // none: cancelled
    std::chrono::milliseconds after;
    Times requests;          // when
    int refusedRequest = 0;  // the how-manieth request is refused
    double retryDelay = 1;
    Duration cancelAfter = 1h;
};

void expectTransition(const Transition& expected) {
    SCOPED_TRACE(expected.what);
    VirtualExecutor executor;
    std::size_t reads = 0;
    Times requests;
    const auto elapsed = [&] {
        return std::chrono::duration_cast<std::chrono::milliseconds>(executor.now().time_since_epoch());
    };
    const auto read = [&]() -> std::optional<bool> {
        const char reading = expected.readings[std::min(reads++, expected.readings.size() - 1)];
        return reading == '-' ? std::nullopt : std::optional(reading == 't');
    };
    const auto request = [&] {
        requests.push_back(elapsed());
        return std::ssize(requests) != expected.refusedRequest;
    };
    Job<bool> job(executor,
                  FullscreenTransition::apply(true, 6.0, expected.retryDelay, {read, request, pauseOnce}));
    executor.postAfter(expected.cancelAfter, [&] { job.cancel(); });
    executor.runUntil([&] { return job.done(); }, 2h);
    const Outcome<bool> outcome = job.outcome();
    EXPECT_EQ(outcome.hasValue() ? std::optional(outcome.value()) : std::nullopt, expected.result);
    EXPECT_EQ(elapsed(), expected.after);
    EXPECT_EQ(requests, expected.requests);
}

TEST(FullscreenTransition, AsksAndWaitsForThreeAgreeingReadings) {
    std::string alternating;
    while (alternating.size() < 200) alternating += "ft";
    const Transition cases[] = {
        {"there already: nothing is asked", "t", true, 200ms, {}},
        {"one request suffices", "fttt", true, 200ms, {0ms}},
        {"an unreadable state asks", "-ttt", true, 200ms, {0ms}},
        {"flickers at first", "fttfttt", true, 500ms, {0ms}},
        {"unreadable in between starts over", "ftt-ttt", true, 500ms, {0ms}},
        {"never agrees with itself", alternating, false, 6000ms, {0ms}},
        {"never readable", "-", false, 6000ms, {0ms}},
        {"never comes", "f", false, 6000ms, {0ms, 1000ms, 2000ms}},
        {"refused at once", "f", false, 0ms, {0ms}, 1},
        {"refused when asked again", "f", false, 1000ms, {0ms, 1000ms}, 2},
        {"comes after the second request", "ffffffffffffttt", true, 1300ms, {0ms, 1000ms}},
        {"falls out at once: asked without delay", "tfffttt", true, 500ms, {200ms}},
        {"two matches do not count", "tttfffttt", true, 700ms, {400ms}},
        {"each request is given three readings", "f", false, 6000ms, {0ms, 200ms, 500ms}, 0, 0},
        {"cancelled", "f", {}, 250ms, {0ms}, 0, 1, 250ms},
    };
    for (const Transition& expected : cases) expectTransition(expected);
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
