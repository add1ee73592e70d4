#include "WindowEngine/restore/WindowPlacement.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <utility>

#include "WindowEngine/desktop/DesktopSpaces.hpp"
#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/SavedDocuments.hpp"
#include "WindowEngine/support/Poll.hpp"

namespace quillo::Restore {
namespace {

using Status = RestoreReport::Status;
using failed = RestoreReport::failed;

constexpr Duration tilingPatience = std::chrono::milliseconds(200);  // for windows to be laid out anew
constexpr Duration driftPatience = std::chrono::seconds(1);          // for one that moves itself
constexpr Duration driftInterval = std::chrono::milliseconds(100);   // between looks when it does

constexpr std::string_view minimizedStill = "couldn't unminimize the window before entering full screen";

Status disappeared() {
    return failed{"window disappeared after leaving full screen"};
}

/// One saved window and the live one that stands for it.
struct Pair {
    DesktopAccess& desktop;
    const WindowSnapshot& saved;
    LiveWindow window;
    PlacementTargets targets;

    WindowPlan plan() const { return plan({}); }
    WindowPlan plan(std::span<const SpaceID> liveSpaces) const {
        return planPair(saved, window.info, targets.savedDisplays, targets.currentDisplays, targets.desktops,
                        liveSpaces, targets.edges);
    }

    Capability placement() const { return desktop.platform.accessibility.placement(window.element); }

    /// Reads the window again; false when it is gone.
    bool refresh() {
        auto now = Accessibility::readWindow(desktop, window.element, window.pid, window.info.index);
        if (now) window = std::move(*now);
        return now.has_value();
    }
};

/// A failure's status, or nothing when the step went well.
using Trouble = std::optional<Status>;

Task<Trouble> leaveFullscreen(Pair& pair, std::string_view refusal) {
    if (!co_await Accessibility::transitionFullscreen(pair.desktop, pair.window, false))
        co_return failed{std::string(refusal)};
    if (!pair.refresh()) co_return disappeared();
    co_return std::nullopt;
}

/// What a frame write came to.
struct Written {
    Trouble trouble;              // of what had to come before
    WindowMutationResult result;  // nothing set: the window could not be brought to a movable state either
    DisplayMapper::Placement placement;
    bool minimized = false;

