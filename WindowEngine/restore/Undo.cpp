#include "WindowEngine/restore/Undo.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <iterator>
#include <map>
#include <ranges>
#include <set>
#include <unordered_map>
#include <utility>

#include "WindowEngine/desktop/DesktopSpaces.hpp"
#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/ApplicationRestore.hpp"
#include "WindowEngine/restore/BringForward.hpp"
#include "WindowEngine/restore/CleanSlate.hpp"
#include "WindowEngine/restore/WindowPlacement.hpp"

namespace quillo::Restore {
namespace {

constexpr std::string_view closedSince = "closed since, and does not come back";
constexpr std::string_view endedSince = "its application has ended since";
constexpr std::string_view silent = "its application does not answer";
constexpr std::string_view outOfReach = "out of reach before the restore already";

std::string counted(std::int64_t count, std::string_view one, std::string_view more) {
    return fmt::format("{} {}", count, count == 1 ? one : more);
}

/// Null where it did not run.
const UndoApplication* notedOf(const UndoRecord& record, std::string_view identifier) {
    const auto noted = std::ranges::find(record.applications, identifier, &UndoApplication::identifier);
    return noted == record.applications.end() ? nullptr : &*noted;
}

/// Whether it was to be asked to quit, and does not run.
bool hasQuit(Applications& applications, const UndoRecord& record, std::string_view identifier) {
    const UndoApplication* noted = notedOf(record, identifier);
    return record.before.cleanSlate == CleanSlateMode::quit && noted && noted->cleared &&
           !applications.running(identifier);
}

/// Dates are stored by the second, and where they are counted from the computer's start, each program finds
/// that start a little earlier or later.
bool isSame(const auto& noted, const RunningApplication& running) {
    if (noted.pid != running.pid || noted.launchedAt.has_value() != running.launchDate.has_value())
        return false;
    return !noted.launchedAt ||
           std::chrono::abs(*noted.launchedAt - *running.launchDate) <= std::chrono::seconds(3);
}

/// What becomes of other applications is known before it is done: a crash in between loses nothing.
void noteIntent(UndoRecord& record, Applications& applications, const Workspace& workspace,
                const Options& options) {
    if (record.before.cleanSlate.value_or(CleanSlateMode::keep) == CleanSlateMode::keep) return;
    std::set<std::string> held = identifiersOf(workspace);
    held.insert(options.kept.begin(), options.kept.end());
    for (const RunningApplication& target : cleanSlateTargets(applications, held)) {
        const auto noted =
            std::ranges::find(record.applications, *target.bundleIdentifier, &UndoApplication::identifier);
        if (noted == record.applications.end())
            ++record.othersCleared;
        else
            noted->cleared = true;
    }
}

void noteDone(UndoRecord& record, Applications& applications, const RestoreReport& report) {
    for (const RestoreReport::Item& item : report.items) {
        if (std::holds_alternative<RestoreReport::launched>(item.status)) {
            UndoLaunch& launch = record.launched.emplace_back(item.bundleIdentifier, item.app);
            if (const auto running = applications.running(item.bundleIdentifier)) {
                launch.pid = running->pid;
                launch.launchedAt = running->launchDate;
            }
        }
        if (const auto* opened = std::get_if<RestoreReport::opened>(&item.status))
            record.opened += opened->count;
        if (const auto* made = std::get_if<RestoreReport::createdDesktops>(&item.status))
            record.desktops += made->count;
    }
}

// -- which window is which ----------------------------------------------------------------------------------

/// What a number means now.
struct Numbers {
    explicit Numbers(DesktopAccess& desktop, bool sameSession) {
        if (!sameSession) return;
        for (const WindowListEntry& entry : desktop.platform.windowServer.windowList())
            processes.emplace(entry.number, entry.process);
    }
    /// A window's number, once it is free, may be given to another: of another process, as a rule.
    bool mean(const UndoWindow& window) const {
        const auto now = processes.find(window.number);
        return now != processes.end() && now->second == window.process;
    }

    std::unordered_map<WindowNumber, ProcessID> processes;
};

/// Only where nothing else could be meant: twins are not told apart by their places.
bool isUnmistakable(const WindowMatcher::Match& match, std::span<const WindowSnapshot> saved,
                    std::span<const LiveWindowInfo> live) {
    if (match.confidence() != WindowMatcher::Confidence::high) return false;
    const WindowSnapshot& one = saved[static_cast<std::size_t>(match.savedIndex)];
    const LiveWindowInfo& other = live[static_cast<std::size_t>(match.liveIndex)];
    const bool known = one.title && one.title == other.title;
    return known && std::ranges::count(saved, one.title, &WindowSnapshot::title) == 1 &&
           std::ranges::count(live, other.title, &LiveWindowInfo::title) == 1;
}

struct Pairing {
    const UndoRecord& record;
    const Numbers& numbers;
    bool sameSession;
};

WindowPlan unpaired(std::size_t index, std::string_view reason) {
    WindowPlan plan;
    plan.savedIndex = static_cast<std::int64_t>(index);
    plan.skipReason = reason;
    return plan;
}

/// By their numbers.
void pairKnown(const Pairing& pairing, UndoPlan::Application& application) {
    const std::vector<WindowSnapshot>& saved = application.saved->windows;
    for (const UndoWindow& known : pairing.record.windows) {
        if (known.application != application.saved->bundleIdentifier) continue;
        const auto window = std::ranges::find(saved, known.index, &WindowSnapshot::index);
        if (window == saved.end()) continue;
        WindowPlan& plan = application.windows[static_cast<std::size_t>(window - saved.begin())];
        if (plan.liveIndex) continue;
        plan.skipReason = application.hangs ? silent : closedSince;
        const auto live = std::ranges::find(application.live, std::optional(WindowNumber{known.number}),
                                            &LiveWindow::windowID);
        if (live != application.live.end() && pairing.numbers.mean(known))
            plan.liveIndex = live - application.live.begin();
    }
}

/// By what they show: of an application that was started again since.
void pairByLooks(UndoPlan::Application& application) {
    const std::vector<WindowSnapshot>& saved = application.saved->windows;
    const std::vector<LiveWindowInfo> live = infosOf(application.live);
    for (const WindowMatcher::Match& match : WindowMatcher::match(saved, live)) {
        if (isUnmistakable(match, saved, live))
            application.windows[static_cast<std::size_t>(match.savedIndex)].liveIndex = match.liveIndex;
    }
}

UndoPlan::Application planApplication(DesktopAccess& desktop, const Pairing& pairing,
                                      const ApplicationSnapshot& saved) {
    UndoPlan::Application application{.saved = &saved};
    const UndoRecord& record = pairing.record;
    const UndoApplication* noted = notedOf(record, saved.bundleIdentifier);
    Applications& applications = desktop.platform.applications;
    const auto running = applications.running(saved.bundleIdentifier);
    application.relaunched =
        hasQuit(applications, record, saved.bundleIdentifier) && locationOf(applications, saved);
    for (std::size_t i = 0; i < saved.windows.size(); ++i)
        application.windows.push_back(unpaired(i, running ? outOfReach : endedSince));
    if (!running) return application;
    const bool wasHidden = noted && noted->hidden;
    application.shown = running->isHidden && noted && noted->cleared && !wasHidden;
    application.hidden = !running->isHidden && wasHidden;
    application.live = liveWindows(desktop, saved, true, {});
    application.hangs = desktop.handles.unresponsive.resting(running->pid, desktop.platform.executor.now());
    if (pairing.sameSession) pairKnown(pairing, application);
    const bool same = noted && isSame(*noted, *running);
    const bool none = std::ranges::none_of(application.windows,
                                           [](const WindowPlan& plan) { return plan.liveIndex.has_value(); });
    if (!same && none) pairByLooks(application);
    return application;
}

/// Applications that are never saved are told by windows that stood there.
void planOthers(DesktopAccess& desktop, const UndoRecord& record, const Numbers& numbers, UndoPlan& plan) {
    std::set<WindowNumber> wanted;
    for (const UndoWindow& window : record.others) {
        if (numbers.mean(window)) wanted.insert(window.number);
    }
    if (wanted.empty()) return;
    for (const RunningApplication& application : desktop.platform.applications.running()) {
        bool stoodThere = false;
        for (LiveWindow& window : Accessibility::windows(desktop, application.pid, false)) {
            if (!window.windowID || !wanted.contains(*window.windowID)) continue;
            stoodThere = true;
            if (window.info.isMinimized) plan.otherWindows.push_back(std::move(window));
        }
        if (stoodThere && application.isHidden && application.bundleIdentifier)
            plan.otherApplications.push_back(*application.bundleIdentifier);
    }
}

// -- carrying it out ----------------------------------------------------------------------------------------

struct Undoing {
    DesktopAccess& desktop;
    const UndoRecord& record;
    const Options& options;
    const ItemSink& sink;
    std::vector<Element> back{};
    std::map<WindowNumber, WindowNumber> renumbered{};  // windows of what was launched again, by their former
    std::optional<WindowNumber> foremost{};             // that was raised
    std::optional<WindowNumber> inFront = desktop.platform.windowServer.windowInFront();
};

/// Where full screen is no desktop of its own, a window may have filled the screen on any.
Task<void> moveFullscreen(Undoing& undoing, const UndoPlan::Application& application) {
    for (const UndoWindow& known : undoing.record.windows) {
        if (!known.space || known.application != application.saved->bundleIdentifier) continue;
        const bool lives = std::ranges::any_of(application.windows, [&](const WindowPlan& plan) {
            return plan.liveIndex &&
                   application.live[static_cast<std::size_t>(*plan.liveIndex)].windowID == known.number;
        });
        if (!lives) continue;
        const auto space = static_cast<SpaceID>(*known.space);
        if (!co_await DesktopSpaces::move(undoing.desktop, known.number, space,
                                          DesktopSpaces::arrivalPatience))
            undoing.sink.add(*application.saved,
                             RestoreReport::failed{"a full-screen window did not return to its desktop"});
    }
}

Task<void> placeLiving(Undoing& undoing, const UndoPlan& plan) {
    const WorkspaceSnapshot& before = undoing.record.before.snapshot;
    for (const UndoPlan::Application& application : plan.applications) {
        if (application.relaunched || application.windows.empty()) continue;
        co_await checkpoint();
        if (application.hangs)
            undoing.sink.add(*application.saved, RestoreReport::failed{"does not answer; try again later"});
        const std::vector<DisplaySnapshot> displays = Displays::current(undoing.desktop.platform.screens);
        const DesktopTargets desktops =
            before.desktops
                ? DesktopSpaces::resolveTargets(*before.desktops, DesktopSpaces::current(undoing.desktop),
                                                before.displays, displays)
                : DesktopTargets{};
        co_await placeWindows(undoing.desktop, *application.saved, application.live, application.windows,
                              {before.displays, displays, desktops, DisplayMapper::Edges::kept}, undoing.sink,
                              undoing.back);
        co_await moveFullscreen(undoing, application);
    }
}

/// The windows of what was launched again stand where they were saved, under other numbers.
std::vector<Element> recognised(Undoing& undoing, const ApplicationSnapshot& saved) {
    std::vector<Element> windows;
    const std::vector<UndoWindow>& known = undoing.record.windows;
    const std::vector<LiveWindow> live = liveWindows(undoing.desktop, saved, true, {});
    const std::vector<DisplaySnapshot> displays = Displays::current(undoing.desktop.platform.screens);
    for (const WindowPlan& plan :
         planWindows(saved.windows, infosOf(live), undoing.record.before.snapshot.displays, displays)) {
        if (!plan.liveIndex) continue;
        const WindowSnapshot& window = saved.windows[static_cast<std::size_t>(plan.savedIndex)];
        const LiveWindow& now = live[static_cast<std::size_t>(*plan.liveIndex)];
        const auto former = std::ranges::find_if(known, [&](const UndoWindow& one) {
            return one.application == saved.bundleIdentifier && one.index == window.index;
        });
        if (window.isMinimized || former == known.end() || !now.windowID) continue;
        undoing.renumbered.emplace(former->number, *now.windowID);
        windows.push_back(now.element);
    }
    return windows;
}

/// What was quit comes back as from a workspace. Saved here a moment ago, it needs no limits. Gives the
/// windows that it opened.
Task<std::vector<Element>> launchAgain(Undoing& undoing, const UndoPlan& plan) {
    Workspace gone = undoing.record.before;
    std::erase_if(gone.snapshot.applications, [&](const ApplicationSnapshot& application) {
        return std::ranges::none_of(plan.applications, [&](const UndoPlan::Application& planned) {
            return planned.relaunched && planned.saved->bundleIdentifier == application.bundleIdentifier;
        });
    });
    std::vector<Element> launched;
    if (gone.snapshot.applications.empty()) co_return launched;
    Options options = undoing.options;
    options.cleanSlate.reset();
    options.limited = options.bringsForward = false;
    const RestoreReport report =
        co_await run(undoing.desktop, std::move(gone), options,
                     [&](const RestoreReport::Item& item) { undoing.sink.add(item); });
    if (report.cancelled) throw Cancelled{};
    for (const UndoPlan::Application& planned : plan.applications)
        if (planned.relaunched)
            std::ranges::move(recognised(undoing, *planned.saved), std::back_inserter(launched));
    co_return launched;
}

/// Front to back, those that are neither minimized, hidden nor gone; with the numbers that they have now.
std::vector<std::pair<WindowNumber, Element>> formerOrder(const Undoing& undoing) {
    const auto back = byNumber(undoing.desktop.platform.accessibility, undoing.back);
    std::vector<std::pair<WindowNumber, Element>> order;
    for (const UndoWindow& window : undoing.record.windows) {
        const UndoApplication* noted = notedOf(undoing.record, window.application);
        const auto anew = undoing.renumbered.find(window.number);
        const auto found = back.find(anew == undoing.renumbered.end() ? window.number : anew->second);
        if (found != back.end() && !(noted && noted->hidden)) order.emplace_back(*found);
    }
    return order;
}

/// Window managers raise one window at a time: from the last one that lies where it did upwards. The
/// windows that have `come` may have taken the keyboard without anybody's going there.
void restack(Undoing& undoing, const std::vector<Element>& come) {
    WindowServer& server = undoing.desktop.platform.windowServer;
    AccessibilityService& accessibility = undoing.desktop.platform.accessibility;
    const auto order = formerOrder(undoing);
    std::vector<WindowNumber> wanted, present;
    std::map<WindowNumber, ProcessID> owners;
    for (const auto& [number, element] : order) wanted.push_back(number);
    const auto inFront = server.windowInFront();
    const bool isOurs =
        inFront && (inFront == undoing.foremost || byNumber(accessibility, come).contains(*inFront));
    if (!isOurs && inFront != undoing.inFront) return;  // somebody went elsewhere
    for (const WindowListEntry& entry : server.windowList()) {
        if (std::ranges::find(wanted, entry.number) == wanted.end()) continue;
        present.push_back(entry.number);
        owners.emplace(entry.number, entry.ownerPid);
    }
    if (present == wanted) return;
    for (const auto& [number, element] : order | std::views::reverse)
        bringToFront(accessibility, element, owners[number]);
    undoing.foremost = wanted.front();
}

Task<void> putBack(Undoing& undoing, const UndoPlan& plan) {
    Applications& applications = undoing.desktop.platform.applications;
    for (const std::string& identifier : plan.otherApplications) (void)applications.show(identifier);
    for (const UndoPlan::Application& application : plan.applications)
        if (application.shown) (void)applications.show(application.saved->bundleIdentifier);
    for (const LiveWindow& window : plan.otherWindows)
        (void)Accessibility::setMinimized(undoing.desktop, window, false);
    co_await placeLiving(undoing, plan);
    for (const UndoPlan::Application& application : plan.applications)
        if (application.hidden) (void)applications.hide(application.saved->bundleIdentifier);
    restack(undoing, undoing.back);
    const std::vector<Element> launched = co_await launchAgain(undoing, plan);
    undoing.back.insert(undoing.back.end(), launched.begin(), launched.end());
    if (!launched.empty()) restack(undoing, launched);
}

}  // namespace

std::int64_t UndoPlan::windowCount() const {
    std::int64_t count = 0;
    for (const Application& application : applications)
        count += std::ranges::count_if(application.windows,
                                       [](const WindowPlan& window) { return window.liveIndex.has_value(); });
    return count;
}

std::int64_t UndoPlan::relaunchedCount() const {
    return std::ranges::count(applications, true, &Application::relaunched);
}

std::vector<std::string> UndoPlan::limits() const {
    std::vector<std::string> all = remains;
    std::int64_t gone = 0;
    for (const Application& application : applications) {
        if (application.relaunched) continue;
        gone += std::ranges::count_if(application.windows,
                                      [](const WindowPlan& window) { return !window.liveIndex; });
    }
    if (gone > 0)
        all.push_back(counted(gone, "window is not there any more, and does not come back",
                              "windows are not there any more, and do not come back"));
    return all;
}

Task<RestoreReport> runUndoably(DesktopAccess& desktop, Workspace workspace, Options options, OnItem onItem,
                                UndoRecord record, KeepRecord keep) {
    noteIntent(record, desktop.platform.applications, workspace, options);
    keep(record);
    RestoreReport report = co_await run(desktop, std::move(workspace), std::move(options), std::move(onItem));
    noteDone(record, desktop.platform.applications, report);
    keep(record);
    co_return report;
}

bool isOfThisSession(Applications& applications, const UndoRecord& record) {
    const auto runsStill = [&](const auto& noted) {
        const auto running = applications.running(noted.identifier);
        return running && isSame(noted, *running);
    };
    return std::ranges::any_of(record.applications, runsStill) ||
           std::ranges::any_of(record.launched, runsStill);
}

std::vector<UndoLaunch> launchedAndRunning(Applications& applications, const UndoRecord& record) {
    std::vector<UndoLaunch> launched = record.launched;
    std::erase_if(launched, [&](const UndoLaunch& launch) {
        const auto running = applications.running(launch.identifier);
        // One without a number was slower than the restore, and cannot be told from one started since.
        return !running || (launch.pid && !isSame(launch, *running));
    });
    return launched;
}

std::vector<std::string> remains(Applications& applications, const UndoRecord& record) {
    std::vector<std::string> remains;
    for (const UndoLaunch& launch : launchedAndRunning(applications, record))
        remains.push_back(launch.name + " was launched, and stays open until you quit it");
    if (record.opened > 0)
        remains.push_back(counted(record.opened, "document, folder or tab that was opened stays",
                                  "documents, folders and tabs that were opened stay"));
    if (record.desktops > 0)
        remains.push_back(
            counted(record.desktops, "desktop that was made stays", "desktops that were made stay"));
    if (record.othersCleared > 0 && record.before.cleanSlate == CleanSlateMode::quit)
        remains.push_back(counted(record.othersCleared,
                                  "app that is never saved was asked to quit, and stays so",
                                  "apps that are never saved were asked to quit, and stay so"));
    for (const ApplicationSnapshot& saved : record.before.snapshot.applications) {
        if (hasQuit(applications, record, saved.bundleIdentifier) && !locationOf(applications, saved))
            remains.push_back(fmt::format("{} was asked to quit, and stays so: {}", saved.name,
                                          applications.notInstalled()));
    }
    return remains;
}

UndoPlan planUndo(DesktopAccess& desktop, const UndoRecord& record) {
    Applications& applications = desktop.platform.applications;
    const bool sameSession = isOfThisSession(applications, record);
    const Numbers numbers(desktop, sameSession);
    const Pairing pairing{record, numbers, sameSession};
    UndoPlan plan;
    for (const ApplicationSnapshot& saved : record.before.snapshot.applications)
        plan.applications.push_back(planApplication(desktop, pairing, saved));
    planOthers(desktop, record, numbers, plan);
    plan.launched = launchedAndRunning(applications, record);
    plan.remains = remains(applications, record);
    return plan;
}

Task<RestoreReport> undo(DesktopAccess& desktop, UndoRecord record, Options options, OnItem onItem) {
    desktop.handles.unresponsive.clear();
    const TimePoint started = desktop.platform.executor.now();
    RestoreReport report;
    const ItemSink sink(report, std::move(onItem));
    try {
        if (!desktop.platform.accessibility.trusted()) {
            sink.add(RestoreReport::failed{"Accessibility permission not granted"});
            co_return report;
        }
        const UndoPlan plan = planUndo(desktop, record);
        Undoing undoing{desktop, record, options, sink};
        co_await putBack(undoing, plan);
        for (const std::string& one : remains(desktop.platform.applications, record))
            sink.add(RestoreReport::note{one});
    } catch (const Cancelled&) {
        report.cancelled = true;
    } catch (const std::exception& error) {
        sink.add(RestoreReport::failed{std::string("stopped unexpectedly: ") + error.what()});
    }
    report.duration = std::chrono::duration<double>(desktop.platform.executor.now() - started).count();
    co_return report;
}

void closeLaunched(Applications& applications, const std::vector<UndoLaunch>& launched) {
    for (const UndoLaunch& launch : launched) (void)applications.terminate(launch.identifier);
}

}  // namespace quillo::Restore
