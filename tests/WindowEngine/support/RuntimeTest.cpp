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
            EXPECT_TRUE((co_await context()).stopRequested());
            co_await shielded(sleepThenGive(24h, 1));
        }(job, living));
        executor.runFor(1ms);
        EXPECT_EQ(living, 1);
        executor.post([tracked] {});
    }
    EXPECT_EQ(living, 0);
    EXPECT_EQ(tracked.use_count(), 1);
}

TEST(Fn, DropsWhatItHeldWhenAnotherMovesIn) {
    const auto held = std::make_shared<int>();
    Fn small([held] {}), boxed([held, large = std::array<char, 100>()] { (void)large; });
    small = std::move(boxed);
    EXPECT_EQ(held.use_count(), 2);
    small = {};
    EXPECT_FALSE(small);
    EXPECT_EQ(held.use_count(), 1);
}

}  // namespace
}  // namespace quillo
