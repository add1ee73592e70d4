// Putting everything back as it was before the latest restore.
#include <chrono>
#include <utility>

#include "app/AppModel.hpp"
#include "settings/UndoNote.hpp"

namespace quillo {

using namespace std::chrono_literals;

void AppModel::keepUndo(const UndoRecord& record) {
    undo_ = record;
    undoRun_ = restoreRun_;
    // Where it could not be written, our own serves as long as we run.
    undoStored_ = quillo::keepUndo(undoFile_, known_, record).has_value();
    undoWatch_.look();
    Q_EMIT undoChanged();
}

/// For a restore that begins now.
Restore::KeepRecord AppModel::undoKeeper() {
    return [this, deletions = deletions_](const UndoRecord& record) {
        if (deletions == deletions_) keepUndo(record);
    };
}

void AppModel::forgetUndo() {
    undo_.reset();
    undoStored_ = false;
    (void)quillo::forgetUndo(undoFile_, known_);
    undoWatch_.look();
}

/// Another program may have restored, or put back, since.
void AppModel::reloadUndo() {
    undoWatch_.look();
    if (undo_ && !undoStored_ && !services_.files.exists(undoFile_.directory() / "desktop.json")) return;
    const auto when = [this] { return undo_ ? std::optional(undo_->before.createdAt) : std::nullopt; };
    const std::optional<Instant> before = when();
    Result<std::optional<UndoRecord>> found = findUndo(undoFile_, known_);
    std::optional<UndoRecord> record = found ? *std::move(found) : std::nullopt;
    if (record && !Restore::isOfThisSession(services_.desktop.platform.applications, *record)) record.reset();
    undo_ = std::move(record);
    undoStored_ = undo_.has_value();
    // Dates are stored by the second. Whatever came after our restore ends the waiting for its windows.
    const bool same = before && when() && std::chrono::abs(*when() - *before) <= 1s;
    if (!same) undoRun_.reset();
    if (before && !same) stopWaiting();
    Q_EMIT undoChanged();
}

void AppModel::putBack() {
    if (snapshotting()) return afterSnapshot_.push_back([this] { putBack(); });
    if (refusesAnother()) return;
    reloadUndo();
    if (!undo_) return show("Nothing is left to be put back", ToastKind::refusal);
    launchedBefore_.clear();
    const auto run =
        std::make_shared<RestoreRun>(undo_->before, startOf(undo_->before.snapshot), RestoreRun::Kind::undo);
    start(run, runUndo(run.get(), *undo_));
    Q_EMIT undoChanged();
}

/// The run owns this task.
Task<> AppModel::runUndo(RestoreRun* run, UndoRecord record) {
    Applications& applications = services_.desktop.platform.applications;
    RestoreReport report =
        co_await Restore::undo(services_.desktop, record, {.enabledAdapters = settings_.enabledAdapters},
                               [run](const RestoreReport::Item& item) { run->add(item); });
    const Context context = co_await quillo::context();
    if (context.stopRequested()) report.cancelled = true;
    // What did not succeed can be tried again.
    if (!report.cancelled && report.totals().failed == 0) forgetUndo();
    launchedBefore_ = Restore::launchedAndRunning(applications, record);
    restoreEnded(*run, std::move(report));
    Q_EMIT undoChanged();
}

std::vector<std::string> AppModel::putBackLimits() const {
    Applications& applications = services_.desktop.platform.applications;
    return undo_ ? Restore::remains(applications, *undo_) : std::vector<std::string>();
}

void AppModel::closeLaunched() {
    Restore::closeLaunched(services_.desktop.platform.applications, std::exchange(launchedBefore_, {}));
    Q_EMIT undoChanged();
}

}  // namespace quillo
