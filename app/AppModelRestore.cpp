// Restoring a workspace, with the panel that shows it.
#include "app/AppModel.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

constexpr PanelPlace panelPlace{.width = 380, .anchor = PanelAnchor::bottomTrailing};
constexpr Duration cleanPanelTime = 4s, troubledPanelTime = 10s;

}  // namespace

void AppModel::restore(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate) {
    if (capturing() || snapshotting() || draft_ || restoreRunning()) return;
    const auto run = std::make_shared<RestoreRun>(workspace);
    dispose(std::exchange(restore_, run));
    panelTimer_.cancel();
    services_.surfaces.showPanel(PanelID::restore, panelPlace);
    const Restore::Options options{.cleanSlate = cleanSlate, .enabledAdapters = settings_.enabledAdapters};
    run->begin(executor(), runRestore(run.get(), options), [this, started = run.get()] {
        if (!started->report()) restoreEnded(*started, {.items = started->items(), .cancelled = true});
    });
    Q_EMIT restoreChanged();
    Q_EMIT busyChanged();
}

/// The run owns this task.
Task<> AppModel::runRestore(RestoreRun* run, Restore::Options options) {
    RestoreReport report = co_await Restore::run(services_.desktop, run->workspace(), options,
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
            show("Restored, but couldn't update last-used time");
        }
        reload();
    }
    if (restore_.get() != &run) return;  // whoever heard of its end has begun another
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
    if (restoreRunning()) restore_->cancel();
    services_.surfaces.closePanel(PanelID::restore);
}

}  // namespace quillo
