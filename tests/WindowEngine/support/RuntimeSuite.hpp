// What every loop must hold, written once and instantiated with each of them. After each test the loop is
// idle: that finds leaked timers and forgotten jobs.
#pragma once
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <thread>
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
inline Task<> failAfter(Duration duration) {
    co_await sleepFor(duration);
    throw std::runtime_error("broken");
}
inline Task<> note(std::string& log, Duration duration, char mark) {
    co_await sleepFor(duration);
    log += mark;
}
/// Notes that it was cancelled, and then a rollback that takes its time.
inline Task<> untilStopped(std::string& log) {
    try {
        co_await sleepFor(24h);
    } catch (const Cancelled&) {
        log += 'c';
    }
    co_await shielded(note(log, 1ms, 'r'));
}
inline Task<int> waitFor(Completion<int> completion) {
    co_return co_await completion;
}
inline Task<> join(Job<int>& job, std::string& log) {
    try {
        co_await job;
        log += 'v';
    } catch (const Cancelled&) {
        log += 'c';
    }
}

template <class T>
std::unique_ptr<Loop> make() {
    return std::make_unique<T>();
}

class Runtime : public testing::TestWithParam<std::unique_ptr<Loop> (*)()> {
  protected:
    Runtime() {
        executor.onUnobservedException([this](const std::exception_ptr&) { ++unobserved; });
    }
    void settle() {
        ASSERT_TRUE(executor.runUntil([this] { return executor.idle(); }, 20s));
    }
    void TearDown() override {
        settle();
        EXPECT_EQ(living, 0);
        EXPECT_EQ(unobserved, expectedUnobserved);
    }

    int living = 0, unobserved = 0, expectedUnobserved = 0;
    std::string log;
    const std::unique_ptr<Loop> loop = GetParam()();
    Loop& executor = *loop;
};

TEST_P(Runtime, KeepsOneOrderOfPostsTimersAndSleeps) {
    executor.post([&] { log += 'a'; });
    executor.postAfter(0s, [&] { log += 'b'; });
    const Job<> job(executor, note(log, 0s, 'd'));
    executor.post([&] { log += 'c'; });
    settle();
    const TimePoint start = executor.now();
    executor.postAfter(2ms, [&] { log += 'f'; });
    executor.postAfter(1ms, [&] { log += 'e'; });
    settle();
    EXPECT_EQ(log, "abcdef");
    EXPECT_GE(executor.now() - start, 2ms);
}

TEST_P(Runtime, LetsNeitherPostsNorZeroSleepsStarveTheOther) {
    int slept = 0;
    const auto sleep = [](int& count, bool counts) -> Task<> {
        for (; count < 5; count += counts) co_await sleepFor(0s);
    };
    const Job<> sleeper(executor, sleep(slept, false)), counter(executor, sleep(slept, true));
    std::function<void()> repost = [&] {
        if (slept < 5) executor.post([&] { repost(); });
    };
    repost();
    settle();
    EXPECT_EQ(slept, 5);
}

TEST_P(Runtime, RunsNoTimerThatWasCancelled) {
    const auto tracked = std::make_shared<int>();
    TimerId second, own;
    own = executor.postAfter(1ms, [&] {
        log += 'a';
        executor.cancel(second);  // due by now, perhaps already in the ready queue
        executor.cancel(own);
    });
    second = executor.postAfter(1ms, [&, tracked] { log += 'b'; });
    executor.cancel(executor.postAfter(24h, [tracked] {}));
    settle();
    EXPECT_EQ(log, "a");
    EXPECT_EQ(tracked.use_count(), 1);
}

TEST_P(Runtime, TakesPostsFromThreadsInTheirOrder) {
    std::array<int, 3> next{};
    bool inOrder = true;
    std::vector<std::jthread> threads;
    for (int& mine : next)
        threads.emplace_back([this, &mine, &inOrder, work = executor.outsideWork()] {
            for (int i = 0; i < 500; ++i) executor.post([&mine, &inOrder, i] { inOrder &= mine++ == i; });
        });
    EXPECT_TRUE(executor.runUntil([&] { return next == std::array{500, 500, 500}; }, 20s));
    EXPECT_TRUE(inOrder);
}

TEST_P(Runtime, CarriesValuesAndExceptionsUpTheTree) {
    Job<int> sum(executor, []() -> Task<int> {
        Job<int> child = spawn(co_await context(), sleepThenGive(1ms, 10));
        int total = 0;
        for (int i = 0; i < 10'000; ++i) total += co_await []() -> Task<int> { co_return 1; }();
        try {
            co_await failAfter(0s);
        } catch (const std::runtime_error&) {
            total += 100;
        }
        co_return total + co_await child;
    }());
    settle();
    EXPECT_EQ(sum.result(), 10'110);
    EXPECT_THROW(sum.result(), std::logic_error);
}

TEST_P(Runtime, CancelsTheWholeTreeButNotWhatIsShielded) {
    Job<> job(executor, [](std::string& marks) -> Task<> {
        Job<> child = spawn(co_await context(), untilStopped(marks));
        co_await untilStopped(marks);
        co_await shielded([](std::string& inner) -> Task<> {
            co_await spawn(co_await context(), note(inner, 1ms, 's'));
        }(marks));
        co_await checkpoint();
        marks += '!';
    }(log));
    executor.postAfter(1ms, [&] {
        job.cancel();
        EXPECT_EQ(log, "");  // nothing resumed inline
    });
    settle();
    EXPECT_EQ(log, "ccrrs");
    EXPECT_THROW(job.result(), Cancelled);
    Job<> cancelledBeforeItsStart(executor, untilStopped(log));
    cancelledBeforeItsStart.cancel();
    settle();
    EXPECT_EQ(log, "ccrrs") << "no statement of it ran";
    EXPECT_TRUE(cancelledBeforeItsStart.outcome().isCancelled());
}

TEST_P(Runtime, TellsTheWaiterOfADestroyedJob) {
    for (const bool endsFirst : {false, true}) {
        std::optional<Job<int>> awaited(std::in_place, executor, sleepThenGive(endsFirst ? 0h : 24h, 1));
        const Job<> waiter(executor, join(*awaited, log));
        executor.runUntil([&] { return awaited->done(); }, 1ms);  // then its waiter is about to resume
        awaited.reset();
        settle();
    }
    EXPECT_EQ(log, "cc");
}

TEST_P(Runtime, LetsTheCallbackDieWithItsJob) {
    std::optional<Job<>> dropped(std::in_place, executor, note(log, 0s, 'a'));
    dropped->onDone([&] { log += '!'; });
    ASSERT_TRUE(executor.runUntil([&] { return dropped->done(); }, 1s));
    dropped.reset();
    std::optional<Job<>> dropsItself(std::in_place, executor, note(log, 0s, 'b'));
    dropsItself->onDone([&] {
        dropsItself.reset();
        log += 'c';
    });
    settle();
    EXPECT_EQ(log, "abc");
}

TEST_P(Runtime, JoinsAllWhateverHappensToAnyOfThem) {
    using Outcomes = std::vector<Outcome<void>>;
    Job<Outcomes> all(executor, [](std::string& marks) -> Task<Outcomes> {
        const Context here = co_await context();
        std::vector<Job<>> children;
        children.push_back(spawn(here, failAfter(0s)));
        children.push_back(spawn(here, note(marks, 24h, '!')));
        children.push_back(spawn(here, note(marks, 0s, 'v')));
        children.push_back(spawn(here, untilStopped(marks)));
        co_return co_await joinAll(children);
    }(log));
    ASSERT_TRUE(executor.runUntil([this] { return log == "v"; }, 20s));
    all.cancel();
    settle();
    const Outcomes outcomes = all.result();
    ASSERT_EQ(outcomes.size(), 4U);
    EXPECT_TRUE(outcomes[0].exception());
    EXPECT_TRUE(outcomes[1].isCancelled());
    EXPECT_TRUE(outcomes[2].hasValue());
    EXPECT_TRUE(outcomes[3].hasValue());
    EXPECT_EQ(log, "vcr");
}

TEST_P(Runtime, ReportsExceptionsThatNobodyTook) {
    expectedUnobserved = 1;
    const Job<> untaken(executor, failAfter(0s)), cancelled(executor, note(log, 24h, '!'));
    Job<> taken(executor, failAfter(0s));
    ASSERT_TRUE(executor.runUntil([&] { return taken.done(); }, 1s));
    EXPECT_THROW(taken.result(), std::runtime_error);
    EXPECT_EQ(unobserved, 0);
}

TEST_P(Runtime, AwaitsACompletionOnce) {
    Completion<int> completion(executor);
    Job<int> first(executor, waitFor(completion)), second(executor, waitFor(completion));
    std::thread([setter = completion.setter(), work = executor.outsideWork()] {
        setter.set(7);
        setter.set(8);
    }).join();
    settle();
    Job<int> late(executor, waitFor(completion));
    settle();
    EXPECT_EQ(first.result(), 7);
    EXPECT_THROW(second.result(), std::logic_error);
    EXPECT_THROW(late.result(), std::logic_error);
}

TEST_P(Runtime, FailsTheWaiterOfALostCompletion) {
    Completion<int> completion(executor);
    std::optional setter = completion.setter();
    Job<int> waiter(executor, waitFor(completion));
    executor.postAfter(1ms, [&, copy = completion.setter()] { setter.reset(); });
    ASSERT_TRUE(executor.runUntil([&] { return !setter.has_value(); }, 1s));
    EXPECT_FALSE(executor.idle());  // a suspended wait is something to wait for
    settle();
    EXPECT_THROW(waiter.result(), CompletionLost);
}

TEST_P(Runtime, LetsAValueThatArrivedWinOverStopAndDeadline) {
    for (const bool stopFirst : {false, true}) {
        Completion<int> completion(executor);
        Job<int> waiter(executor, waitFor(completion));
        executor.postAfter(1ms, [&, setter = completion.setter()] {
            if (stopFirst) waiter.cancel();
            setter.set(5);
            if (!stopFirst) waiter.cancel();
        });
        settle();
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
    settle();
    EXPECT_EQ(byDeadline.result(), 3);
}

TEST_P(Runtime, ShutsDownByCancellingAndDraining) {
    Completion<int> never(executor);
    const auto setter = never.setter();
    Job<> stopped(executor, untilStopped(log));
    Job<int> waiting(executor, waitFor(never));
    EXPECT_FALSE(executor.runUntil([&] { return executor.idle(); }, 1ms));
    EXPECT_TRUE(executor.shutDown(10s));
    EXPECT_EQ(log, "cr");
    EXPECT_TRUE(waiting.outcome().isCancelled());
    Job<> late(executor, note(log, 0s, '!'));
    settle();
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
        for (unsigned statement = tree.random() % 3 + (depth == 0); statement > 0; --statement) {
            tree.step();
            if (depth == 4)
                co_await sleepFor(std::chrono::microseconds(tree.random() % 2));
            else
                co_await branch(tree, here, depth + 1);
        }
        co_return 1;
    }
    static Task<> branch(RandomTree& tree, Context here, int depth) {
        const Tracked tracked(tree.living);
        const unsigned kind = tree.random() % 5;
        if (kind == 0) co_await node(tree, depth);
        if (kind == 1) co_await spawn(here, node(tree, depth));
        if (kind == 2) co_await shielded(node(tree, depth));
        if (kind == 3) {
            Completion<int> completion(*here.executor);
            here.executor->post([setter = completion.setter()] { setter.set(1); });
            tree.step();
            co_await completion;
        }
        if (kind == 4) {
            std::vector<Job<int>> jobs;
            for (unsigned count = tree.random() % 3; count > 0; --count)
                jobs.push_back(spawn(here, node(tree, depth)));
            co_await joinAll(jobs);
        }
    }
};

TEST_P(Runtime, SurvivesDestructionAtEverySuspensionPointOfARandomTree) {
    enum Blow { destroyBetweenTurns, cancelBetweenTurns, dropInside };
    for (unsigned trial = 0; trial < 36; ++trial) {
        const auto blow = static_cast<Blow>(trial % 3);
        SCOPED_TRACE(testing::Message() << "seed " << trial / 3 << ", blow " << blow);
        bool ranToItsEnd = false;
        for (int point = 0; !ranToItsEnd && point < 60; ++point) {
            int turns = 0, steps = 0;
            std::optional<Job<int>> job;
            RandomTree tree{std::mt19937(trial / 3), living, [&] {
                                if (blow == dropInside && steps++ == point) job.reset();
                            }};
            job.emplace(executor, RandomTree::node(tree, 0));
            ASSERT_TRUE(executor.runUntil([&] { return !job || job->done() || turns++ == point; }, 20s));
            ranToItsEnd = job && job->done();
            if (blow == destroyBetweenTurns) job.reset();
            if (blow == cancelBetweenTurns) job->cancel();
            ASSERT_TRUE(blow != destroyBetweenTurns || living == 0);
            settle();
            ASSERT_EQ(living, 0);
        }
    }
}

}  // namespace quillo
