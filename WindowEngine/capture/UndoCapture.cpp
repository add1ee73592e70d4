#include "WindowEngine/capture/UndoCapture.hpp"

#include <algorithm>
#include <optional>
#include <set>
#include <span>
#include <unordered_map>
#include <utility>

#include "WindowEngine/desktop/DesktopSpaces.hpp"
#include "WindowEngine/integrations/Adapters.hpp"
#include "WindowEngine/records/UndoCoding.hpp"
#include "WindowEngine/support/StableSort.hpp"

namespace quillo::Capture {
namespace {

/// Browsers have private windows; a file manager has none.
bool maybePrivate(const ApplicationSnapshot& application, const std::set<std::string>& integrations) {
    const ContextAdapter* adapter = Adapters::adapter(application.bundleIdentifier, integrations);
    return adapter && adapter->id() != "finder";
}

void withholdContents(WorkspaceSnapshot& snapshot, const std::set<std::string>& integrations) {
    for (ApplicationSnapshot& application : snapshot.applications) {
        if (!maybePrivate(application, integrations)) continue;
        for (WindowSnapshot& window : application.windows) {
            window.title.reset();
            window.documentURL.reset();
            if (window.tabs) window.tabs->assign(window.tabs->size(), {});
        }
    }
}

using Processes = std::unordered_map<WindowNumber, ProcessID>;

/// Tells an ordinary desktop that holds a window, and no other does.
class OrdinarySpaces {
  public:
    explicit OrdinarySpaces(DesktopAccess& desktop) : desktop_(desktop) {}

    std::optional<std::int64_t> operator()(WindowNumber number) const {
        const auto facts = desktop_.platform.windowServer.facts(std::span(&number, 1));
        if (facts.empty() || facts.front().spaces.size() != 1) return std::nullopt;
        const SpaceID space = facts.front().spaces.front();
        const auto ordinary = DesktopSpaces::current(desktop_);
        if (std::ranges::find(ordinary, space, &NativeDesktop::id) == ordinary.end()) return std::nullopt;
        return static_cast<std::int64_t>(space);
    }

  private:
    DesktopAccess& desktop_;
};

/// A window with native tabs is each of its tabs: any of them that is left stands for it.
std::vector<UndoWindow> windowsOf(const ApplicationSnapshot& application, const std::vector<Seen>& seen,
                                  const Processes& processes, const OrdinarySpaces& space) {
    std::set<std::int64_t> indices;
    for (const WindowSnapshot& window : application.windows) indices.insert(window.index);
    std::vector<UndoWindow> windows;
    for (const WindowSnapshot& window : application.windows) {
        for (const Seen& one : seen) {
            const bool itself = one.index == window.index;
            const bool folded = window.tabs && one.frame == window.frame && !indices.contains(one.index);
            if (!itself && !folded) continue;
            const auto process = processes.find(one.number);
            windows.push_back({.application = application.bundleIdentifier,
                               .index = window.isFullscreen ? one.index : window.index,
                               .number = one.number,
                               .process = process == processes.end() ? 0 : process->second,
                               .space = window.isFullscreen ? space(one.number) : std::nullopt});
        }
    }
    return windows;
}

UndoApplication noted(const RunningApplication& application) {
    return {.identifier = *application.bundleIdentifier,
            .pid = application.pid,
            .launchedAt = application.launchDate,
            .hidden = application.isHidden};
}

/// What a clean slate may minimize without its ever being saved.
std::vector<UndoWindow> windowsOfOthers(DesktopAccess& desktop, const WorkspaceSnapshot& snapshot,
                                        const Processes& processes) {
    std::vector<UndoWindow> windows;
    for (const RunningApplication& application : desktop.platform.applications.running()) {
        const bool saved =
            application.bundleIdentifier &&
            std::ranges::find(snapshot.applications, *application.bundleIdentifier,
                              &ApplicationSnapshot::bundleIdentifier) != snapshot.applications.end();
        if (saved || application.isHidden || application.activationPolicy != ActivationPolicy::regular)
            continue;
        for (const LiveWindow& window : Accessibility::windows(desktop, application.pid, false)) {
            if (!window.windowID || window.info.isMinimized) continue;
            const auto process = processes.find(*window.windowID);
            windows.push_back({.application = {},
                               .number = *window.windowID,
                               .process = process == processes.end() ? 0 : process->second});
        }
    }
    return windows;
}

}  // namespace

Task<UndoRecord> undoRecord(DesktopAccess& desktop, Options options, Workspace workspace,
                            CleanSlateMode mode) {
    const std::set<std::string> integrations = options.enabledAdapters;
    const bool quits = mode == CleanSlateMode::quit;
    if (!quits) options.enabledAdapters.clear();
    options.recoverHidden = true;   // a restore looks for those too
    options.asksPatiently = quits;  // else a restore would begin late for documents that nobody closes
    SeenWindows seen;
    UndoRecord record{.before = std::move(workspace)};
    record.restored = std::exchange(record.before.id, UndoRecord::beforeID);
    record.before.snapshot = co_await snapshot(desktop, std::move(options), &seen);
    record.before.cleanSlate = mode;
    record.before.createdAt = record.before.updatedAt = record.before.snapshot.capturedAt;

    const std::vector<WindowListEntry> list = desktop.platform.windowServer.windowList();
    Processes processes;
    std::unordered_map<WindowNumber, std::size_t> places;
    for (const WindowListEntry& entry : list) {
        processes.emplace(entry.number, entry.process);
        places.emplace(entry.number, places.size());
    }
    for (const ApplicationSnapshot& application : record.before.snapshot.applications) {
        std::ranges::move(
            windowsOf(application, seen[application.bundleIdentifier], processes, OrdinarySpaces(desktop)),
            std::back_inserter(record.windows));
        if (const auto running = desktop.platform.applications.running(application.bundleIdentifier))
            record.applications.push_back(noted(*running));
    }
    const auto place = [&](const UndoWindow& window) {
        const auto found = places.find(window.number);
        return found == places.end() ? places.size() : found->second;
    };
    sortStablyByKey(record.windows, place);
    if (mode == CleanSlateMode::hide)
        record.others = windowsOfOthers(desktop, record.before.snapshot, processes);
    UndoCoding::takeFullscreenApart(record);
    if (!quits) withholdContents(record.before.snapshot, integrations);
    co_return record;
}

}  // namespace quillo::Capture
