// What every loop must hold, written once and instantiated with each of them. After each test the loop is
// idle: that finds leaked timers and forgotten jobs.
#pragma once
#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "WindowEngine/support/Loops.hpp"
#include "WindowEngine/support/Task.hpp"

namespace quillo {

using namespace std::chrono_literals;

/// Counts the living, to find frames that are freed twice, never or too early.
struct Tracked {
    explicit Tracked(int& living) : count(living) { ++count; }
    Tracked(const Tracked&) = delete;
    Tracked& operator=(const Tracked&) = delete;
    ~Tracked() { --count; }
    int& count;
};

inline Task<int> sleepThenGive(Duration duration, int value) {
    co_await sleepFor(duration);
    co_return value;
}
inline Task<> forever(int& living) {
    const Tracked tracked(living);
    co_await sleepFor(24h);
}
inline Task<> failAfter(Duration duration) {
    co_await sleepFor(duration);
    throw std::runtime_error("broken");
}
inline Task<> note(std::string& log, Duration duration, char mark) {
    co_await sleepFor(duration);
    log += mark;
}
inline Task<> untilStopped(std::string& log) {
    try {
        co_await sleepFor(24h);
    } catch (const Cancelled&) {
        log += 'c';
        throw;
    }
}
template <class T>
Task<T> waitFor(Completion<T> completion) {
    co_return co_await completion;
}
template <class T>
Task<> join(Job<T>& job, std::string& log) {
    try {
        co_await job;
        log += 'v';
    } catch (const Cancelled&) {
        log += 'c';
    } catch (const std::exception&) {
        log += 'e';
    }
}

template <class LoopUnderTest>
class Runtime : public testing::Test {
  protected:
    void settle() {
        ASSERT_TRUE(executor.runUntil([this] { return executor.idle(); }, 20s));
    }
    void TearDown() override {
        settle();
        EXPECT_EQ(living, 0);
        EXPECT_EQ(unobserved, expectedUnobserved);
    }
    void SetUp() override {
        executor.onUnobservedException([this](const std::exception_ptr&) { ++unobserved; });
    }

