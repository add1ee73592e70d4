// Capturing the desktop for the person: the review, and the preview of what is open now.
#include <utility>

#include "WindowEngine/capture/LeftOut.hpp"
#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "WindowEngine/support/Text.hpp"
#include "app/AppModel.hpp"

namespace quillo {

void AppModel::beginCapture(std::optional<Workspace> updating, bool testRestoreAfterSave) {
    if (!accessibilityGranted_) return openMain();
    if (capturing() || snapshotting()) return;
    if (restoreRunning()) return openMain();
    capturing_ = true;
    const bool wasAsked = forgetQuestion();
    captureTask_.start(executor(), captureForReview(std::move(updating), testRestoreAfterSave),
                       [this] { captureEnded(nullptr); });
    if (wasAsked) Q_EMIT questionChanged();
    Q_EMIT capturingChanged();
    Q_EMIT busyChanged();
}

Task<> AppModel::captureForReview(std::optional<Workspace> updating, bool testRestoreAfterSave) {
    WorkspaceSnapshot snapshot = co_await Capture::snapshot(services_.desktop, settings_.captureOptions());
    captureEnded(
        std::make_shared<CaptureDraft>(std::move(snapshot), std::move(updating), testRestoreAfterSave));
    openMain();
}

/// Without a draft where the task ended early; what is under review then stays.
void AppModel::captureEnded(std::shared_ptr<CaptureDraft> draft) {
    if (!std::exchange(capturing_, false)) return;
    if (draft) setDraft(std::move(draft));
    Q_EMIT capturingChanged();
    Q_EMIT busyChanged();
}

void AppModel::setDraft(std::shared_ptr<CaptureDraft> draft) {
    dispose(std::exchange(draft_, std::move(draft)));
    Q_EMIT draftChanged();
    Q_EMIT busyChanged();
}

void AppModel::dismissDraft() {
    if (draft_) setDraft(nullptr);
}

void AppModel::commit(CaptureDraft& reviewed) {
    if (draft_.get() != &reviewed) return;
    const std::shared_ptr<CaptureDraft> draft = draft_;
    const Instant time = wallNow();
    Workspace workspace =
        draft->updating() ? *draft->updating() : Workspace::create(Uuid::random(), {}, {}, {}, {}, time);
    std::string name = text::trim(draft->name());
    if (name.empty()) name = "Untitled";
    const bool keepsName = draft->updating() && name == draft->updating()->name;
    workspace.name = keepsName ? name : uniqueName(name, workspaces_);
    workspace.icon = draft->icon();
    workspace.color = draft->color();
    // What it does to other applications stays only where that was chosen here.
    if (draft->updating() && !known_.isCleanSlateChosenHere(*draft->updating())) workspace.cleanSlate.reset();
    workspace.snapshot = LeftOut::carriedOver(
        workspace.snapshot, draft->filteredSnapshot(),
        {Capture::neverSaved(services_.desktop.platform.applications, settings_.captureOptions()),
         settings_.excludedDomains});
    workspace.updatedAt = time;
    if (const Result<void> saved = store_.save(workspace); !saved) {
        return show("Couldn't save: " + saved.error().text);
    }
    const Result<void> noted = known_.savedHere(workspace);
    dispose(std::exchange(draft_, nullptr));  // before anybody hears of it: nothing saves it once more
    reload();
    Q_EMIT draftChanged();
    Q_EMIT busyChanged();
    show("Saved " + workspace.name);
    noteProvenance(noted);
    if (draft->testRestoreAfterSave()) restore(workspace, std::nullopt);
}

void AppModel::refreshCurrentSnapshot() {
    const bool other = capturing() || snapshotting() || restoreRunning();
    if (!accessibilityGranted_ || refreshingCurrentSnapshot() || other) return;
    refreshingCurrentSnapshot_ = true;
    currentSnapshotTask_.start(executor(), captureCurrentSnapshot(),
                               [this] { currentSnapshotRead(std::nullopt); });
    Q_EMIT refreshingCurrentSnapshotChanged();
    Q_EMIT busyChanged();
}

Task<> AppModel::captureCurrentSnapshot() {
    currentSnapshotRead(co_await Capture::snapshot(services_.desktop, settings_.captureOptions()));
}

void AppModel::currentSnapshotRead(std::optional<WorkspaceSnapshot> snapshot) {
    if (!std::exchange(refreshingCurrentSnapshot_, false)) return;
    if (snapshot) {
        currentSnapshot_ = std::move(snapshot);
        Q_EMIT currentSnapshotChanged();
    }
    Q_EMIT refreshingCurrentSnapshotChanged();
    Q_EMIT busyChanged();
}

}  // namespace quillo
