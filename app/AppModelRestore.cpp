// Restoring a workspace, with the panel that shows it.
#include <algorithm>
#include <utility>

#include "WindowEngine/capture/UndoCapture.hpp"
#include "WindowEngine/desktop/DesktopSpaces.hpp"
#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/DisplayLayouts.hpp"
#include "WindowEngine/restore/RestoreScope.hpp"
#include "WindowEngine/support/Text.hpp"
#include "app/AppModel.hpp"
#include "settings/DisplayAnswers.hpp"

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

void AppModel::restore(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate, Asker asker,
                       const RunSelection& selection) {
    if (snapshotting()) {
        return afterSnapshot_.push_back([this, workspace, cleanSlate, asker, selection] {
            restore(workspace, cleanSlate, asker, selection);
        });
    }
    if (restoreRunning() && restoreRun_->kind() == RestoreRun::Kind::restore &&
        restoreRun_->workspace().id == workspace.id)
        return;  // by a double click
    if (asker != Asker::person && atWork()) return giveWay(workspace, asker);
    if (refusesAnother()) return;
    Asked asked{workspace, cleanSlate, asker, selection};
    if (mustAskFor(workspace, asker)) return ask(std::move(asked));
    begin(asked, false);
}

void AppModel::restoreLastSession() {
    if (!sessions_.empty()) restore(Workspace(sessions_.front()), sessions_.front().cleanSlate);
}

void AppModel::giveWay(const Workspace& workspace, Asker asker) {
    if (asker == Asker::link) openMain();  // its person is there, and sees what comes first
    if (asksAbout(workspace.id)) return;
    show("“" + text::clipped(workspace.name, 60) +
             (asker == Asker::itself ? "” was due" : "” was asked for") + ", but Quillo was busy.",
         ToastKind::refusal);
}

bool AppModel::mustAskFor(const Workspace& workspace, Asker asker) const {
    const bool strangersAsk = asker == Asker::link || asker == Asker::program;
    return (strangersAsk && !settings_.automationOf(workspace.id).withoutAsking) ||
           known_.reasonToAsk(workspace);
}

bool AppModel::asksAbout(const Uuid& workspace) const {
    return (asked_ && asked_->workspace.id == workspace) ||
           (twinsAsked_ && twinsAsked_->workspace.id == workspace);
}

Restore::Options AppModel::optionsFor(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate,
                                      bool agreed) const {
    const auto present = Displays::current(services_.desktop.platform.screens);
    const auto saved = DisplayLayouts::displaysFor(workspace.snapshot, present);
    Restore::Options options{.cleanSlate = cleanSlate,
                             .enabledAdapters = settings_.enabledAdapters,
                             .displays = DisplayAnswers(services_.defaults).find(saved, present)};
    known_.permit(workspace, agreed, options);
    return options;
}

void AppModel::ask(Asked asked) {
    if (asked_ == asked) {  // by a double click
        if (question_) openMain();
        return;
    }
    forgetQuestion();
    asked_ = std::move(asked);
    questionTask_.start(executor(), prepareQuestion(*asked_), [this] {
        if (asked_ && !question_) dropQuestion();
    });
    tellQuestion();
    Q_EMIT busyChanged();
}

/// What would be done is looked up while the desktop stays as it is.
Task<> AppModel::prepareQuestion(Asked asked) {
    const CleanSlateMode cleanSlate = asked.cleanSlate.value_or(CleanSlateMode::keep);
    Workspace& workspace = asked.workspace;
    Restore::Options options = optionsFor(workspace, cleanSlate, true);
    asked.selection.apply(workspace.snapshot, options);
    const RestorePreview preview = co_await Restore::preview(services_.desktop, workspace.snapshot, options);
    co_await checkpoint();
    question_ = ResumeQuestion{.reason = known_.reasonToAsk(asked.workspace),
                               .asker = asked.asker,
                               .workspace = workspace.id,
                               .name = workspace.name,
                               .consequences = Restore::consequences(services_.desktop.platform.applications,
                                                                     preview, workspace, cleanSlate)};
    if (!question_->reason) question_->consequences.launchedLater.clear();  // the answer is for this time
    Q_EMIT questionChanged();
    openMain();
}

/// Without a word; whether there was one.
bool AppModel::forgetQuestion() {
    const bool was = asked_ || twinsAsked_;
    questionTask_.cancel();
    question_.reset();
    asked_.reset();
    if (twinsAsked_) services_.surfaces.numberScreens({});
    twinQuestion_.reset();
    twinsAsked_.reset();
    return was;
}

void AppModel::tellQuestion() {
    Q_EMIT questionChanged();
    Q_EMIT twinQuestionChanged();
}

void AppModel::dropQuestion() {
    if (!forgetQuestion()) return;
    tellQuestion();
    Q_EMIT busyChanged();
}

