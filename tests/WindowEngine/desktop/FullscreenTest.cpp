#include <gtest/gtest.h>

#include <string>

#include "WindowEngine/desktop/FullscreenTransition.hpp"
#include "WindowEngine/support/Loops.hpp"

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

}  // namespace
}  // namespace quillo