    bool took() const { return !trouble && result.positionSet && result.minimizedSet; }
    bool adjusted() const { return placement.adjusted || !result.sizeSet; }
};

/// The write itself, to a window that was made movable.
Task<Written> writeMovable(Pair& pair, std::string_view unminimizeRefusal) {
    if (!co_await pair.desktop.platform.accessibility.makeMovable(pair.window.element)) co_return Written{};
    if (!pair.refresh()) co_return Written{};
    const WindowPlan plan = pair.plan();
    if (!plan.placement) co_return Written{};
    if (plan.unminimize && !co_await Accessibility::unminimizeAndWait(pair.desktop, pair.window))
        co_return Written{failed{std::string(unminimizeRefusal)}, {}, {}};
    const auto result =
        co_await Accessibility::setAndWait(pair.desktop, pair.window, plan.placement->frame, plan.minimized);
    co_return Written{std::nullopt, result, *plan.placement, plan.minimized};
}

/// Whatever becomes of the write, the window goes back to the desktop it came from: a cancelled restore
/// strands nothing.
Task<Written> write(Pair& pair, std::string_view unminimizeRefusal) {
    Written written;
    std::exception_ptr interruption;
    try {
        written = co_await writeMovable(pair, unminimizeRefusal);
    } catch (...) {
        interruption = std::current_exception();
    }
    co_await shielded(pair.desktop.platform.accessibility.settleInPlace(pair.window.element));
    if (interruption) std::rethrow_exception(interruption);
    // What counts is what is there once everything came to rest: a window manager may take a new size a
    // moment after the position, or think again.
    if (written.took()) {
        const bool there = pair.refresh();
        written.result = Accessibility::compare(there ? std::optional(pair.window) : std::nullopt,
                                                written.placement.frame, written.minimized);
    }
    co_return written;
}

/// A tab behind another is where the tab in front is.
WindowNumber movedWindow(const Pair& pair) {
    return pair.saved.tabs ? DesktopSpaces::frontTab(pair.desktop, *pair.window.windowID)
                           : *pair.window.windowID;
}

/// Comes last: a frame write begins and ends on the desktop where the window is. One that stays on no known
/// desktop of its own, though it should be on one, is not back.
Task<Trouble> moveToDesktop(Pair& pair, std::string otherwise) {
    const std::optional<SpaceID> target = targetDesktop(pair.saved, pair.targets.desktops);
    if (!target) co_return std::nullopt;
    if (pair.window.windowID && co_await DesktopSpaces::move(pair.desktop, movedWindow(pair), *target,
                                                             DesktopSpaces::arrivalPatience))
        co_return std::nullopt;
    co_return failed{fmt::format("{} Desktop {} assignment failed", otherwise, pair.saved.desktop->number())};
}

/// A window whose place is not to be set. Once it and others are on their desktops it may stand right all the
/// same.
Task<Status> leaveUnplaced(Pair& pair, std::string reason) {
    if (auto trouble = co_await moveToDesktop(pair, reason + ", and")) co_return *trouble;
    const auto standsRight = [&pair] { return pair.refresh() && !pair.plan().write; };
    if (co_await pollUntil(standsRight, tilingPatience / 4, tilingPatience))
        co_return RestoreReport::restored{};
    co_return RestoreReport::skipped{std::move(reason)};
}

Task<Status> restorePlain(Pair& pair) {
    if (pair.plan().leaveFullscreen) {
        if (auto trouble = co_await leaveFullscreen(pair, "couldn't leave full screen")) co_return *trouble;
    }
    const WindowPlan plan = pair.plan();
    bool adjusted = plan.placement && plan.placement->adjusted;
    if (plan.write) {
        if (const Capability placement = pair.placement(); !placement)
            co_return co_await leaveUnplaced(pair, placement.reason());
        const Written written = co_await write(pair, "couldn't unminimize the window before moving it");
        if (written.trouble) co_return *written.trouble;
        if (!written.took()) co_return failed{"window refused position or minimized state"};
        adjusted = written.adjusted();
    }
    if (auto trouble = co_await moveToDesktop(pair, "position restored, but")) co_return *trouble;
    if (adjusted) co_return RestoreReport::adjusted{};
    co_return RestoreReport::restored{};
}

Task<Trouble> bringToTargetDisplay(Pair& pair) {
    if (pair.plan().leaveFullscreen) {
        auto trouble = co_await leaveFullscreen(pair, "couldn't leave full screen to change display");
        if (trouble) co_return trouble;
    }
    const Written written = co_await write(pair, minimizedStill);
    if (!written.trouble && !written.result.positionSet)
        co_return failed{"couldn't place the window on its target display before entering full screen"};
    co_return written.trouble;
}

Status verifiedFullscreen(Pair& pair, const std::string& targetDisplay) {
    if (!pair.refresh() || !pair.window.info.isFullscreen)
        return failed{"full-screen state could not be verified"};
    const DisplaySnapshot* display = Displays::display(pair.window.info.frame, pair.targets.currentDisplays);
    if (!display || display->id != targetDisplay)
        return failed{"entered full screen, but the target display could not be verified"};
    return RestoreReport::restored{};
}

Task<Status> restoreFullscreen(Pair& pair) {
    const WindowPlan plan = pair.plan();
    if (!plan.displayID) co_return failed{"no display"};
    if (const Capability placement = plan.write ? pair.placement() : Capability::available(); !placement) {
        const DisplaySnapshot* display =
            Displays::display(pair.window.info.frame, pair.targets.currentDisplays);
        if (!display || display->id != plan.displayID) co_return RestoreReport::skipped{placement.reason()};
    } else if (plan.write) {
        if (auto trouble = co_await bringToTargetDisplay(pair)) co_return *trouble;
    } else if (plan.unminimize && !co_await Accessibility::unminimizeAndWait(pair.desktop, pair.window)) {
        co_return failed{std::string(minimizedStill)};
    }
    if (!co_await Accessibility::transitionFullscreen(pair.desktop, pair.window, true))
        co_return failed{"full-screen transition did not complete"};
    co_return verifiedFullscreen(pair, *plan.displayID);
}

Task<Status> restoreWindow(Pair& pair) {
    return pair.saved.isFullscreen ? restoreFullscreen(pair) : restorePlain(pair);
}

std::vector<LiveWindowInfo> infos(const std::vector<LiveWindow>& windows) {
    std::vector<LiveWindowInfo> result;
    for (const LiveWindow& window : windows) result.push_back(window.info);
    return result;
}

/// A window that is back, and may yet move itself.
struct Rested {
    std::int64_t savedIndex = 0;
    Pair pair;
    Status status;
    WindowChange change;
    Rect frame;       // where it came to rest
    TimePoint since;  // when it did
    bool watched = true;
    bool drifted = false;
};

/// What the windows of one application are brought back with. The references outlive every task of it.
struct Placing {
    DesktopAccess& desktop;
    const ApplicationSnapshot& application;
    const std::vector<LiveWindow>& live;
    PlacementTargets targets;
    const ItemSink& sink;
    std::vector<Element>& back;
    Drift drift;
    std::vector<Rested>& rested;          // those that are not reported yet
    std::vector<NativeDesktop> desktops;  // for the report

