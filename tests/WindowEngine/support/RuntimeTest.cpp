// The runtime on the virtual and on the plain loop, and what only they can show.
#include <cstdlib>
#include <new>

#include "tests/WindowEngine/support/RuntimeSuite.hpp"

// The thread sanitizer brings allocation functions that cannot be replaced.
#if !__has_feature(thread_sanitizer)
#define QUILLO_CAN_EXHAUST_MEMORY

namespace {
bool memoryIsExhausted = false;
}

void* operator new(std::size_t size) {
    if (memoryIsExhausted) throw std::bad_alloc();
    if (void* memory = std::malloc(size)) return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

#endif

namespace quillo {

INSTANTIATE_TEST_SUITE_P(Virtual, Runtime, testing::Values(&make<VirtualExecutor>));
INSTANTIATE_TEST_SUITE_P(Plain, Runtime, testing::Values(&make<LoopExecutor>));

namespace {

TEST(VirtualExecutor, LetsTimersThatBecameDueJoinTheQueueWhileTheThreadWasBlocked) {
    VirtualExecutor executor;
    std::string log;
    executor.postAfter(2s, [&] { log += 't'; });
    std::function<void()> busy = [&] {
        executor.burn(1s);
        log += 'p';
        if (log.size() < 6) executor.post([&] { busy(); });
    };
    busy();
    executor.runUntilIdle();
    EXPECT_EQ(log, "ppptpp");
    EXPECT_EQ(executor.now(), TimePoint{} + 5s);
}

TEST(VirtualExecutor, StopsItsClockWhereItIsTold) {
    VirtualExecutor executor;
    int polls = 0;
    std::optional<Job<>> poller(std::in_place, executor, [](int& count) -> Task<> {
        for (;; ++count) co_await sleepFor(150ms);
    }(polls));
    executor.runFor(1s);
    EXPECT_EQ(polls, 6);
    EXPECT_EQ(formatInstant(executor.wallNow()), "2025-03-14T09:26:54Z");
    EXPECT_TRUE(executor.runUntil([&] { return polls == 10; }, 10s));
    EXPECT_EQ(executor.now(), TimePoint{} + 1500ms);
    EXPECT_FALSE(executor.runUntil([] { return false; }, 10s));
    EXPECT_EQ(executor.now(), TimePoint{} + 11500ms);
    poller.reset();
    EXPECT_TRUE(executor.idle());
}

TEST(LoopExecutor, RunsUntilItIsStoppedFromAnotherThread) {
    LoopExecutor executor;
    int posts = 0;
    const std::jthread thread([&] {
        for (int i = 0; i < 100; ++i) executor.post([&] { ++posts; });
        executor.stop();
    });
    executor.run();
    EXPECT_EQ(posts, 100);
}

#ifdef QUILLO_CAN_EXHAUST_MEMORY
TEST(AnExecutor, StopsAndEndsTasksWithoutMemory) {
    VirtualExecutor executor;
    std::string log;
    int called = 0;
    Completion<int> completion(executor);
    const auto setter = completion.setter();
    Job<int> sleeper(executor, sleepThenGive(24h, 1)), waiter(executor, waitFor(completion));
    const Job<> joiner(executor, join(sleeper, log));
    sleeper.onDone([&] { ++called; });
    executor.runFor(1s);
    memoryIsExhausted = true;
    sleeper.cancel();
    setter.set(4);
    executor.runUntilIdle();
    memoryIsExhausted = false;
    EXPECT_EQ(log, "c");
    EXPECT_EQ(called, 1);
    EXPECT_EQ(waiter.result(), 4);
}
#endif

TEST(AnExecutor, FreesWhatAnExecutorLeavesBehind) {
    int living = 0;
    const auto tracked = std::make_shared<int>();
    std::optional<Job<>> job;
    {
        VirtualExecutor executor;
        executor.postAfter(1s, [tracked] {});
        job.emplace(executor, [](std::optional<Job<>>& mine, int& count) -> Task<> {
            const Tracked frame(count);
            mine.reset();
            co_await shielded(sleepThenGive(24h, 1));
        }(job, living));
        executor.runFor(1ms);
        EXPECT_EQ(living, 1);
        executor.post([tracked] {});
    }
    EXPECT_EQ(living, 0);
    EXPECT_EQ(tracked.use_count(), 1);
}

TEST(Fn, KeepsSmallAndLargeClosuresThroughMoves) {
    std::array<std::string, 4> large;
    large.fill("long enough to live on the heap, so that a lost copy is seen");
    std::size_t total = 0;
    Fn small([&total, text = large[0]] { total += text.size(); });
    Fn boxed([&total, large] { total += large[3].size(); });
    Fn other(std::move(small));
    small = std::move(boxed);
    small();
    other();
    other = {};
    EXPECT_FALSE(other);
    EXPECT_EQ(total, 2 * large[0].size());
}

}  // namespace
}  // namespace quillo
