#include "app/gui/RestoreNotice.hpp"

namespace quillo {

RestoreNotice::RestoreNotice(AppModel& model, Shell& shell, std::function<bool()> windowOpen, QObject* parent)
    : QObject(parent), model_(model), shell_(shell), windowOpen_(std::move(windowOpen)) {
    connect(&model_, &AppModel::restoreChanged, this, &RestoreNotice::tell);
}

/// The words of the panel: the workspace's name and counts, no window's title and no path.
void RestoreNotice::tell() {
    const RestoreRun* const run = model_.restoreRun();
    const bool ended = run && run->report();
    if (std::exchange(told_, ended) || !ended) return;
    if (run->report()->cancelled || windowOpen_()) return;  // who stopped it knows
    shell_.notify(run->title(), run->subtitle());
}

}  // namespace quillo
