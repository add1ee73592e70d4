// Capturing the desktop for the person: the review, and the preview of what is open now.
#include <algorithm>
#include <chrono>
#include <utility>

#include "WindowEngine/capture/LeftOut.hpp"
#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "WindowEngine/restore/DisplayLayouts.hpp"
#include "WindowEngine/support/Text.hpp"
#include "app/AppModel.hpp"

namespace quillo {
namespace {

constexpr Duration lookInterval = std::chrono::seconds(2);

std::string nameOf(const CaptureDraft& draft) {
    const std::string name = text::trim(draft.name());
    return name.empty() ? std::string(unnamed) : name;
}

}  // namespace

void AppModel::beginCapture(std::optional<Workspace> updating, bool testRestoreAfterSave) {
    if (!accessibilityGranted_) return refuseWithoutAccess();
    if (snapshotting()) {
        return afterSnapshot_.push_back([this, updating = std::move(updating), testRestoreAfterSave] {
            beginCapture(updating, testRestoreAfterSave);
        });
    }
    if (capturing() && !updating) return;  // the key was pressed twice: its review is on the way
    if (refusesAnother()) return;
    capturing_ = true;
    const bool wasAsked = forgetQuestion();
    captureTask_.start(executor(), captureForReview(std::move(updating), testRestoreAfterSave),
                       [this] { captureEnded(nullptr); });
    if (wasAsked) tellQuestion();
    Q_EMIT capturingChanged();
    Q_EMIT busyChanged();
}

Task<> AppModel::captureForReview(std::optional<Workspace> updating, bool testRestoreAfterSave) {
    WorkspaceSnapshot snapshot = co_await Capture::snapshot(services_.desktop, settings_.captureOptions());
    co_await checkpoint();
    // Without it the windows of others are missing, and would be from the workspace that is updated.
    const bool read = services_.desktop.platform.accessibility.trusted();
    const auto flaw = captureFlaw(&snapshot.displays);
    captureEnded(read ? std::make_shared<CaptureDraft>(std::move(snapshot), std::move(updating),
                                                       testRestoreAfterSave,
                                                       flaw ? CaptureHealth::warning(*flaw) : std::string())
                      : nullptr);
    if (!read) co_return refuseWithoutAccess();
    openMain();
}

void AppModel::refuseWithoutAccess() {
    openMain();  // which shows what can be done
    show("Couldn't read your windows: " + accessibilityAccess().reason(), ToastKind::refusal);
}

bool AppModel::refusesAnother() {
    std::string why;
    if (draft_) {
        why = "Save or cancel this review first.";
    } else if (capturing()) {
        why = "Your windows are being read for a review. Save or cancel that first.";
    } else if (keepingLayout_.active()) {
        why = "Your windows are being read for a layout. Try again in a moment.";
    } else if (restoreRunning() && restoreRun_->kind() == RestoreRun::Kind::undo) {
        why = "Everything is being put back. Wait for it, or stop it.";
    } else if (restoreRunning()) {
        why = "“" + restoreRun_->workspace().name + "” is being resumed. Wait for it, or stop it.";
    } else {
        return false;
    }
    openMain();
    show(std::move(why), ToastKind::refusal);
    return true;
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
    if (capturing()) captureTask_.cancel();
    if (draft_) setDraft(nullptr);
}

std::vector<std::string> AppModel::notLaunchable(const WorkspaceSnapshot& snapshot) const {
    Applications& applications = services_.desktop.platform.applications;
    std::vector<std::string> names;
    for (const ApplicationSnapshot& one : snapshot.applications) {
        const auto& place = one.applicationURL;
        const bool installed = (place && applications.identifierAt(*place) == one.bundleIdentifier) ||
                               applications.location(one.bundleIdentifier);
        if (!installed) names.push_back(shownName(one));
    }
    return names;
}

void AppModel::renew(Workspace& stored, const CaptureDraft& draft) const {
    const Workspace& before = *draft.updating();
    const std::string name = nameOf(draft);
    if (name != before.name && name != stored.name) stored.name = store_.freeName(name, workspaces_);
    if (draft.icon() != before.icon) stored.icon = draft.icon();
    if (draft.color() != before.color) stored.color = draft.color();
    // What it does to other applications stays only where that was chosen here.
    if (!known_.isCleanSlateChosenHere(stored)) stored.cleanSlate.reset();
    stored.snapshot = LeftOut::carriedOver(
        stored.snapshot, DisplayLayouts::carriedOver(stored.snapshot, draft.filteredSnapshot()),
        {Capture::neverSaved(services_.desktop.platform.applications, settings_.captureOptions()),
         settings_.excludedDomains});
    // As of the capture; where something else was changed during the review, as of now, which tells of that.
    const Instant captured = stored.snapshot.capturedAt;
    stored.updatedAt = captured > stored.updatedAt ? captured : wallNow();
}

/// Of an update what is stored counts, which may have changed during the review; one that is gone comes back.
Result<Workspace> AppModel::save(const CaptureDraft& draft) const {
    if (!draft.updating()) {
        return store_.saveAsNew(Workspace::create(Uuid::random(), nameOf(draft), draft.icon(), draft.color(),
                                                  draft.filteredSnapshot(), wallNow()),
                                workspaces_);
    }
    Workspace back = *draft.updating();
    if (!store_.load(back.id)) {
        renew(back, draft);
        if (Result<void> saved = store_.save(back); !saved) return std::unexpected(std::move(saved.error()));
        return back;
    }
    auto changed = store_.change(back.id, [&](Workspace& stored) -> Result<void> {
        renew(stored, draft);
        return {};
    });
    if (!changed) return std::unexpected(std::move(changed.error()));
    return std::move(changed->after);
}

void AppModel::commit(CaptureDraft& reviewed) {
    if (draft_.get() != &reviewed) return;
    const std::shared_ptr<CaptureDraft> draft = draft_;
    const std::string what = "Couldn't save";
    const Result<Workspace> saved = save(*draft);
    if (!told(what, saved)) return;
    const Result<void> noted = known_.savedHere(*saved);
    dispose(std::exchange(draft_, nullptr));  // before anybody hears of it: nothing saves it once more
    reload();
    Q_EMIT draftChanged();
    Q_EMIT busyChanged();
    show("Saved " + saved->name);
    noteProvenance(noted);
    if (draft->testRestoreAfterSave()) restore(*saved, std::nullopt);
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
    Capture::Options options = settings_.captureOptions();
    options.asksPatiently = false;
    currentSnapshotRead(co_await Capture::snapshot(services_.desktop, std::move(options)));
}

void AppModel::followCurrentDesktop(bool follow) {
    if (follow)
        desktopFollower_.start(executor(), followDesktop());
    else
        desktopFollower_.cancel();
}

/// However many windows there are, looking at them takes no more than a small part of the time.
Task<> AppModel::followDesktop() {
    std::optional<std::uint64_t> seen;
    while (true) {
        const TimePoint began = executor().now();
        const std::uint64_t stamp = services_.desktop.platform.windowServer.stamp();
        const Duration took = executor().now() - began;
        if (seen != stamp) {
            refreshCurrentSnapshot();
            if (refreshingCurrentSnapshot())
                seen = stamp;  // else something else goes on, and it is tried again
        }
        co_await sleepFor(std::max(lookInterval, 2000 * took));
    }
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
