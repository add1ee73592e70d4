// What a person waits for in the library: each keystroke in its search field, and its reload.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/library/WorkspaceStore.hpp"
#include "app/LibraryState.hpp"
#include "app/Switcher.hpp"
#include "app/map/DesktopMapLayout.hpp"
#include "bench/SampleLibrary.hpp"
#include "platform/posix/PosixFileSystem.hpp"

namespace quillo {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

std::vector<Workspace> manyWorkspaces(int count) {
    const char* const applications[] = {"Files",  "Safari",   "Éditeur de texte", "Terminal", "Xcode",
                                        "メール", "Kalender", "Straßenkarte",     "Notes",    "Préférences",
                                        "Music"};
    std::vector<Workspace> list;
    for (int i = 0; i < count; ++i) {
        Workspace workspace = bench::sampleWorkspace(i);
        workspace.name = (i % 3 ? "Work on chapter " : "Büro, Ärger und ") + std::to_string(i * 7919 % count);
        workspace.updatedAt = Instant{std::chrono::seconds{i * 104729LL % 1000003}};
        workspace.snapshot.applications.resize(10);
        for (std::size_t app = 0; app < 10; ++app) {
            workspace.snapshot.applications[app].name =
                applications[(static_cast<std::size_t>(i) + app) % std::size(applications)];
            workspace.snapshot.applications[app].windows.clear();
        }
        list.push_back(std::move(workspace));
    }
    return list;
}

// One keystroke an iteration; `worst` is the slowest of the queries, in milliseconds, each at its best.
void keystroke(benchmark::State& state) {
    const std::vector<Workspace> list = manyWorkspaces(5000);
    const LibraryIndex index([&]() -> const std::vector<Workspace>& { return list; });
    LibraryState library(index);
    library.setOrder(WorkspaceOrder::name);
    Switcher switcher(index, {[](const Workspace&) {}, [] {}, [] {}, [] {}});
    const std::string_view queries[] = {
        "s",  "sa", "saf", "safari", "x",    "",        "e",
        "é",  "ü",  "zzz", "stras",  "work", "work on", "work on chapter 4999",
        "メ", "1",  "12"};
    std::vector<double> best(std::size(queries), 1e9);
    std::size_t next = 0;
    for (auto _ : state) {
        const auto start = std::chrono::steady_clock::now();
        library.setQuery(std::string(queries[next]));
        switcher.setQuery(std::string(queries[next]));
        best[next] = std::min(best[next], Milliseconds(std::chrono::steady_clock::now() - start).count());
        next = (next + 1) % std::size(queries);
    }
    if (library.rows().size() != switcher.matches().size()) state.SkipWithError("two answers to one query");
    state.counters["worst"] = *std::ranges::max_element(best);
}
BENCHMARK(keystroke)->MinTime(0.5)->Unit(benchmark::kMillisecond);

void reload(benchmark::State& state) {
    const auto count = static_cast<std::size_t>(state.range(0));
    const bench::SampleLibrary files(static_cast<int>(count));
    PosixFileSystem fileSystem;
    const WorkspaceStore store(fileSystem, files.directory());
    std::vector<Workspace> list;
    LibraryIndex index([&]() -> const std::vector<Workspace>& { return list; });
    const LibraryState library(index);
    for (auto _ : state) {
        list = store.scan().workspaces;
        index.reload();
    }
    if (library.rows().size() != count) state.SkipWithError("not every workspace was read");
}
BENCHMARK(reload)->Arg(500)->UseRealTime()->Unit(benchmark::kMillisecond);

// The map of one display: a person's windows, and as many as a stranger's file may hold.
void desktopMap(benchmark::State& state) {
    WorkspaceSnapshot snapshot = bench::sampleWorkspace(0).snapshot;
    for (ApplicationSnapshot& application : snapshot.applications) application.windows.clear();
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        auto& windows = snapshot.applications[static_cast<std::size_t>(i) % 8].windows;
        WindowSnapshot& window = windows.emplace_back(bench::sampleWindow(static_cast<int>(windows.size())));
        window.desktop.reset();
        window.frame = {static_cast<double>(i * 7919 % 1300), static_cast<double>(i * 104729 % 800),
                        static_cast<double>(40 + i * 31 % 700), static_cast<double>(40 + i * 17 % 500)};
    }
    const MapRequest request{
        .style = MapStyle::detail,
        .width = 900,
        .height = 420,
        .measure = [](std::string_view text, MapText) { return 7.0 * static_cast<double>(text.size()); }};
    for (auto _ : state) benchmark::DoNotOptimize(layoutDesktopMap(snapshot, request));
}
BENCHMARK(desktopMap)->Arg(60)->Arg(10'000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillo
