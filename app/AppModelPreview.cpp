// What resuming a workspace would do, shown before it is done, for as long as somebody looks at it.
#include <algorithm>
#include <chrono>
#include <utility>

#include "WindowEngine/restore/CleanSlate.hpp"
#include "app/AppModel.hpp"

namespace quillo {
namespace {

constexpr Duration planInterval = std::chrono::seconds(2);

}  // namespace

void AppModel::openPreview(const Workspace& workspace, std::optional<CleanSlateMode> cleanSlate) {
    if (!accessibilityGranted_) return refuseWithoutAccess();
    if (refusesAnother()) return;
    const CleanSlateMode mode = cleanSlate.value_or(CleanSlateMode::keep);
    if (!preview_ || preview_->workspace() != workspace)
        setPreview(workspace, mode, {});
    else
        preview_->setCleanSlate(mode);
    setShowingSettings(false);
    Q_EMIT previewChanged();
    openMain();
}

void AppModel::closePreview() {
    if (!preview_) return;
    previewTask_.cancel();
    dispose(std::exchange(preview_, nullptr));
    Q_EMIT previewChanged();
}

void AppModel::resumePreview() {
    if (!preview_) return;
    const std::shared_ptr<ResumePreview> preview = preview_;  // begin() closes it
    restore(Workspace(preview->workspace()), preview->cleanSlate(), Asker::person, preview->selection());
}

/// Its first plan is on the way by then.
void AppModel::setPreview(const Workspace& workspace, CleanSlateMode cleanSlate,
                          LeftOut::Exclusions excluded) {
    const auto nameOf = [this](const ApplicationSnapshot& one) { return shownName(one); };
    dispose(std::exchange(
        preview_, std::make_shared<ResumePreview>(workspace, cleanSlate, nameOf, std::move(excluded))));
    connect(preview_.get(), &ResumePreview::ticksChanged, this,
            [this] { previewTask_.start(executor(), planPreview()); });
    previewTask_.start(executor(), planPreview());
}

/// A workspace that is gone is not previewed any more; one that was changed is as it is now, with the ticks
/// as they were.
void AppModel::followPreviewed() {
    if (!preview_) return;
    const auto found = std::ranges::find(workspaces_, preview_->workspace().id, &Workspace::id);
    if (found == workspaces_.end()) return closePreview();
    if (*found == preview_->workspace()) return;
    setPreview(*found, preview_->cleanSlate(), preview_->ticks().excluded());
    Q_EMIT previewChanged();
}

/// Plans, and again whenever the desktop has changed.
Task<> AppModel::planPreview() {
    const std::shared_ptr<ResumePreview> preview = preview_;
    const Platform& platform = services_.desktop.platform;
    while (true) {
        const std::uint64_t seen = platform.windowServer.stamp();
        Restore::Options options = optionsFor(preview->workspace(), preview->cleanSlate(), true);
        WorkspaceSnapshot part = preview->workspace().snapshot;
        preview->selection().apply(part, options);
        RestorePreview plan = co_await Restore::preview(services_.desktop, std::move(part), options);
        co_await checkpoint();
        std::vector<RunningApplication> others;
        if (preview->cleanSlate() != CleanSlateMode::keep)
            others = Restore::cleanSlateTargets(platform.applications,
                                                Restore::identifiersOf(preview->workspace()));
        preview->setPlan(std::move(plan), others, platform.applications.notInstalled());
        Duration took{};
        for (bool same = true; same;) {
            co_await sleepFor(std::max(planInterval, 2000 * took));
            const TimePoint began = executor().now();
            same = platform.windowServer.stamp() == seen;
            took = executor().now() - began;
        }
    }
}

}  // namespace quillo
