#include "WindowEngine/Restore.hpp"

#include <algorithm>
#include <chrono>
#include <utility>
#include <vector>

#include "WindowEngine/DesktopCreation.hpp"
#include "WindowEngine/Displays.hpp"
#include "WindowEngine/Log.hpp"
#include "WindowEngine/SafariPrivacy.hpp"
#include "WindowEngine/WindowPlacement.hpp"
#include "WindowEngine/WindowPresence.hpp"

namespace quillo::Restore {
namespace {

using namespace std::chrono_literals;

Duration toDuration(double seconds) {
    return std::chrono::duration_cast<Duration>(std::chrono::duration<double>(seconds));
}

/// What all tasks of one run share; it outlives them, since the run joins them before it ends.
struct Run {
    DesktopAccess& desktop;
    const Workspace& workspace;
    const Options& options;
    const ItemSink& sink;
    TimePoint started;
    WindowPresence presence{desktop};
    std::vector<DisplaySnapshot> displays{};
    DesktopPreparation desktops{};

    TimePoint now() const { return desktop.platform.executor.now(); }
    double secondsSinceStart() const { return std::chrono::duration<double>(now() - started).count(); }
};

/// The saved location is used only when what stands there is that application; a workspace file may come
/// from somebody else.
std::optional<Url> locationOf(Run& run, const ApplicationSnapshot& application) {
    Applications& applications = run.desktop.platform.applications;
    if (application.applicationURL &&
        applications.identifierAt(*application.applicationURL) == application.bundleIdentifier)
        return application.applicationURL;
    return applications.location(application.bundleIdentifier);
}

Task<bool> launch(Run& run, const ApplicationSnapshot& application) {
    const std::optional<Url> location = locationOf(run, application);
    if (!location) {
        run.sink.add(application, RestoreReport::skipped{"not installed"});
        co_return false;
    }
    const auto launched = co_await run.desktop.platform.applications.launch(*location, {});
    if (!launched) {
        run.sink.add(application, RestoreReport::failed{"couldn't launch: " + launched.error().text});
        co_return false;
    }
    run.sink.add(application, RestoreReport::launched{});
    co_return true;
}

/// Also of one that hangs: the window server knows its windows.
bool hasWindows(Run& run, const RunningApplication& application) {
    return !Accessibility::windows(run.desktop, application.pid, false).empty() ||
           !Accessibility::hiddenWindows(run.desktop, application.pid, {}).empty();
}

Task<void> requestWindow(Run& run, const ApplicationSnapshot& application) {
    Log::requestedWindow(run.desktop.platform.log, application.bundleIdentifier);
    const auto requested =
        co_await run.desktop.platform.applications.requestWindow(application.bundleIdentifier);
    if (!requested)
        run.sink.add(application,
                     RestoreReport::failed{"couldn't reopen a window: " + requested.error().text});
}

/// Launches the application or takes the running one; false when there is none to go on with.
Task<bool> start(Run& run, const ApplicationSnapshot& application) {
    const auto running = run.desktop.platform.applications.running(application.bundleIdentifier);
    if (!running) co_return co_await launch(run, application);
    if (!hasWindows(run, *running)) co_await requestWindow(run, application);
    co_return true;
}

std::vector<LiveWindow> liveWindows(Run& run, const ApplicationSnapshot& application) {
    const auto running = run.desktop.platform.applications.running(application.bundleIdentifier);
    if (!running) return {};
    auto windows = Accessibility::windows(run.desktop, running->pid, true);
    // A private window is neither moved nor reported.
    SafariPrivacy::removeUnverified(run.desktop, application.bundleIdentifier, running->pid, windows);
    return windows;
}

Task<void> restoreApplication(Run& run, const ApplicationSnapshot& application) {
    if (!co_await start(run, application)) co_return;
    Log::ready(run.desktop.platform.log, application.bundleIdentifier, run.secondsSinceStart());
    // Context and documents are reopened here.
    if (application.windows.empty()) co_return;  // nothing to wait for
    co_await run.presence.wait(application.bundleIdentifier,
                               {toDuration(run.options.launchTimeout), toDuration(run.options.settleDelay)});
    co_await placeWindows(run.desktop, application, liveWindows(run, application),
                          {run.workspace.snapshot.displays, run.displays, run.desktops.targets}, run.sink);
}

std::string description(const std::exception_ptr& exception) {
    try {
        std::rethrow_exception(exception);
    } catch (const std::exception& known) {
        return known.what();
    } catch (...) {
        return "unknown error";
    }
}

void stoppedUnexpectedly(const Run& run, const std::exception_ptr& exception) {
    run.sink.add(RestoreReport::failed{"Restore stopped unexpectedly: " + description(exception)});
}

Task<void> restoreApplications(Run& run) {
    const Context context = co_await quillo::context();
    std::vector<Job<void>> jobs;
    for (const ApplicationSnapshot& application : run.workspace.snapshot.applications)
        jobs.push_back(spawn(context, restoreApplication(run, application)));
    for (const auto& outcome : co_await joinAll(jobs)) {
        if (const auto exception = outcome.exception()) stoppedUnexpectedly(run, exception);
    }
    co_await checkpoint();
}

Task<void> prepareDesktops(Run& run) {
    const WorkspaceSnapshot& saved = run.workspace.snapshot;
    if (!saved.desktops) co_return;
    run.desktops =
        co_await DesktopSpaces::prepare(run.desktop, *saved.desktops, saved.displays, run.displays);
    if (run.desktops.created > 0) run.sink.add(RestoreReport::createdDesktops{run.desktops.created});
    for (const std::string& failure : run.desktops.failures) run.sink.add(RestoreReport::failed{failure});
    // Creating them took seconds.
    run.displays = Displays::current(run.desktop.platform.screens);
}

Task<void> restoreWorkspace(Run& run) {
    if (!run.desktop.platform.accessibility.trusted()) {
        run.sink.add(RestoreReport::failed{"Accessibility permission not granted"});
        co_return;
    }
    run.displays = Displays::current(run.desktop.platform.screens);
    co_await prepareDesktops(run);
    // The clean slate is made here, before any application is launched.
    co_await restoreApplications(run);
}

}  // namespace

Task<RestoreReport> run(DesktopAccess& desktop, Workspace workspace, Options options, OnItem onItem) {
    desktop.handles.unresponsive.clear();
    RestoreReport report;
    const ItemSink sink(report, std::move(onItem));
    Run run{desktop, workspace, options, sink, desktop.platform.executor.now()};
    try {
        co_await restoreWorkspace(run);
    } catch (const Cancelled&) {
        report.cancelled = true;
    } catch (...) {
        stoppedUnexpectedly(run, std::current_exception());
    }
    report.duration = run.secondsSinceStart();
    Log::restoreFinished(desktop.platform.log, report.items.size(), report.duration);
    co_return report;
}

}  // namespace quillo::Restore
