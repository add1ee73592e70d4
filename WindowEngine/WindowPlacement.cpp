#include "WindowEngine/WindowPlacement.hpp"

#include <exception>
#include <utility>

#include "WindowEngine/Displays.hpp"
#include "WindowEngine/RestorePlan.hpp"

namespace quillo::Restore {
namespace {

using Status = RestoreReport::Status;
using failed = RestoreReport::failed;

Status disappeared() {
    return failed{"window disappeared after leaving full screen"};
}

/// One saved window and the live one that stands for it.
struct Pair {
    DesktopAccess& desktop;
    const WindowSnapshot& saved;
    LiveWindow window;
    PlacementDisplays displays;

    WindowPlan plan() const { return planPair(saved, window.info, displays.saved, displays.current); }

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

Task<Status> restorePlain(Pair& pair) {
    if (pair.plan().leaveFullscreen) {
        if (auto trouble = co_await leaveFullscreen(pair, "couldn't leave full screen")) co_return *trouble;
    }
    const Written written = co_await write(pair, "couldn't unminimize the window before moving it");
    if (written.trouble) co_return *written.trouble;
    if (!written.took()) co_return failed{"window refused position or minimized state"};
    // The move to the window's desktop stands here.
    if (written.adjusted()) co_return RestoreReport::adjusted{};
    co_return RestoreReport::restored{};
}

Task<Trouble> bringToTargetDisplay(Pair& pair) {
    if (pair.plan().leaveFullscreen) {
        auto trouble = co_await leaveFullscreen(pair, "couldn't leave full screen to change display");
        if (trouble) co_return trouble;
    }
    const Written written =
        co_await write(pair, "couldn't unminimize the window before entering full screen");
    if (!written.trouble && !written.result.positionSet)
        co_return failed{"couldn't place the window on its target display before entering full screen"};
    co_return written.trouble;
}

Status verifiedFullscreen(Pair& pair, const std::string& targetDisplay) {
    if (!pair.refresh() || !pair.window.info.isFullscreen)
        return failed{"full-screen state could not be verified"};
    const DisplaySnapshot* display = Displays::display(pair.window.info.frame, pair.displays.current);
    if (!display || display->id != targetDisplay)
        return failed{"entered full screen, but the target display could not be verified"};
    return RestoreReport::restored{};
}

Task<Status> restoreFullscreen(Pair& pair) {
    const WindowPlan plan = pair.plan();
    if (!plan.displayID) co_return failed{"no display"};
    if (plan.write) {
        if (auto trouble = co_await bringToTargetDisplay(pair)) co_return *trouble;
    }
    if (!co_await Accessibility::transitionFullscreen(pair.desktop, pair.window, true))
        co_return failed{"full-screen transition did not complete"};
    co_return verifiedFullscreen(pair, *plan.displayID);
}

std::vector<LiveWindowInfo> infos(const std::vector<LiveWindow>& windows) {
    std::vector<LiveWindowInfo> result;
    for (const LiveWindow& window : windows) result.push_back(window.info);
    return result;
}

}  // namespace

Task<void> placeWindows(DesktopAccess& desktop, const ApplicationSnapshot& application,
                        std::vector<LiveWindow> live, PlacementDisplays displays, const ItemSink& sink) {
    const std::vector<WindowPlan> plans =
        planWindows(application.windows, infos(live), displays.saved, displays.current);
    for (const WindowPlan& plan : plans) {
        if (!plan.liveIndex) continue;
        co_await checkpoint();
        const WindowSnapshot& saved = application.windows[static_cast<std::size_t>(plan.savedIndex)];
        Pair pair{desktop, saved, live[static_cast<std::size_t>(*plan.liveIndex)], displays};
        // Waiting for the windows before it took time: what it looks like now decides.
        pair.refresh();
        Status status = saved.isFullscreen ? co_await restoreFullscreen(pair) : co_await restorePlain(pair);
        sink.add(application, plan.savedIndex, std::move(status));
    }
    for (const WindowPlan& plan : plans) {
        if (!plan.liveIndex) sink.add(application, plan.savedIndex, RestoreReport::skipped{plan.skipReason});
    }
}

}  // namespace quillo::Restore