void AppModel::answerQuestion(bool resume) {
    if (!question_) return;
    if (!resume || occupied() || snapshotting()) return dropQuestion();
    Asked asked = *asked_;
    asked.asker = Asker::person;  // now, whoever it was before
    // Less than the workspace says, of it or to other applications, is not agreed to for the next time.
    const CleanSlateMode says = asked.workspace.cleanSlate.value_or(CleanSlateMode::keep);
    const bool forGood =
        asked.selection.empty() && (says == CleanSlateMode::keep || says == asked.cleanSlate);
    const bool strange = known_.reasonToAsk(asked.workspace).has_value();
    const Result<void> noted = strange && forGood ? known_.agreed(asked.workspace) : Result<void>{};
    begin(asked, strange);
    noteProvenance(noted);
}

void AppModel::begin(const Asked& asked, bool agreedNow) {
    Restore::Options options = optionsFor(asked.workspace, asked.cleanSlate, agreedNow);
    options.bringsForward = asked.asker == Asker::person || asked.asker == Asker::link;  // who has clicked
    Workspace part = asked.workspace;
    asked.selection.apply(part.snapshot, options);
    start(std::move(part), std::move(options), !asked.selection.excluded.empty());
}

void AppModel::start(Workspace workspace, Restore::Options options, bool part, bool mayAsk) {
    if (mayAsk && asksAboutTwins(workspace, options, part)) return;
    Workspace shown = workspace;  // as the restore goes about it, so that each line finds its window
    shown.snapshot = DisplayLayouts::fitted(
        std::move(shown.snapshot), Displays::current(services_.desktop.platform.screens), options.displays);
    shown.snapshot = Restore::scopeOf(std::move(shown.snapshot), options.limited).snapshot;
    RestoreRun::Start found = startOf(shown.snapshot);
    found.part = part;
    const auto run = std::make_shared<RestoreRun>(std::move(shown), found);
    start(run, runRestore(run.get(), std::move(workspace), std::move(options)));
}

/// Takes the place of the run before.
void AppModel::start(std::shared_ptr<RestoreRun> run, Task<> task) {
    stopWaiting();
    RestoreRun* const started = run.get();
    dispose(std::exchange(restoreRun_, std::move(run)));
    const bool wasAsked = forgetQuestion();
    panelTimer_.cancel();
    reportReopened_ = false;
    started->begin(executor(), std::move(task), [this, started] {
        if (!started->report()) restoreEnded(*started, {.items = started->items(), .cancelled = true});
    });
    if (wasAsked) tellQuestion();
    Q_EMIT restoreChanged();
    Q_EMIT busyChanged();
    closePreview();
    panelDismissed_ = false;
    showRestorePanel();
}

void AppModel::showRestorePanel() {
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
    const Restore::OnItem onItem = [this, run](const RestoreReport::Item& item) { restored(*run, item); };
    const Restore::KeepRecord keep = undoKeeper();
    RestoreReport report;
    std::shared_ptr<Restore::LateWindows> late;
    co_await lateTask_.ended();  // it was stopped, and may be in the midst of placing a window
    if (services_.desktop.platform.accessibility.trusted()) {
        UndoRecord before =
            co_await Capture::undoRecord(services_.desktop, settings_.captureOptions(), workspace,
                                         options.cleanSlate.value_or(CleanSlateMode::keep));
        co_await checkpoint();
        if (!options.arrangesOnly) late = beginWaiting();
        options.late = late.get();
        report = co_await Restore::runUndoably(services_.desktop, std::move(workspace), options, onItem,
                                               std::move(before), keep);
    } else {  // it says so
        report = co_await Restore::run(services_.desktop, std::move(workspace), options, onItem);
    }
    const Context context = co_await quillo::context();
    if (context.stopRequested()) report.cancelled = true;
    if (report.cancelled) stopWaiting();
    if (late) late->runEnded(std::chrono::minutes(settings_.lateMinutes));
    restoreEnded(*run, std::move(report));
    Q_EMIT awaitedChanged();
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
    const bool isRestore = run.kind() == RestoreRun::Kind::restore;
    const bool inLibrary = std::ranges::find(workspaces_, workspace, &Workspace::id) != workspaces_.end();
    if (isRestore && inLibrary && restoreRun_.get() == &run) lastRuns_[workspace] = restoreRun_;
    run.finish(std::move(report));
    windowTally_ = {};  // windows that it made go are nobody's trouble
    if (isRestore && !cancelled) {
        if (!run.ofPart() && !store_.updateLastRestored(run.workspace().id, wallNow())) {
            show("Restored, but couldn't update last-used time", ToastKind::refusal);
        }
        reload();
    }
    if (restoreRun_.get() != &run) return;  // whoever heard of its end has begun another
    closePanelLater(run);
    Q_EMIT restoreChanged();
    Q_EMIT busyChanged();
}

void AppModel::closePanelLater(const RestoreRun& run) {
    panelTimer_.start(executor(), closePanelAfter(run.clean() ? cleanPanelTime : troubledPanelTime));
}

/// A new run takes this timer's place before it ends, or begins its own only at its end.
Task<> AppModel::closePanelAfter(Duration delay) {
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
    panelDismissed_ = true;
    services_.surfaces.closePanel(PanelID::restore);
}

}  // namespace quillo