    int living = 0;
    int unobserved = 0;
    int expectedUnobserved = 0;
    std::string log;
    LoopUnderTest executor;
};
TYPED_TEST_SUITE_P(Runtime);

TYPED_TEST_P(Runtime, KeepsOneOrderOfPostsTimersAndSleeps) {
    auto [executor, log] = std::tie(this->executor, this->log);
    executor.post([&] { log += 'a'; });
    executor.postAfter(0s, [&] { log += 'b'; });
    const Job<> job(executor, note(log, 0s, 'd'));
    executor.post([&] { log += 'c'; });
    this->settle();
    const TimePoint start = executor.now();
    executor.postAfter(2ms, [&] { log += 'f'; });
    executor.postAfter(1ms, [&] { log += 'e'; });

    this->settle();
    EXPECT_EQ(log, "abcdef");
    EXPECT_GE(executor.now() - start, 2ms);
}

TYPED_TEST_P(Runtime, LetsNeitherPostsNorZeroSleepsStarveTheOther) {
    auto& executor = this->executor;
    bool over = false;
    Job<> sleeper(executor, [](const bool& stop) -> Task<> {
        while (!stop) co_await sleepFor(0s);
    }(over));
    std::function<void()> repost = [&] {
        if (!over) executor.post([&] { repost(); });
    };
    repost();
    int slept = 0;
    const Job<> other(executor, [](bool& stop, int& count) -> Task<> {
        for (; count < 5; ++count) co_await sleepFor(0s);
        stop = true;
    }(over, slept));
    this->settle();
    EXPECT_EQ(slept, 5);
}

TYPED_TEST_P(Runtime, RunsNoTimerThatWasCancelled) {
    auto [executor, log] = std::tie(this->executor, this->log);
    const auto tracked = std::make_shared<int>();
    TimerId second, own;
    own = executor.postAfter(1ms, [&] {
        log += 'a';
        executor.cancel(second);  // due by now, perhaps already in the ready queue
        executor.cancel(own);
    });
    second = executor.postAfter(1ms, [&, tracked] { log += 'b'; });
    executor.cancel(executor.postAfter(24h, [tracked] {}));
    this->settle();
    executor.cancel(second);
    EXPECT_EQ(log, "a");
    EXPECT_EQ(tracked.use_count(), 1);
}

TYPED_TEST_P(Runtime, TakesPostsFromThreadsInTheirOrder) {
    auto& executor = this->executor;
    std::array<int, 3> next{};
    bool inOrder = true;
    std::vector<std::thread> threads;
    for (int& mine : next)
        threads.emplace_back([&executor, &mine, &inOrder, work = executor.outsideWork()] {
            for (int i = 0; i < 500; ++i) executor.post([&mine, &inOrder, i] { inOrder &= mine++ == i; });
        });
    EXPECT_TRUE(executor.runUntil([&] { return next == std::array{500, 500, 500}; }, 20s));
    for (std::thread& thread : threads) thread.join();
    EXPECT_TRUE(inOrder);
}

TYPED_TEST_P(Runtime, CarriesValuesAndExceptionsUpTheTree) {
    Job<int> sum(this->executor, []() -> Task<int> {
        int total = co_await sleepThenGive(1ms, 1);
        Job<int> child = spawn(co_await context(), sleepThenGive(1ms, 10));
        for (int i = 0; i < 10'000; ++i) total += co_await []() -> Task<int> { co_return 1; }();
        try {
            co_await failAfter(0s);
        } catch (const std::runtime_error&) {
            total += 100;
        }
        co_return total + co_await child;
    }());
    EXPECT_FALSE(sum.done());
    this->settle();
    EXPECT_EQ(sum.result(), 10'111);
    EXPECT_THROW(sum.result(), std::logic_error);
}

TYPED_TEST_P(Runtime, CancelsTheWholeTreeButNotWhatIsShielded) {
    auto [executor, log] = std::tie(this->executor, this->log);
    Job<> job(executor, [](std::string& marks) -> Task<> {
        const Context here = co_await context();
        std::vector<Job<>> children;
        children.push_back(spawn(here, untilStopped(marks)));
        children.push_back(spawn(here, untilStopped(marks)));
        try {
            co_await sleepFor(24h);
        } catch (const Cancelled&) {
            marks += 'p';
        }
        co_await shielded([](std::string& inner) -> Task<> {
            co_await note(inner, 1ms, 's');
            co_await spawn(co_await context(), note(inner, 1ms, 't'));
        }(marks));
        co_await joinAll(children);
        co_await checkpoint();
        marks += '!';
    }(log));
    executor.postAfter(1ms, [&] {
        job.cancel();
        EXPECT_EQ(log, "");  // nothing resumed inline
    });
    this->settle();
    EXPECT_EQ(log, "ccpst");
    EXPECT_THROW(job.result(), Cancelled);
}

TYPED_TEST_P(Runtime, RunsNoStatementOfAJobCancelledBeforeItsStart) {
    Job<> job(this->executor, untilStopped(this->log));
    job.cancel();
    this->settle();
    EXPECT_EQ(this->log, "");
    EXPECT_TRUE(job.outcome().isCancelled());
}

TYPED_TEST_P(Runtime, FreesAJobThatIsDroppedInsideItsOwnTreeAfterItsLastStep) {
    for (const bool fromChild : {false, true}) {
        std::optional<Job<>> job;
        const auto drop = [](std::optional<Job<>>& mine, int& living) -> Task<> {
            const Tracked tracked(living);
            mine.reset();
            EXPECT_GE(living, 1);  // the frame still stands
            EXPECT_TRUE((co_await context()).stopRequested());
        };
        const auto parent = [](auto child, std::optional<Job<>>& mine, int& living) -> Task<> {
            const Tracked tracked(living);
            co_await spawn(co_await context(), child(mine, living));
        };
        job.emplace(this->executor, fromChild ? parent(drop, job, this->living) : drop(job, this->living));
        this->settle();
        EXPECT_FALSE(job);
        EXPECT_EQ(this->living, 0);
    }
}

TYPED_TEST_P(Runtime, TellsTheWaiterOfADestroyedJob) {
    auto [executor, log] = std::tie(this->executor, this->log);
    std::optional<Job<>> awaited(std::in_place, executor, forever(this->living));
    const Job<> waiter(executor, join(*awaited, log));
    executor.postAfter(1ms, [&] { awaited.reset(); });
    this->settle();
    EXPECT_EQ(log, "c");

    std::optional<Job<int>> endedFirst(std::in_place, executor, sleepThenGive(0s, 1));
    const Job<> late(executor, join(*endedFirst, log));
    ASSERT_TRUE(executor.runUntil([&] { return endedFirst->done(); }, 1s));
    endedFirst.reset();  // its waiter is already about to resume
    this->settle();
    EXPECT_EQ(log, "cc");
}

TYPED_TEST_P(Runtime, LetsTheCallbackDieWithItsJob) {
    auto [executor, log] = std::tie(this->executor, this->log);
    std::optional<Job<>> dropped(std::in_place, executor, note(log, 0s, 'a'));
    dropped->onDone([&] { log += '!'; });
    ASSERT_TRUE(executor.runUntil([&] { return dropped->done(); }, 1s));
    dropped.reset();
    std::optional<Job<>> dropsItself(std::in_place, executor, note(log, 0s, 'b'));
    dropsItself->onDone([&] {
        dropsItself.reset();
        log += 'c';
    });
    this->settle();
    EXPECT_EQ(log, "abc");
}

TYPED_TEST_P(Runtime, JoinsAllWhateverHappensToAnyOfThem) {
    std::vector<Job<>> jobs;
    const auto run = [](std::vector<Job<>>& children, std::string& log) -> Task<std::vector<Outcome<void>>> {
        const Context here = co_await context();
        children.push_back(spawn(here, failAfter(0s)));
        children.push_back(spawn(here, untilStopped(log)));
        children.push_back(spawn(here, note(log, 0s, 'v')));
        children.push_back(spawn(here, [](std::string& marks) -> Task<> {
            try {
                co_await sleepFor(24h);
            } catch (const Cancelled&) {
                marks += 'c';
            }
            co_await shielded(note(marks, 1ms, 'r'));  // a rollback that takes its time
        }(log)));
        co_return co_await joinAll(children);
    };
    Job<std::vector<Outcome<void>>> all(this->executor, run(jobs, this->log));
    ASSERT_TRUE(this->executor.runUntil([this] { return this->log == "v"; }, 20s));
    all.cancel();

    this->settle();
    const std::vector<Outcome<void>> outcomes = all.result();
    ASSERT_EQ(outcomes.size(), 4U);
    EXPECT_TRUE(outcomes[0].exception());
    EXPECT_TRUE(outcomes[1].isCancelled());
    EXPECT_TRUE(outcomes[2].hasValue());
    EXPECT_TRUE(outcomes[3].hasValue());
    EXPECT_EQ(this->log, "vccr");
}

TYPED_TEST_P(Runtime, ReportsExceptionsThatNobodyTook) {
    auto& executor = this->executor;
    {
        const Job<> unobserved(executor, failAfter(0s));
        const Job<> cancelled(executor, forever(this->living));
        Job<> taken(executor, failAfter(0s));
        executor.postAfter(1ms, [&] { executor.post([] {}); });
        ASSERT_TRUE(executor.runUntil([&] { return taken.done(); }, 1s));
        EXPECT_THROW(taken.result(), std::runtime_error);
        EXPECT_EQ(this->unobserved, 0);
    }
    this->expectedUnobserved = 1;
}

TYPED_TEST_P(Runtime, AwaitsACompletionOnce) {
    auto [executor, log] = std::tie(this->executor, this->log);
    Completion<int> completion(executor);
    Job<int> first(executor, waitFor(completion)), second(executor, waitFor(completion));
    std::thread([setter = completion.setter(), work = executor.outsideWork()] {
        setter.set(7);
        setter.set(8);
    }).join();
    this->settle();
    EXPECT_EQ(first.result(), 7);
    EXPECT_THROW(second.result(), std::logic_error);
    Job<int> late(executor, waitFor(completion));
    this->settle();
    EXPECT_THROW(late.result(), std::logic_error);
}

TYPED_TEST_P(Runtime, FailsTheWaiterOfALostCompletion) {
    Completion<int> completion(this->executor);
    std::optional setter = completion.setter();
    Job<int> waiter(this->executor, waitFor(completion));
    this->executor.postAfter(1ms, [&, copy = completion.setter()] { setter.reset(); });
    ASSERT_TRUE(this->executor.runUntil([&] { return !setter.has_value(); }, 1s));
    EXPECT_FALSE(this->executor.idle());  // a suspended wait is something to wait for
    this->settle();
    EXPECT_THROW(waiter.result(), CompletionLost);
}

TYPED_TEST_P(Runtime, LetsAValueThatArrivedWinOverStopAndDeadline) {
    auto& executor = this->executor;
    for (const bool stopFirst : {false, true}) {
        Completion<int> completion(executor);
        Job<int> waiter(executor, waitFor(completion));
        executor.postAfter(1ms, [&, setter = completion.setter()] {
            if (stopFirst) waiter.cancel();
            setter.set(5);
            if (!stopFirst) waiter.cancel();
        });
        this->settle();
        EXPECT_EQ(waiter.result(), 5) << stopFirst;
    }
    Job<int> byDeadline(executor, []() -> Task<int> {
        const Context here = co_await context();
        Completion<int> completion(*here.executor);
        const auto setter = completion.setter();
        const std::optional<int> early = co_await completion.until(here.now() + 1ms);
        here.executor->postAfter(1ms, [setter] { setter.set(3); });
        co_return early.has_value() ? -1 : *co_await completion.until(here.now() + 10s);
    }());
    this->settle();
    EXPECT_EQ(byDeadline.result(), 3);
}

TYPED_TEST_P(Runtime, GivesOutsideWorkItsRealTime) {
    Completion<int> completion(this->executor);
    Job<std::optional<int>> job(this->executor, [](Completion<int> awaited) -> Task<std::optional<int>> {
        co_return co_await awaited.until((co_await context()).now() + 20s);
    }(completion));
    std::thread thread([setter = completion.setter(), work = this->executor.outsideWork()] {
        std::this_thread::sleep_for(20ms);  // the work itself: a virtual clock must not run away meanwhile
        setter.set(1);
    });
    this->settle();
    thread.join();
    EXPECT_EQ(job.result(), 1);

    std::optional work(this->executor.outsideWork());  // ends without posting anything
    std::thread last([&] { work.reset(); });
    this->settle();
    last.join();
}

TYPED_TEST_P(Runtime, ShutsDownByCancellingAndDraining) {
    auto [executor, log] = std::tie(this->executor, this->log);
    Job<> job(executor, untilStopped(log));
    Job<> cleaning(executor, [](std::string& marks) -> Task<> {
        co_await shielded([](std::string& inner) -> Task<> {
            while (inner.empty()) co_await sleepFor(1ms);  // until the other one was cancelled
            inner += 's';
        }(marks));
    }(log));
    Completion<int> never(executor);
    Job<int> waiting(executor, waitFor(never));
    EXPECT_FALSE(executor.runUntil([&] { return executor.idle(); }, 1ms));
    EXPECT_TRUE(executor.shutDown(10s));
    EXPECT_EQ(log, "cs");
    EXPECT_TRUE(waiting.outcome().isCancelled());
    Job<> late(executor, note(log, 0s, 'x'));
    this->settle();
    EXPECT_TRUE(late.outcome().isCancelled());
}

/// A random tree of tasks, jobs, shields and completions. Each statement calls `step`, which may pull the
/// ground away.
struct RandomTree {
    std::mt19937 random;
    int& living;
    std::function<void()> step;

    static Task<int> node(RandomTree& tree, int depth) {
        const Tracked tracked(tree.living);
        const Context here = co_await context();
        int total = 1;
        for (unsigned statement = tree.random() % 3 + (depth == 0); statement > 0; --statement) {
            tree.step();
            if (depth == 4)
                co_await sleepFor(std::chrono::microseconds(tree.random() % 2));
            else
                total += co_await branch(tree, here, depth + 1);
        }
        co_return total;
    }
    static Task<int> branch(RandomTree& tree, Context here, int depth) {
        const Tracked tracked(tree.living);
        switch (tree.random() % 5) {
            case 0:
                co_return co_await node(tree, depth);
            case 1:
                co_return co_await spawn(here, node(tree, depth));
            case 2:
                co_return co_await shielded(node(tree, depth));
            case 3:
                co_return co_await completed(tree, here);
            default:
                break;
        }
        std::vector<Job<int>> jobs;
        for (unsigned count = tree.random() % 3; count > 0; --count)
            jobs.push_back(spawn(here, node(tree, depth)));
        co_await joinAll(jobs);
        co_return 0;
    }
    static Task<int> completed(RandomTree& tree, Context here) {
        Completion<int> completion(*here.executor);
        here.executor->post([setter = completion.setter()] { setter.set(1); });
        tree.step();
        co_return co_await completion;
    }
};

TYPED_TEST_P(Runtime, SurvivesDestructionAtEverySuspensionPointOfARandomTree) {
    enum class Blow { destroyBetweenTurns, cancelBetweenTurns, dropInside };
    for (unsigned seed = 1; seed <= 12; ++seed) {
        for (const Blow blow : {Blow::destroyBetweenTurns, Blow::cancelBetweenTurns, Blow::dropInside}) {
            SCOPED_TRACE(testing::Message() << "seed " << seed << ", blow " << static_cast<int>(blow));
            bool ranToItsEnd = false;
            for (int point = 0; !ranToItsEnd && point < 60; ++point) {
                int turns = 0, steps = 0;
                std::optional<Job<int>> job;
                RandomTree tree{std::mt19937(seed), this->living, [&] {
                                    if (blow == Blow::dropInside && steps++ == point) job.reset();
                                }};
                job.emplace(this->executor, RandomTree::node(tree, 0));
                ASSERT_TRUE(
                    this->executor.runUntil([&] { return !job || job->done() || turns++ == point; }, 20s));
                ranToItsEnd = job && job->done();
                if (blow == Blow::destroyBetweenTurns) job.reset();
                if (blow == Blow::cancelBetweenTurns) job->cancel();
                ASSERT_TRUE(blow != Blow::destroyBetweenTurns || this->living == 0);
                this->settle();
                ASSERT_EQ(this->living, 0);
            }
        }
    }
}

REGISTER_TYPED_TEST_SUITE_P(
    Runtime, KeepsOneOrderOfPostsTimersAndSleeps, LetsNeitherPostsNorZeroSleepsStarveTheOther,
    RunsNoTimerThatWasCancelled, TakesPostsFromThreadsInTheirOrder, CarriesValuesAndExceptionsUpTheTree,
    CancelsTheWholeTreeButNotWhatIsShielded, RunsNoStatementOfAJobCancelledBeforeItsStart,
    FreesAJobThatIsDroppedInsideItsOwnTreeAfterItsLastStep, TellsTheWaiterOfADestroyedJob,
    LetsTheCallbackDieWithItsJob, JoinsAllWhateverHappensToAnyOfThem, ReportsExceptionsThatNobodyTook,
    AwaitsACompletionOnce, FailsTheWaiterOfALostCompletion, LetsAValueThatArrivedWinOverStopAndDeadline,
    GivesOutsideWorkItsRealTime, ShutsDownByCancellingAndDraining,
    SurvivesDestructionAtEverySuspensionPointOfARandomTree);

}  // namespace quillo
