// Restoring a workspace, with the panel that shows it.
#include <algorithm>
#include <utility>

#include "WindowEngine/desktop/DesktopSpaces.hpp"
#include "WindowEngine/restore/RestoreScope.hpp"
#include "app/AppModel.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr PanelPlace panelPlace{.width = 380, .anchor = PanelAnchor::bottomTrailing};
/// Opened by the person, it is read like a dialog of the main window.
constexpr PanelPlace reportPlace{
    .width = 380, .anchor = PanelAnchor::bottomTrailing, .activates = true, .staysOnTop = false};
constexpr Duration cleanPanelTime = 4s, troubledPanelTime = 10s;
constexpr Duration readingTime = 2s;  // until it is looked at again whether a panel is still in use

}  // namespace

void AppModel::restore(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate, Asker asker) {
    if (snapshotting()) {
        return afterSnapshot_.push_back(
            [this, workspace, cleanSlate, asker] { restore(workspace, cleanSlate, asker); });
    }
    if (restoreRunning() && restoreRun_->workspace().id == workspace.id) return;  // by a double click
    if (refusesAnother()) return;
    if (mustAskFor(workspace, asker)) return ask(workspace, cleanSlate, asker);
    begin(workspace, cleanSlate, false);
}

void AppModel::restoreLastSession() {
    if (!sessions_.empty()) restore(Workspace(sessions_.front()), sessions_.front().cleanSlate);
}

bool AppModel::mustAskFor(const Workspace& workspace, Asker asker) const {
    const bool bidden = asker == Asker::person || settings_.automationOf(workspace.id).withoutAsking;
    return !bidden || known_.reasonToAsk(workspace);
}

void AppModel::ask(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate, Asker asker) {
    Asked asked{workspace, cleanSlate, asker};
    // A double click asks twice; and what others ask for does not slip under the person's hand.
    if (asked_ == asked || (asked_ && asker != Asker::person)) {
        if (question_) openMain();
        return;
    }
    asked_ = std::move(asked);
    question_.reset();
    const CleanSlateMode mode = cleanSlate.value_or(CleanSlateMode::keep);
    questionTask_.start(executor(), prepareQuestion(asked_->workspace, mode, asker), [this] {
        if (!question_) dropQuestion();
    });
    Q_EMIT questionChanged();
    Q_EMIT busyChanged();
}

/// What would be done is looked up while the desktop stays as it is.
Task<> AppModel::prepareQuestion(Workspace workspace, CleanSlateMode cleanSlate, Asker asker) {
    Restore::Options options{.cleanSlate = cleanSlate, .enabledAdapters = settings_.enabledAdapters};
    known_.permit(workspace, true, options);
    const RestorePreview preview = co_await Restore::preview(services_.desktop, workspace.snapshot, options);
    co_await checkpoint();
    question_ = ResumeQuestion{.reason = known_.reasonToAsk(workspace),
                               .asker = asker,
                               .workspace = workspace.id,
                               .name = workspace.name,
                               .consequences = Restore::consequences(services_.desktop.platform.applications,
                                                                     preview, workspace, cleanSlate)};
    Q_EMIT questionChanged();
    openMain();
}

/// Without a word; whether there was one.
bool AppModel::forgetQuestion() {
    questionTask_.cancel();
    question_.reset();
    return std::exchange(asked_, std::nullopt).has_value();
}

void AppModel::dropQuestion() {
    if (!forgetQuestion()) return;
    Q_EMIT questionChanged();
    Q_EMIT busyChanged();
}

void AppModel::answerQuestion(bool resume) {
    if (!question_) return;
    if (!resume || capturing() || snapshotting() || draft_ || restoreRunning()) return dropQuestion();
    const Asked asked = *asked_;
    // Less done to other applications than the workspace says is not agreed to for the next time.
    const CleanSlateMode says = asked.workspace.cleanSlate.value_or(CleanSlateMode::keep);
    const bool forGood = says == CleanSlateMode::keep || says == asked.cleanSlate;
    const bool strange = known_.reasonToAsk(asked.workspace).has_value();
    const Result<void> noted = strange && forGood ? known_.agreed(asked.workspace) : Result<void>{};
    begin(asked.workspace, asked.cleanSlate, strange);
    noteProvenance(noted);
}

