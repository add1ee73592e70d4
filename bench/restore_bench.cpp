// The engine's own cost of a restore: 20 applications with 100 windows, scattered and brought back on the
// simulated desktop, whose waits cost no time. What remains is the work between them.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <chrono>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/restore/Restore.hpp"
#include "WindowEngine/restore/RestorePreview.hpp"
#include "platform/simulated/SimulatedDesktop.hpp"
#include "settings/RunSelection.hpp"

namespace quillo {
namespace {

constexpr std::int64_t windowsPerApplication = 5;

std::string sceneOf(std::int64_t applications) {
    simulated::Scene scene;
    scene.displays.push_back({.id = "main",
                              .frame = {0, 0, 2560, 1440},
                              .visibleFrame = {0, 25, 2560, 1415},
                              .scale = 1,
                              .desktops = 1,
                              .shownDesktop = 0});
    for (std::int64_t i = 0; i < applications; ++i) {
        auto& application = scene.applications.emplace_back();
        application.identifier = application.name = fmt::format("org.example.{}", i);
        application.launchSeconds = 0.5 + 0.3 * static_cast<double>(i);
        for (std::int64_t j = 0; j < windowsPerApplication; ++j) {
            auto& window = application.windows.emplace_back();
            window.title = fmt::format("Window {} of {}", j, i);
            window.frame = {40 * static_cast<double>(j), 30 * static_cast<double>(i) + 30, 800, 600};
        }
    }
    return simulated::writeScene(scene);
}

template <class T>
T run(SimulatedDesktop& desktop, Task<T> task) {
    Job<T> job(desktop.executor(), std::move(task));
    desktop.executor().runUntil([&] { return job.done(); }, std::chrono::hours(1));
    return job.result();
}

/// A desktop that was saved and whose windows were moved since.
class Scattered {
  public:
    explicit Scattered(std::int64_t applications)
        : desktop_(SimulatedDesktop::create(sceneOf(applications), "scene").value()) {
        workspace_.snapshot = run(*desktop_, Capture::snapshot(access_, {}));
        for (const auto& application : workspace_.snapshot.applications) {
            for (simulated::Window* window : desktop_->world().windowsOf(application.bundleIdentifier))
                desktop_->world().move(*window, {1000, 700, 640, 480});
        }
    }

    WorkspaceSnapshot capture() { return run(*desktop_, Capture::snapshot(access_, {})); }
    RestoreReport restore() { return run(*desktop_, Restore::run(access_, workspace_, {}, {})); }
    /// Of all but the first application.
    RestorePreview preview() {
        RunSelection selection;
        const auto& saved = workspace_.snapshot.applications;
        selection.excluded.apps.insert(saved.front().bundleIdentifier);
        Restore::Options options;
        WorkspaceSnapshot part = workspace_.snapshot;
        selection.apply(part, options);
        return run(*desktop_, Restore::preview(access_, std::move(part), options));
    }
    void endAll() {
        for (auto& application : desktop_->world().applications()) desktop_->world().end(application);
    }
    /// Leaves the last application of the workspace, which is the slowest to launch.
    void keepSlowest() {
        auto& saved = workspace_.snapshot.applications;
        const std::string slowest = desktop_->world().applications().back().scene.identifier;
        std::erase_if(saved, [&](const auto& one) { return one.bundleIdentifier != slowest; });
    }

  private:
    std::unique_ptr<SimulatedDesktop> desktop_;
    WindowHandleCache handles_;
    DesktopAccess access_{desktop_->platform(), handles_};
    Workspace workspace_;
};

void restoring(benchmark::State& state) {
    const std::int64_t applications = state.range(0);
    for (auto _ : state) {
        state.PauseTiming();
        auto scattered = std::make_unique<Scattered>(applications);
        state.ResumeTiming();
        const RestoreReport report = scattered->restore();
        if (report.totals().restored != applications * windowsPerApplication)
            state.SkipWithError("not every window came back");
        state.PauseTiming();
        scattered.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(restoring)->Arg(1)->Arg(5)->Arg(20)->Unit(benchmark::kMillisecond);

/// What a preview shows of it: the plan, and what is left alone of it at the person's wish.
void previewing(benchmark::State& state) {
    Scattered scattered(state.range(0));
    for (auto _ : state) {
        const RestorePreview plan = scattered.preview();
        if (Restore::totalsOf(plan).changed != (state.range(0) - 1) * windowsPerApplication)
            state.SkipWithError("not every window is planned");
    }
}
BENCHMARK(previewing)->Arg(21)->Unit(benchmark::kMillisecond);

/// Virtual time of a restore in which every application must be launched, against that of the slowest one
/// alone: nobody waits for another.
void sideBySide(benchmark::State& state) {
    double together = 0, alone = 0;
    for (auto _ : state) {
        Scattered all(20), one(20);
        all.endAll();
        one.endAll();
        one.keepSlowest();
        together = all.restore().duration;
        alone = one.restore().duration;
    }
    state.counters["seconds"] = together;
    state.counters["of_slowest"] = together / alone;
}
BENCHMARK(sideBySide)->Unit(benchmark::kMillisecond);

void capturing(benchmark::State& state) {
    Scattered scattered(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(scattered.capture());
}
BENCHMARK(capturing)->Arg(5)->Arg(40)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace quillo
