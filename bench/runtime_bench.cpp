// What a turn, a wait and a job cost on the virtual and on the plain loop.
#include <benchmark/benchmark.h>

#include "WindowEngine/support/Loops.hpp"
#include "WindowEngine/support/Task.hpp"

namespace quillo {
namespace {

constexpr int repetitions = 1000;

template <class LoopUnderTest>
void settle(LoopUnderTest& loop) {
    loop.runUntil([&] { return loop.idle(); }, std::chrono::hours{1});
}

template <class LoopUnderTest>
void post(benchmark::State& state) {
    LoopUnderTest loop;
    int ran = 0;
    for (auto _ : state) {
        for (int i = 0; i < repetitions; ++i) loop.post([&ran] { ++ran; });
        settle(loop);
    }
    benchmark::DoNotOptimize(ran);
    state.SetItemsProcessed(state.iterations() * repetitions);
}
BENCHMARK(post<VirtualExecutor>);
BENCHMARK(post<LoopExecutor>);

Task<> sleepOften(Duration duration) {
    for (int i = 0; i < repetitions; ++i) co_await sleepFor(duration);
}

template <class LoopUnderTest>
void sleep(benchmark::State& state) {
    LoopUnderTest loop;
    for (auto _ : state) {
        const Job<> job(loop, sleepOften(std::chrono::nanoseconds{state.range(0)}));
        settle(loop);
    }
    state.SetItemsProcessed(state.iterations() * repetitions);
}
BENCHMARK(sleep<VirtualExecutor>)->Arg(0)->Arg(1);
BENCHMARK(sleep<LoopExecutor>)->Arg(0);

Task<int> one() {
    co_return 1;
}

Task<int> spawnAndJoin() {
    const Context here = co_await context();
    int sum = 0;
    for (int i = 0; i < repetitions; ++i) sum += co_await spawn(here, one());
    co_return sum;
}

template <class LoopUnderTest>
void spawnThenJoin(benchmark::State& state) {
    LoopUnderTest loop;
    for (auto _ : state) {
        Job<int> job(loop, spawnAndJoin());
        settle(loop);
        if (job.result() != repetitions) state.SkipWithError("a job was lost");
    }
    state.SetItemsProcessed(state.iterations() * repetitions);
}
BENCHMARK(spawnThenJoin<VirtualExecutor>);
BENCHMARK(spawnThenJoin<LoopExecutor>);

Task<int> awaitOften() {
    int sum = 0;
    for (int i = 0; i < repetitions; ++i) sum += co_await one();
    co_return sum;
}

void awaitTask(benchmark::State& state) {
    VirtualExecutor loop;
    for (auto _ : state) {
        Job<int> job(loop, awaitOften());
        settle(loop);
        if (job.result() != repetitions) state.SkipWithError("a task was lost");
    }
    state.SetItemsProcessed(state.iterations() * repetitions);
}
BENCHMARK(awaitTask);

}  // namespace
}  // namespace quillo