    TimePoint now() const { return desktop.platform.executor.now(); }
};

/// What is still to be done with the window, asked before anything is.
WindowChange changeOf(const Placing& placing, const Pair& pair) {
    const auto spaces =
        DesktopSpaces::spacesOf(pair.desktop, std::span(&pair.window, 1), pair.saved.tabs.has_value())
            .front();
    return quillo::changeOf(pair.plan(spaces), pair.window.info, spaces, placing.desktops);
}

bool isBack(const Status& status) {
    const Verdict verdict = outcomeOf(status).verdict;
    return verdict == Verdict::back || verdict == Verdict::differs;
}

/// Whether nobody can tell what a window is to show again: its application has documents in windows, this
/// one's was not known, and now it shows something else, mostly nothing.
bool showsTheUnknown(const ApplicationSnapshot& application, const WindowSnapshot& saved,
                     const LiveWindowInfo& live) {
    return !SavedDocuments::isIn(saved) && WindowMatcher::evidence(saved, live).titleConflict &&
           std::ranges::any_of(application.windows, SavedDocuments::isIn);
}

/// `change` is told of what is back only.
void report(const Placing& placing, std::int64_t savedIndex, const LiveWindow& window, Status status,
            const WindowChange& change) {
    const WindowSnapshot& saved = placing.application.windows[static_cast<std::size_t>(savedIndex)];
    const bool back = isBack(status);
    if (back && !saved.isMinimized) placing.back.push_back(window.element);
    placing.sink.add(placing.application, savedIndex, std::move(status),
                     back ? std::optional(change) : std::nullopt);
    if (back && showsTheUnknown(placing.application, saved, window.info))
        placing.sink.addAbout(
            placing.application, saved.title,
            RestoreReport::note{"what it showed was not known when it was saved, and is not back"});
}

Task<void> placeWindow(const Placing& placing, const WindowPlan& plan) {
    co_await checkpoint();
    const WindowSnapshot& saved = placing.application.windows[static_cast<std::size_t>(plan.savedIndex)];
    Pair pair{placing.desktop, saved, placing.live[static_cast<std::size_t>(*plan.liveIndex)],
              placing.targets};
    // Waiting for the windows before it took time: what it looks like now decides.
    pair.refresh();
    const WindowChange change = changeOf(placing, pair);
    Status status = co_await restoreWindow(pair);
    if (std::holds_alternative<failed>(status)) {
        const auto displays = Displays::current(placing.desktop.platform.screens);
        Pair again{
            placing.desktop,
            saved,
            pair.window,
            {placing.targets.savedDisplays, displays, placing.targets.desktops, placing.targets.edges}};
        // A display that went, or came, took away the place that was meant.
        if (displays != placing.targets.currentDisplays && again.refresh())
            status = co_await restoreWindow(again);
    } else if (placing.drift == Drift::corrected && isBack(status) && !saved.isMinimized &&
               !saved.isFullscreen) {
        const Rect frame = pair.window.info.frame;
        placing.rested.push_back(
            {plan.savedIndex, std::move(pair), std::move(status), change, frame, placing.now()});
        co_return;
    }
    report(placing, plan.savedIndex, pair.window, std::move(status), change);
}

/// For a second from when the window came to rest: looks when it is told of a change, and at the end.
Task<void> watchForDrift(const Placing& placing, Rested& one) {
    const auto changes = placing.desktop.platform.windowServer.watch(one.pair.window.windowID);
    const TimePoint deadline = one.since + driftPatience;
    for (;;) {
        // What moves itself does so more than once: a look for each would be too many.
        const Duration left = deadline - placing.now();
        if (left > Duration::zero() && co_await changes->next(left)) co_await sleepFor(driftInterval);
        if (!one.pair.refresh()) co_return;  // closed: it was back
        one.drifted = !standsAt(one.pair.window.info.frame, one.frame);
        if (one.drifted || placing.now() >= deadline) co_return;
    }
}

Task<void> placeOnceMore(const Placing& placing, Rested& one) {
    Rect before;
    const TimePoint deadline = placing.now() + driftPatience;
    do {
        before = one.pair.window.info.frame;
        co_await sleepFor(driftInterval);
        if (!one.pair.refresh()) co_return;
    } while (!standsAt(one.pair.window.info.frame, before) && placing.now() < deadline);
    // Where a display came or went the windows are placed anew in any case, once all applications are there.
    if (Displays::current(placing.desktop.platform.screens) != placing.targets.currentDisplays) co_return;
    Status again = co_await restorePlain(one.pair);
    one.status = isBack(again) ? std::move(again) : RestoreReport::adjusted{};
    one.frame = one.pair.window.info.frame;
    one.since = placing.now();
}

/// Twice: those that were placed again are looked at once more, and left as they are then.
Task<void> correctDrift(const Placing& placing) {
    const Context context = co_await quillo::context();
    for (const bool isLast : {false, true}) {
        std::vector<Job<void>> jobs;
        for (Rested& one : placing.rested) {
            if (one.watched) jobs.push_back(spawn(context, watchForDrift(placing, one)));
        }
        for (const auto& outcome : co_await joinAll(jobs)) {
            if (const auto exception = outcome.exception()) std::rethrow_exception(exception);
        }
        co_await checkpoint();
        for (Rested& one : placing.rested) {
            one.watched = std::exchange(one.drifted, false);
            if (!one.watched) continue;
            if (isLast)
                one.status = RestoreReport::adjusted{};
            else
                co_await placeOnceMore(placing, one);
        }
    }
}

/// An error of one ends the application's placing, but not before the others are done.
Task<void> placeTogether(const Placing& placing, const std::vector<WindowPlan>& plans) {
    const Context context = co_await quillo::context();
    std::vector<Job<void>> jobs;
    for (const WindowPlan& plan : plans) {
        if (plan.liveIndex) jobs.push_back(spawn(context, placeWindow(placing, plan)));
    }
    for (const auto& outcome : co_await joinAll(jobs)) {
        if (const auto exception = outcome.exception()) std::rethrow_exception(exception);
    }
    co_await checkpoint();
}

Task<void> placeAll(const Placing& placing, const std::vector<WindowPlan>& plans) {
    if (placing.desktop.platform.accessibility.movesTogether()) {
        co_await placeTogether(placing, plans);
        co_return;
    }
    for (const WindowPlan& plan : plans) {
        if (plan.liveIndex) co_await placeWindow(placing, plan);
    }
}

}  // namespace

Task<void> placeWindows(DesktopAccess& desktop, const ApplicationSnapshot& application,
                        std::vector<LiveWindow> live, PlacementTargets targets, const ItemSink& sink,
                        std::vector<Element>& back, Drift drift) {
    std::vector<WindowPlan> plans =
        planWindows(application.windows, infos(live), targets.savedDisplays, targets.currentDisplays, {}, {},
                    desktop.platform.windowServer.noWindows());
    return placeWindows(desktop, application, std::move(live), std::move(plans), targets, sink, back, drift);
}

Task<void> placeWindows(DesktopAccess& desktop, const ApplicationSnapshot& application,
                        std::vector<LiveWindow> live, std::vector<WindowPlan> plans, PlacementTargets targets,
                        const ItemSink& sink, std::vector<Element>& back, Drift drift) {
    std::vector<Rested> rested;
    const Placing placing{
        desktop,
        application,
        live,
        targets,
        sink,
        back,
        drift,
        rested,
        targets.desktops.empty() ? std::vector<NativeDesktop>{} : DesktopSpaces::current(desktop)};
    std::exception_ptr interruption;
    try {
        co_await placeAll(placing, plans);
        co_await correctDrift(placing);
    } catch (...) {
        interruption = std::current_exception();
    }
    for (Rested& one : rested)
        report(placing, one.savedIndex, one.pair.window, std::move(one.status), one.change);
    if (interruption) std::rethrow_exception(interruption);
    for (const WindowPlan& plan : plans) {
        if (!plan.liveIndex) sink.add(application, plan.savedIndex, RestoreReport::skipped{plan.skipReason});
    }
}

}  // namespace quillo::Restore