void AppModel::begin(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate, bool agreedNow) {
    Restore::Options options{
        .cleanSlate = cleanSlate, .enabledAdapters = settings_.enabledAdapters, .bringsForward = true};
    known_.permit(workspace, agreedNow, options);
    Workspace shown = workspace;  // as the restore goes about it, so that each line finds its window
    shown.snapshot = Restore::scopeOf(shown.snapshot, options.limited).snapshot;
    const RestoreRun::Start start = startOf(shown.snapshot);
    const auto run = std::make_shared<RestoreRun>(std::move(shown), start);
    dispose(std::exchange(restoreRun_, run));
    const bool wasAsked = forgetQuestion();
    panelTimer_.cancel();
    reportReopened_ = false;
    run->begin(executor(), runRestore(run.get(), workspace, options), [this, started = run.get()] {
        if (!started->report()) restoreEnded(*started, {.items = started->items(), .cancelled = true});
    });
    if (wasAsked) Q_EMIT questionChanged();
    Q_EMIT restoreChanged();
    Q_EMIT busyChanged();
    services_.surfaces.showPanel(PanelID::restore, panelPlace);
}

RestoreRun::Start AppModel::startOf(const WorkspaceSnapshot& snapshot) const {
    DesktopAccess desktop = services_.desktop;
    RestoreRun::Start start;
    const std::vector<SpaceID> shown = desktop.platform.windowServer.spacesInFront();
    std::set<std::int64_t> inFront;
    for (const NativeDesktop& one : DesktopSpaces::current(desktop)) {
        if (std::ranges::find(shown, one.id) != shown.end()) inFront.insert(one.index);
    }
    if (inFront.size() == 1) start.desktop = *inFront.begin();
    for (const ApplicationSnapshot& application : snapshot.applications) {
        if (desktop.platform.applications.running(application.bundleIdentifier)) continue;
        const bool documents = std::ranges::any_of(
            application.windows, [](const WindowSnapshot& window) { return window.documentURL.has_value(); });
        start.otherItems += documents ? 2 : 1;  // launched, and what it is to open
    }
    return start;
}

/// The run owns this task.
Task<> AppModel::runRestore(RestoreRun* run, Workspace workspace, Restore::Options options) {
    RestoreReport report = co_await Restore::run(services_.desktop, std::move(workspace), options,
                                                 [this, run](const auto& item) { restored(*run, item); });
    const Context context = co_await quillo::context();
    if (context.stopRequested()) report.cancelled = true;
    restoreEnded(*run, std::move(report));
}

/// With the first window that is back, what was asked for it makes room.
void AppModel::restored(RestoreRun& run, const RestoreReport::Item& item) {
    const auto isBack = [](const RestoreReport::Item& one) {
        const Verdict verdict = outcomeOf(one.status).verdict;
        return verdict == Verdict::back || verdict == Verdict::differs;
    };
    if (isBack(item) && std::ranges::none_of(run.items(), isBack)) services_.surfaces.stepAside();
    run.add(item);
}

void AppModel::restoreEnded(RestoreRun& run, RestoreReport report) {
    const bool cancelled = report.cancelled;
    const Uuid workspace = run.workspace().id;
    const bool inLibrary = std::ranges::find(workspaces_, workspace, &Workspace::id) != workspaces_.end();
    if (inLibrary && restoreRun_.get() == &run) lastRuns_[workspace] = restoreRun_;
    run.finish(std::move(report));
    if (!cancelled) {
        if (!store_.updateLastRestored(run.workspace().id, wallNow())) {
            show("Restored, but couldn't update last-used time", ToastKind::refusal);
        }
        reload();
    }
    if (restoreRun_.get() != &run) return;  // whoever heard of its end has begun another
    panelTimer_.start(executor(), closePanelLater(run.clean() ? cleanPanelTime : troubledPanelTime));
    Q_EMIT restoreChanged();
    Q_EMIT busyChanged();
}

/// A new run takes this timer's place before it ends, or begins its own only at its end: see
/// restoreWorkspace.
Task<> AppModel::closePanelLater(Duration delay) {
    co_await sleepFor(delay);
    while (services_.surfaces.panelInUse(PanelID::restore)) co_await sleepFor(readingTime);
    services_.surfaces.closePanel(PanelID::restore);
}

void AppModel::showReport(const Uuid& workspace) {
    const auto found = lastRuns_.find(workspace);
    if (found == lastRuns_.end() || restoreRunning()) return;
    panelTimer_.cancel();
    reportReopened_ = true;
    dispose(std::exchange(restoreRun_, found->second));
    Q_EMIT restoreChanged();
    services_.surfaces.showPanel(PanelID::restore, reportPlace);
}

bool AppModel::reportShown() const {
    return reportReopened_ && services_.surfaces.panelVisible(PanelID::restore);
}

void AppModel::closeRestorePanel() {
    if (restoreRunning()) restoreRun_->cancel();
    services_.surfaces.closePanel(PanelID::restore);
}

}  // namespace quillo
