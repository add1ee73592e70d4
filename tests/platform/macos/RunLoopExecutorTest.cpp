// The runtime on a Core Foundation run loop, and what only it can show.
#include <atomic>
#include <thread>

#include "platform/macos/RunLoopExecutor.hpp"
#include "tests/WindowEngine/support/RuntimeSuite.hpp"
#include "tests/platform/macos/MacTest.hpp"
#include "tests/platform/macos/fakes/FakeRunLoop.hpp"

namespace quillo {

INSTANTIATE_TEST_SUITE_P(RunLoop, Runtime, testing::Values(&make<RunLoopExecutor>));

namespace {

/// The suite's fixture knows no leak check.
class LeakListener final : public testing::EmptyTestEventListener {
    void OnTestStart(const testing::TestInfo&) override { leaks_.emplace(); }
    void OnTestEnd(const testing::TestInfo&) override {
        fakes::endRunLoop();
        leaks_.reset();
    }
    std::optional<LeakCheck> leaks_;
};
[[maybe_unused]] const bool listening = [] {
    testing::UnitTest::GetInstance()->listeners().Append(new LeakListener);
    return true;
}();

struct EndOfRunLoop {
    ~EndOfRunLoop() { fakes::endRunLoop(); }
};

class RunLoopExecutorTest : public MacTest {
  protected:
    const EndOfRunLoop end;
    std::string log;
    std::optional<RunLoopExecutor> executor{std::in_place};

    /// As the system's own event loop does, without the executor's knowing.
    template <class Condition>
    void runSystemsLoop(CFRunLoopMode mode, Condition until) {
        const TimePoint limit = std::chrono::steady_clock::now() + 20s;
        while (!until() && std::chrono::steady_clock::now() < limit) CFRunLoopRunInMode(mode, 20, true);
    }
};

TEST_F(RunLoopExecutorTest, RunsUnderTheSystemsOwnLoopAndGoesOnWhileAMenuIsOpen) {
    executor->post([&] {
        log += '(';
        runSystemsLoop(fakes::menuTrackingMode, [&] { return log.ends_with('b'); });
        log += ')';
    });
    executor->post([&] { log += 'a'; });  // waits in the ready queue when the menu opens
    executor->postAfter(1ms, [&] { log += 'b'; });
    runSystemsLoop(kCFRunLoopDefaultMode, [&] { return log.ends_with(')'); });
    EXPECT_EQ(log, "(ab)");
}

TEST_F(RunLoopExecutorTest, ServesTheSystemsSourcesBetweenTurns) {
    bool served = false;
    CFRunLoopSourceContext context{};
    context.info = &served;
    context.perform = [](void* told) { *static_cast<bool*>(told) = true; };
    const auto source = CFRef<CFRunLoopSourceRef>::created(CFRunLoopSourceCreate(nullptr, 0, &context));
    CFRunLoopAddSource(CFRunLoopGetCurrent(), source.get(), kCFRunLoopDefaultMode);
    std::function<void()> busy = [&] {
        if (!served) executor->post([&] { busy(); });
    };
    busy();
    executor->postAfter(1ms, [&] { CFRunLoopSourceSignal(source.get()); });
    EXPECT_TRUE(executor->runUntil([&] { return served; }, 20s));
}

TEST_F(RunLoopExecutorTest, MissesNoWakingAndSleepsBetween) {
    constexpr int rounds = 2000;
    std::atomic<int> ran = 0;
    const std::jthread thread([&] {
        for (int round = 0; round < rounds; ++round) {
            executor->post([&] {
                ++ran;
                ran.notify_one();
            });
            ran.wait(round);
        }
    });
    EXPECT_TRUE(executor->runUntil([&] { return ran == rounds; }, 20s));
    ran = -1;  // lets the thread end where the loop got stuck
    ran.notify_one();

    const std::size_t before = fakes::runLoopPasses();
    executor->postAfter(30ms, [&] { log += 'a'; });
    EXPECT_TRUE(executor->runUntil([&] { return log == "a"; }, 20s));
    EXPECT_FALSE(executor->runUntil([] { return false; }, 30ms));
    EXPECT_LT(fakes::runLoopPasses() - before, 20U);
}

TEST_F(RunLoopExecutorTest, LeavesTheRunLoopAtItsEnd) {
    const auto kept = std::make_shared<int>();
    executor->post([kept] {});
    executor->postAfter(0ms, [kept] {});
    executor->postAfter(1h, [kept] {});
    executor.reset();
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_EQ(CFRunLoopRunInMode(kCFRunLoopDefaultMode, 20, true), kCFRunLoopRunFinished);
}

TEST_F(RunLoopExecutorTest, WaitsForNothingOnAnotherThread) {
    std::thread([&] { EXPECT_FALSE(executor->runUntil([] { return false; }, 20s)); }).join();
}

}  // namespace
}  // namespace quillo
