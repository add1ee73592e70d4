// Displays that come and go, and how a workspace stands on each set of them.
#include <algorithm>
#include <utility>

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/DisplayLayouts.hpp"
#include "app/AppModel.hpp"
#include "settings/DisplayAnswers.hpp"
#include "settings/RunSelection.hpp"

namespace quillo {
namespace {

/// By whichever program.
Instant lastArranged(const Workspace& workspace) {
    const Instant saved = workspace.snapshot.capturedAt;
    return std::max(saved, workspace.lastRestoredAt.value_or(saved));
}

}  // namespace

const Workspace* AppModel::findInLibrary(const Uuid& id) const {
    const auto found = std::ranges::find(workspaces_, id, &Workspace::id);
    return found == workspaces_.end() ? nullptr : &*found;
}

void AppModel::offerLayout(const std::vector<DisplaySnapshot>& displays) {
    if (restoreRunning()) return;  // a whole workspace comes with them
    const auto workspace = std::ranges::max_element(workspaces_, {}, lastArranged);
    if (workspace == workspaces_.end() || !DisplayLayouts::has(workspace->snapshot, displays)) return;
    if (known_.reasonToAsk(*workspace)) return;  // somebody has changed it since
    if (arrangesByItself(workspace->id)) return arrange(workspace->id, Asker::itself);
    if (!settings_.offersLayouts) return;
    services_.shell.offer("Other displays are attached",
                          "“" + workspace->name + "” was arranged on them before.", "Arrange Windows",
                          [this, id = workspace->id] { arrange(id); });
}

void AppModel::arrange(const Uuid& id, Asker asker) {
    if (snapshotting()) return afterSnapshot_.push_back([this, id, asker] { arrange(id, asker); });
    const Workspace* workspace = findInLibrary(id);
    if (!workspace || !accessibilityGranted_ || restoreRunning() || known_.reasonToAsk(*workspace)) return;
    if (atWork()) return giveWay(*workspace, asker);
    Workspace open = *workspace;
    DisplayLayouts::keepRunning(open.snapshot, [this](const std::string& identifier) {
        return services_.desktop.platform.applications.running(identifier).has_value();
    });
    Restore::Options options = optionsFor(*workspace, CleanSlateMode::keep, false);
    options.enabledAdapters.clear();
    options.arrangesOnly = true;
    const bool mayAsk = asker != Asker::itself;
    if (!mayAsk) leaveUnclear(open.snapshot, options);
    if (open.snapshot.applications.empty()) return;
    start(std::move(open), std::move(options), true, mayAsk);
}

/// Takes out what stands on a display of which nothing tells which of those attached it is.
void AppModel::leaveUnclear(WorkspaceSnapshot& snapshot, Restore::Options& options) const {
    const auto present = Displays::current(services_.desktop.platform.screens);
    snapshot = DisplayLayouts::arrangedFor(std::move(snapshot), present);
    const auto unclear = DisplayTwins::match(snapshot.displays, present, options.displays).unclear;
    RunSelection left;
    for (const ApplicationSnapshot& application : snapshot.applications) {
        for (const WindowSnapshot& window : application.windows)
            if (window.displayID && std::ranges::find(unclear, *window.displayID) != unclear.end())
                left.excluded.windows.insert(
                    CaptureFilter::windowKey(application.bundleIdentifier, window.index));
    }
    left.apply(snapshot, options);
}

void AppModel::keepLayout(const Workspace& workspace) {
    if (!accessibilityGranted_) return refuseWithoutAccess();
    if (refusesAnother()) return;
    keepingLayout_.start(executor(), keepLayoutTask(workspace.id), [this] { Q_EMIT busyChanged(); });
    Q_EMIT busyChanged();
}

Task<> AppModel::keepLayoutTask(Uuid id) {
    const WorkspaceSnapshot now = co_await Capture::snapshot(services_.desktop, settings_.captureOptions());
    co_await checkpoint();
    if (const auto flaw = captureFlaw(&now.displays)) {
        show("The layout is not kept: " + CaptureHealth::words(*flaw), ToastKind::refusal);
        co_return;
    }
    const Result<bool> kept = edit(id, "Keep Layout", [this, &now](Workspace& stored) -> Result<void> {
        WorkspaceSnapshot arranged = DisplayLayouts::arranged(
            stored.snapshot, now,
            DisplayAnswers(services_.defaults)
                .find(DisplayLayouts::displaysFor(stored.snapshot, now.displays), now.displays));
        if (!DisplayLayouts::has(arranged, now.displays))
            return fail(ErrorKind::notFound, "none of its windows is open");
        stored.snapshot = std::move(arranged);
        return {};
    });
    if (told("Couldn't keep the layout", kept)) showEdited("Kept the layout for these displays", id, *kept);
}

void AppModel::removeLayout(const Workspace& workspace, const DisplayLayout& layout) {
    const Uuid id = workspace.id;
    const Result<bool> removed = edit(id, "Remove Layout", [&layout](Workspace& stored) -> Result<void> {
        DisplayLayouts::remove(stored.snapshot, layout);
        return {};
    });
    if (told("Couldn't remove the layout", removed)) showEdited("Removed the layout", id, *removed);
}

void AppModel::setArrangesByItself(const Uuid& workspace, bool itself) {
    if (arrangesByItself(workspace) == itself) return;
    AppSettings settings = settings_;
    if (itself)
        settings.arrangedWorkspaces.insert(workspace.lower());
    else
        settings.arrangedWorkspaces.erase(workspace.lower());
    setSettings(std::move(settings));
}

bool AppModel::asksAboutTwins(const Workspace& workspace, const Restore::Options& options, bool part) {
    const auto present = Displays::current(services_.desktop.platform.screens);
    const auto saved = DisplayLayouts::displaysFor(workspace.snapshot, present);
    const DisplayTwins::Matching matching = DisplayTwins::match(saved, present, options.displays);
    if (matching.unclear.empty()) return false;
    TwinQuestion question{
        .workspace = workspace.name, .applications = {}, .screens = matching.choices.size()};
    for (const ApplicationSnapshot& application :
         DisplayLayouts::arrangedFor(workspace.snapshot, present).applications) {
        const bool there = std::ranges::any_of(application.windows, [&](const WindowSnapshot& window) {
            return window.displayID == matching.unclear.front();
        });
        if (there) question.applications.push_back(shownName(application));
    }
    std::vector<Rect> frames;
    for (const std::string& id : matching.choices)
        frames.push_back(std::ranges::find(present, id, &DisplaySnapshot::id)->frame);
    forgetQuestion();
    twinsAsked_ = TwinsAsked{workspace, options, part, {saved.begin(), saved.end()}, present, matching};
    twinQuestion_ = std::move(question);
    services_.surfaces.numberScreens(frames);
    tellQuestion();
    Q_EMIT busyChanged();
    openMain();
    return true;
}

void AppModel::answerTwin(std::optional<std::size_t> screen) {
    if (!twinsAsked_) return;
    TwinsAsked asked = *std::move(twinsAsked_);
    dropQuestion();
    const bool other = occupied() || snapshotting();
    if (!screen || *screen >= asked.matching.choices.size() || other) return;
    DisplayTwins::Pairs& pairs = asked.options.displays;
    pairs[asked.matching.unclear.front()] = asked.matching.choices[*screen];
    told("Couldn't keep which display is which",
         DisplayAnswers(services_.defaults).remember(asked.saved, asked.present, pairs));
    twinsTask_.start(executor(), startTold(std::move(asked)));
}

/// In a turn of its own, so that the next question comes once this one has gone.
Task<> AppModel::startTold(TwinsAsked told) {
    const bool other = asked_ || twinsAsked_ || occupied() || snapshotting();
    if (!other) start(told.workspace, told.options, told.part);
    co_return;
}

}  // namespace quillo
