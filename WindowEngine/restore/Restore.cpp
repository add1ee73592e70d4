#include "WindowEngine/restore/Restore.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <map>
#include <ranges>
#include <tuple>
#include <utility>
#include <vector>

#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/desktop/Log.hpp"
#include "WindowEngine/restore/BringForward.hpp"
#include "WindowEngine/restore/CleanSlate.hpp"
#include "WindowEngine/restore/ContextRestore.hpp"
#include "WindowEngine/restore/DesktopCreation.hpp"
#include "WindowEngine/restore/DocumentRestore.hpp"
#include "WindowEngine/restore/LateWindows.hpp"
#include "WindowEngine/restore/MissingWindows.hpp"
#include "WindowEngine/restore/RestoreScope.hpp"
#include "WindowEngine/restore/WindowPlacement.hpp"
#include "WindowEngine/restore/WindowPresence.hpp"

namespace quillo::Restore {
namespace {

constexpr std::size_t mostTroubleLogged = 100;  // lines of one run

/// What all tasks of one run share; it outlives them, since the run joins them before it ends.
struct Run {
    DesktopAccess& desktop;
    Workspace& workspace;
    Options& options;  // what it passes over is made to fit the displays
    const ItemSink& sink;
    TimePoint started;
    WindowPresence presence{desktop};
    BringForward forward{desktop};
    std::vector<DisplaySnapshot> displays{};
    DesktopPreparation desktops{};
    struct Placed {
        const ApplicationSnapshot* application;
        std::vector<DisplaySnapshot> displays;  // on which its windows were placed
    };
    std::vector<Placed> placed{};

