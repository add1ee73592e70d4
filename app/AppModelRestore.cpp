// Restoring a workspace, with the panel that shows it.
#include <utility>

#include "WindowEngine/restore/RestoreScope.hpp"
#include "app/AppModel.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr PanelPlace panelPlace{.width = 380, .anchor = PanelAnchor::bottomTrailing};
constexpr Duration cleanPanelTime = 4s, troubledPanelTime = 10s;

}  // namespace

void AppModel::restore(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate) {
    if (snapshotting()) {
        return afterSnapshot_.push_back([this, workspace, cleanSlate] { restore(workspace, cleanSlate); });
    }
    if (restoreRunning() && restoreRun_->workspace().id == workspace.id) return;  // by a double click
    if (refusesAnother()) return;
    if (const auto reason = known_.reasonToAsk(workspace)) return ask(*reason, workspace, cleanSlate);
    begin(workspace, cleanSlate, false);
}

void AppModel::ask(ReasonToAsk reason, const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate) {
    Asked asked{workspace, cleanSlate};
    if (asked_ == asked) {  // a double click asks twice
        if (question_) openMain();
        return;
    }
    asked_ = std::move(asked);
    question_.reset();
    const CleanSlateMode mode = cleanSlate.value_or(CleanSlateMode::keep);
    questionTask_.start(executor(), prepareQuestion(reason, asked_->workspace, mode), [this] {
        if (!question_) dropQuestion();
    });
    Q_EMIT questionChanged();
    Q_EMIT busyChanged();
}

/// What would be done is looked up while the desktop stays as it is.
Task<> AppModel::prepareQuestion(ReasonToAsk reason, Workspace workspace, CleanSlateMode cleanSlate) {
    Restore::Options options{.cleanSlate = cleanSlate, .enabledAdapters = settings_.enabledAdapters};
    known_.permit(workspace, true, options);
    const RestorePreview preview = co_await Restore::preview(services_.desktop, workspace.snapshot, options);
    co_await checkpoint();
    question_ = ResumeQuestion{.reason = reason,
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
    const Result<void> noted = forGood ? known_.agreed(asked.workspace) : Result<void>{};
    begin(asked.workspace, asked.cleanSlate, true);
    noteProvenance(noted);
}

void AppModel::begin(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate, bool agreedNow) {
    Restore::Options options{.cleanSlate = cleanSlate, .enabledAdapters = settings_.enabledAdapters};
    known_.permit(workspace, agreedNow, options);
    Workspace shown = workspace;  // as the restore goes about it, so that each line finds its window
    shown.snapshot = Restore::scopeOf(shown.snapshot, options.limited).snapshot;
    const auto run = std::make_shared<RestoreRun>(std::move(shown));
    dispose(std::exchange(restoreRun_, run));
    const bool wasAsked = forgetQuestion();
    panelTimer_.cancel();
    services_.surfaces.showPanel(PanelID::restore, panelPlace);
    run->begin(executor(), runRestore(run.get(), workspace, options), [this, started = run.get()] {
        if (!started->report()) restoreEnded(*started, {.items = started->items(), .cancelled = true});
    });
    if (wasAsked) Q_EMIT questionChanged();
    Q_EMIT restoreChanged();
    Q_EMIT busyChanged();
}

/// The run owns this task.
Task<> AppModel::runRestore(RestoreRun* run, Workspace workspace, Restore::Options options) {
    RestoreReport report = co_await Restore::run(services_.desktop, std::move(workspace), options,
                                                 [run](const auto& item) { run->add(item); });
    const Context context = co_await quillo::context();
    if (context.stopRequested()) report.cancelled = true;
    restoreEnded(*run, std::move(report));
}

void AppModel::restoreEnded(RestoreRun& run, RestoreReport report) {
    const bool cancelled = report.cancelled;
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
    services_.surfaces.closePanel(PanelID::restore);
}

void AppModel::closeRestorePanel() {
    if (restoreRunning()) restoreRun_->cancel();
    services_.surfaces.closePanel(PanelID::restore);
}

}  // namespace quillo
