// Pairing, folding and comparing sessions at sizes far beyond a person's desktop: pairing 300 saved with 300
// live windows stays under 50 ms, folding 2,000 windows of one application is linear and stays under 10 ms,
// the signature of a session of 300 windows stays under 5 ms, and both browsers' files of 50 windows with
// 1,000 tabs are read within 30 ms.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include "WindowEngine/integrations/ChromiumSessionLog.hpp"
#include "WindowEngine/integrations/FirefoxSession.hpp"
#include "WindowEngine/library/SessionHistory.hpp"
#include "WindowEngine/records/NativeTabs.hpp"
#include "WindowEngine/restore/WindowMatcher.hpp"
#include "tests/WindowEngine/SessionFileSamples.hpp"

namespace quillo {
namespace {

std::string titleOf(std::int64_t i) {
    return fmt::format("Quarterly report, part {} of the long series — Edited", i);
}

Url documentOf(std::int64_t i) {
    return Url::file(fmt::format("/home/person/Documents/reports/part {}.txt", i));
}

Rect frameOf(std::int64_t i) {
    return {static_cast<double>(i % 7) * 10, static_cast<double>(i % 11) * 10, 800, 600};
}

/// Titles that nearly agree, a few tabs in every fourth window, every third with a document.
void pairing(benchmark::State& state) {
    std::vector<WindowSnapshot> saved;
    std::vector<LiveWindowInfo> live;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        WindowSnapshot& window = saved.emplace_back();
        window.title = titleOf(i);
        window.frame = frameOf(i);
        window.index = i;
        if (i % 3 == 0) window.documentURL = documentOf(i);
        if (i % 4 == 0) window.tabs = {{{titleOf(i), {}}, {titleOf(i + 1000), documentOf(i)}, {}}};

        const std::int64_t j = state.range(0) - 1 - i;
        LiveWindowInfo& other = live.emplace_back();
        other.title = titleOf(j);
        other.frame = frameOf(j + 1);
        other.index = i;
        if (j % 3 == 0) other.documentURL = documentOf(j);
    }
    for (auto _ : state) benchmark::DoNotOptimize(WindowMatcher::match(saved, live));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(pairing)->Arg(75)->Arg(150)->Arg(300)->Complexity()->Unit(benchmark::kMillisecond);
BENCHMARK(pairing)->Arg(10'000)->Unit(benchmark::kMillisecond);  // not compared one by one

/// `stackHeight` windows in each place.
void folding(benchmark::State& state) {
    const std::int64_t stackHeight = state.range(1);
    std::vector<WindowSnapshot> windows;
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        WindowSnapshot& window = windows.emplace_back();
        window.title = titleOf(i);
        const std::int64_t place = i / stackHeight;
        window.frame = {static_cast<double>(place), 0, 800, 600};
        window.displayID = "display";
        window.subrole = "AXStandardWindow";
        if (i % stackHeight == 0) window.desktop = DesktopSnapshot{"display", 0, "desktop"};
    }
    for (auto _ : state) benchmark::DoNotOptimize(NativeTabs::collapse(windows, "com.apple.Terminal"));
    state.SetComplexityN(state.range(0));
}
BENCHMARK(folding)
    ->ArgsProduct({{500, 1000, 2000, 4000}, {1, 5, 500}})
    ->ArgNames({"windows", "stack"})
    ->Unit(benchmark::kMillisecond);

/// Ten windows an application, each with four addresses, listed backwards.
WorkspaceSnapshot session(std::int64_t windows) {
    WorkspaceSnapshot snapshot;
    for (std::int64_t i = windows; i > 0; --i) {
        if (i % 10 == 0) {
            snapshot.applications.push_back({fmt::format("org.example.{:03}", i), "Browser", {}, {}, {}});
            snapshot.applications.back().context = AppContext{"chromium", {}};
        }
        ApplicationSnapshot& application = snapshot.applications.back();
        WindowSnapshot& window = application.windows.emplace_back();
        window.title = titleOf(i);
        window.documentURL = documentOf(i);
        window.subrole = "AXStandardWindow";
        window.frame = frameOf(i);
        window.displayID = "37D8832A-2D66-02CA-B9F7-8F30A301B230";
        window.desktop = DesktopSnapshot{*window.displayID, i % 4, "desktop"};
        application.context->windows.push_back({i, std::vector<Url>(4, documentOf(i)), 4711});
    }
    return snapshot;
}

void signature(benchmark::State& state) {
    const WorkspaceSnapshot snapshot = session(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(SessionHistory::signature(snapshot));
}
BENCHMARK(signature)->Arg(300)->Unit(benchmark::kMillisecond);

/// What both browsers keep of so many windows, with twenty tabs each, that were visited one after the other.
void sessionFiles(benchmark::State& state) {
    using namespace samples::sessions;
    std::string records, json = R"({"windows":[)";
    for (int number = 1; number <= state.range(0); ++number) {
        records += window(number);
        json += number > 1 ? R"(,{"tabs":[)" : R"({"tabs":[)";
        for (int place = 0; place < 20; ++place) {
            const std::string address = documentOf(number * 20 + place).string();
            records += tab(number, 1000 + number * 20 + place, place, address, place);
            json += fmt::format(R"({}{{"index":1,"entries":[{{"url":"{}","title":"{}"}}]}})",
                                place > 0 ? "," : "", address, titleOf(place));
        }
        json += "]}";
    }
    const std::string chromium = log(records), firefox = packed(json + "]}");
    std::size_t windows = 0;
    for (auto _ : state) {
        windows = ChromiumSessionLog::read(chromium, {}).value().windows.size() +
                  FirefoxSession::read(firefox).value().windows.size();
    }
    if (windows != 2 * static_cast<std::size_t>(state.range(0))) state.SkipWithError("windows are missing");
    state.counters["kilobytes"] = static_cast<double>((chromium.size() + firefox.size()) / 1024);
}
BENCHMARK(sessionFiles)->Arg(50)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillo
