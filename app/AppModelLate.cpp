// Windows that open only after a restore has ended.
#include "app/AppModel.hpp"

namespace quillo {

std::shared_ptr<Restore::LateWindows> AppModel::beginWaiting() {
    if (settings_.lateMinutes < 1) return nullptr;
    lateRun_ = restoreRun_;
    late_ =
        std::make_shared<Restore::LateWindows>(services_.desktop, [this](const RestoreReport::Item& item) {
            if (const auto run = lateRun_.lock()) {
                run->amend(item);
                showLate(*run);
            }
            Q_EMIT awaitedChanged();
        });
    lateTask_.start(executor(), waitForWindows(late_), [this] { Q_EMIT awaitedChanged(); });
    return late_;
}

Task<> AppModel::waitForWindows(std::shared_ptr<Restore::LateWindows> late) {
    co_await late->place();
}

/// The panel comes back with what it says now, unless the person has closed it.
void AppModel::showLate(const RestoreRun& run) {
    if (restoreRun_.get() != &run || !run.report() || panelDismissed_ || reportShown()) return;
    if (!services_.surfaces.panelVisible(PanelID::restore)) showRestorePanel();
    closePanelLater(run);
}

std::int64_t AppModel::awaitedWindows(const RestoreRun* run) const {
    const bool isIts = !run || lateRun_.lock().get() == run;
    return isIts && lateTask_.active() && !restoreRunning() ? late_->awaited() : 0;
}

void AppModel::stopWaiting() {
    lateTask_.cancel();
}

}  // namespace quillo