    TimePoint now() const { return desktop.platform.executor.now(); }
    double secondsSinceStart() const { return std::chrono::duration<double>(now() - started).count(); }
};

DocumentPlan documentsOf(const ApplicationRestore& restore, std::span<const LiveWindowInfo> live) {
    return planDocuments(restore.desktop.platform, restore.application, restore.options, live);
}

/// False when there is no application to go on with.
Task<bool> launch(ApplicationRestore& restore) {
    Applications& applications = restore.desktop.platform.applications;
    const std::optional<Url> location = locationOf(applications, restore.application);
    if (!location) {
        restore.add(RestoreReport::skipped{applications.notInstalled()});
        co_return false;
    }
    DocumentPlan documents;
    if (applications.documentsTravelWithLaunch()) documents = documentsOf(restore, {});
    restore.following = takeFollowing(restore, documents.open);
    std::vector<Url> urls;
    for (const SavedDocument& document : documents.open)
        urls.push_back(document.target.value_or(document.url));
    const auto launched = co_await applications.launch(*location, std::move(urls));
    if (!launched) {
        restore.add(RestoreReport::failed{"couldn't launch: " + launched.error().text});
        co_return false;
    }
    restore.launched = restore.opensMore = true;
    restore.add(RestoreReport::launched{});
    reportRefused(restore, documents);
    restore.sent = std::move(documents.open);
    co_return true;
}

/// Also of one that hangs: the window server knows its windows. Windows that are left alone do not count.
bool hasWindows(const ApplicationRestore& restore, ProcessID pid) {
    const bool some = restore.options.passedOver.windows.contains(restore.application.bundleIdentifier);
    if (!restore.live(some).empty()) return true;
    return !some && !Accessibility::hiddenWindows(restore.desktop, pid, {}).empty();
}

Task<void> requestWindow(ApplicationRestore& restore) {
    restore.opensMore = true;
    const std::string& identifier = restore.application.bundleIdentifier;
    Log::requestedWindow(restore.desktop.platform.log, identifier);
    const auto requested = co_await restore.desktop.platform.applications.requestWindow(identifier);
    if (!requested) restore.add(RestoreReport::failed{"couldn't reopen a window: " + requested.error().text});
}

/// Launches the application or takes the running one; false when there is none to go on with.
Task<bool> start(ApplicationRestore& restore) {
    const auto running = restore.desktop.platform.applications.running(restore.application.bundleIdentifier);
    if (!running) co_return co_await launch(restore);
    // Windows of a hidden application would be put in place unseen.
    (void)restore.desktop.platform.applications.show(restore.application.bundleIdentifier);
    if (bareWindows(restore.desktop.platform, restore.application, restore.options.enabledAdapters) > 0 &&
        !hasWindows(restore, running->pid))
        co_await requestWindow(restore);
    co_return true;
}

/// Documents that the launch took along, and those that were kept for later.
Task<void> awaitSent(ApplicationRestore& restore) {
    if (restore.sent.empty()) co_return;
    restore.add(RestoreReport::opened{static_cast<std::int64_t>(restore.sent.size())});
    co_await awaitDocuments(restore, restore.sent, {}, restore.deadline);
    co_await openDocuments(restore, std::exchange(restore.following, {}));
}

Task<void> reopenDocuments(ApplicationRestore& restore) {
    if (restore.launched && restore.desktop.platform.applications.documentsTravelWithLaunch()) {
        co_await awaitSent(restore);
        co_return;
    }
    // Looking on other desktops is dear.
    if (SavedDocuments::of(restore.application, {}).empty()) co_return;
    DocumentPlan documents = documentsOf(restore, infosOf(restore.live(true)));
    reportRefused(restore, documents);
    co_await openDocuments(restore, std::move(documents.open));
}

/// What is to be waited for, once those that are there are placed.
LateApplication lateOf(const ApplicationRestore& restore, const std::vector<LiveWindow>& live,
                       const std::vector<WindowPlan>& plans) {
    LateApplication late{.application = restore.application, .missing = {}, .fresh = restore.launched};
    late.application.context.reset();
    for (const WindowPlan& plan : plans)
        if (!plan.liveIndex) late.missing.push_back(plan.savedIndex);
    for (const LiveWindow& window : live)
        if (window.windowID) late.known.push_back(*window.windowID);
    return late;
}

/// Waits until the application has opened its windows, where more may come, asks for those that are missing
/// then, and puts them in place.
Task<void> placeOpened(Run& run, ApplicationRestore& restore) {
    const ApplicationSnapshot& application = restore.application;
    std::vector<LiveWindow> live = restore.live(true);
    const bool isShort = restore.opensMore || live.size() < application.windows.size();
    if (isShort && !run.options.arrangesOnly) {
        co_await run.presence.wait(application.bundleIdentifier, {toDuration(run.options.launchTimeout),
                                                                  toDuration(run.options.settleDelay)});
        // One that was too busy to be counted may answer now that its time is over.
        if (const auto running = run.desktop.platform.applications.running(application.bundleIdentifier))
            run.desktop.handles.unresponsive.answered(running->pid);
        live = restore.live(true);
        if (co_await openMissingWindows(restore, infosOf(live))) live = restore.live(true);
    }
    // Launching took its time: a display may have gone since.
    const std::vector<DisplaySnapshot> displays = Displays::current(run.desktop.platform.screens);
    run.placed.push_back({&application, displays});
    const std::vector<DisplaySnapshot>& saved = run.workspace.snapshot.displays;
    std::vector<WindowPlan> plans = planWindows(application.windows, infosOf(live), saved, displays, {}, {},
                                                run.desktop.platform.windowServer.noWindows());
    LateApplication late = lateOf(restore, live, plans);
    co_await placeWindows(run.desktop, application, std::move(live), std::move(plans),
                          {saved, displays, run.desktops.targets}, run.sink, run.forward.windows,
                          restore.opensMore ? Drift::corrected : Drift::ignored);
    if (run.options.late) run.options.late->expect(std::move(late));
}

Task<void> restoreApplication(Run& run, const ApplicationSnapshot& application) {
    ApplicationRestore restore{.desktop = run.desktop,
                               .application = application,
                               .options = run.options,
                               .sink = run.sink,
                               .presence = run.presence,
                               .deadline = run.now() + toDuration(run.options.launchTimeout)};
    if (run.options.arrangesOnly) {
        if (!application.windows.empty()) co_await placeOpened(run, restore);
        co_return;
    }
    if (!co_await start(restore)) co_return;
    Log::ready(run.desktop.platform.log, application.bundleIdentifier, run.secondsSinceStart());
    co_await restoreContext(restore);
    co_await reopenDocuments(restore);
    if (!application.windows.empty()) co_await placeOpened(run, restore);
    reportLateDocuments(restore);
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

/// A display that came or went while some applications were waited for took windows of others along that were
/// in place by then. Their items stand; what became of them is one more.
Task<void> placeAgain(Run& run) {
    const std::vector<DisplaySnapshot>& saved = run.workspace.snapshot.displays;
    const std::vector<DisplaySnapshot> displays = Displays::current(run.desktop.platform.screens);
    RestoreReport again;
    const ItemSink sink(again, {});
    std::vector<Element> known;  // what is brought forward was noted the first time
    std::int64_t moved = 0, left = 0;
    for (const Run::Placed& placed : run.placed) {
        if (placed.displays == displays) continue;
        std::vector<LiveWindow> live =
            liveWindows(run.desktop, *placed.application, true, run.options.passedOver);
        const std::vector<WindowPlan> plans =
            planWindows(placed.application->windows, infosOf(live), saved, displays);
        again.items.clear();
        co_await placeWindows(run.desktop, *placed.application, std::move(live),
                              {saved, displays, run.desktops.targets}, sink, known);
        for (const RestoreReport::Item& item : again.items) {
            if (item.savedIndex && plans[static_cast<std::size_t>(*item.savedIndex)].write)
                ++(outcomeOf(item.status).trouble() ? left : moved);
        }
    }
    if (moved > 0)
        run.sink.add(RestoreReport::note{fmt::format("Displays changed; windows placed again: {}", moved)});
    if (left > 0)
        run.sink.add(
            RestoreReport::failed{fmt::format("displays changed; windows not placed again: {}", left)});
}

Task<void> prepareDesktops(Run& run) {
    const WorkspaceSnapshot& saved = run.workspace.snapshot;
    if (!saved.desktops) co_return;
    if (run.options.arrangesOnly) {
        run.desktops.targets = DesktopSpaces::resolveTargets(
            *saved.desktops, DesktopSpaces::current(run.desktop), saved.displays, run.displays);
        co_return;
    }
    run.desktops =
        co_await DesktopSpaces::prepare(run.desktop, *saved.desktops, saved.displays, run.displays);
    if (run.desktops.created > 0) run.sink.add(RestoreReport::createdDesktops{run.desktops.created});
    for (const std::string& failure : run.desktops.failures) run.sink.add(RestoreReport::failed{failure});
    co_await checkpoint();
    // Creating them took seconds.
    run.displays = Displays::current(run.desktop.platform.screens);
}

/// Each application once, under its own name, within the limits.
void narrow(Run& run) {
    RestoreScope scope = scopeOf(std::move(run.workspace.snapshot), run.options.limited);
    giveShownNames(run.desktop.platform.applications, scope);
    run.workspace.snapshot = std::move(scope.snapshot);
    for (RestoreReport::Item& item : scope.leftOut) run.sink.add(std::move(item));
}

Task<void> restoreWorkspace(Run& run) {
    if (!run.desktop.platform.accessibility.trusted()) {
        run.sink.add(RestoreReport::failed{"Accessibility permission not granted"});
        co_return;
    }
    run.displays = Displays::current(run.desktop.platform.screens);
    run.workspace.snapshot =
        fitted(std::move(run.workspace.snapshot), run.options.passedOver, run.displays, run.options.displays);
    boundDisplays(run.workspace.snapshot);
    co_await prepareDesktops(run);
    co_await cleanSlate(run.desktop, run.workspace, run.options, run.sink);
    if (run.options.late)
        run.options.late->setPlaces(run.workspace.snapshot.displays, run.desktops.targets,
                                    run.options.passedOver);
    narrow(run);  // not before: what the limits leave out is still no other application, to be hidden or quit
    const Context context = co_await quillo::context();
    std::optional<Job<void>> looking;
    if (run.options.bringsForward) looking = spawn(context, run.forward.look());
    co_await restoreApplications(run);
    co_await placeAgain(run);
    looking.reset();
    if (run.options.bringsForward) run.forward.raise();
}

/// Alike ones in one line, in the order of the first of each.
void logTrouble(SystemLog& log, const RestoreReport& report) {
    std::vector<std::pair<const RestoreReport::Item*, std::size_t>> kinds;
    std::map<std::tuple<std::string_view, std::string_view, std::string_view>, std::size_t> places;
    for (const RestoreReport::Item& item : report.items) {
        const RestoreOutcome& outcome = outcomeOf(item.status);
        if (!outcome.trouble()) continue;
        const auto [place, isNew] = places.try_emplace(
            {item.bundleIdentifier, outcome.name, detailOf(item.status).text}, kinds.size());
        if (isNew) kinds.emplace_back(&item, 0);
        ++kinds[place->second].second;
    }
    for (const auto& [item, count] : kinds | std::views::take(mostTroubleLogged))
        Log::notBack(log, item->bundleIdentifier, outcomeOf(item->status).name, detailOf(item->status).text,
                     count);
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
    logTrouble(desktop.platform.log, report);
    Log::restoreFinished(desktop.platform.log, report.items.size(), report.duration);
    co_return report;
}

}  // namespace quillo::Restore
