// What brings workspaces back besides the window: the shortcuts of single ones, links, other programs.
#include <utility>

#include "app/AppModel.hpp"
#include "app/WorkspaceAddress.hpp"

namespace quillo {
namespace {

/// To whoever has not been answered yet.
template <class T>
void give(std::function<void(Result<T>)>& answer, Result<T> result) {
    if (const auto waiting = std::exchange(answer, nullptr)) waiting(std::move(result));
}

}  // namespace

void AppModel::setAutomation(const Uuid& workspace, const WorkspaceAutomation& chosen) {
    AppSettings settings = settings_;
    settings.setAutomation(workspace, chosen);
    setSettings(std::move(settings));
}

/// A workspace that is not in the library holds no combination.
std::optional<HotKeys::Shortcuts> AppModel::shortcuts() const {
    if (!settings_.shortcutsEnabled) return std::nullopt;
    HotKeys::Shortcuts shortcuts;
    for (const HotKeyAction action : allHotKeyActions) shortcuts[action] = settings_.shortcut(action);
    for (const Workspace& workspace : workspaces_) {
        if (const auto chosen = settings_.automationOf(workspace.id).shortcut)
            shortcuts[workspace.id] = *chosen;
    }
    return shortcuts;
}

void AppModel::registerShortcuts() {
    if (const std::optional<HotKeys::Shortcuts> wanted = shortcuts())
        hotKeys_.registerAll(*wanted);
    else
        hotKeys_.unregisterAll();
}

void AppModel::pressed(const HotKeyTarget& target) {
    if (const Uuid* const workspace = std::get_if<Uuid>(&target)) return restoreFromLibrary(*workspace);
    if (std::get<HotKeyAction>(target) == HotKeyAction::save)
        beginCapture();
    else
        toggleSwitcher();
}

void AppModel::restoreFromLibrary(const Uuid& workspace, Asker asker) {
    if (const Workspace* const found = findInLibrary(workspace))
        restore(Workspace(*found), found->cleanSlate, asker);
}

void AppModel::openAddress(std::string_view address) {
    const Result<std::string> which = workspaceInAddress(address);
    const Result<Workspace> found =
        which ? workspaceCalled(*which, workspaces_) : std::unexpected(which.error());
    if (found) return restore(*found, found->cleanSlate, Asker::link);
    openMain();
    show("A link can't be followed: " + found.error().text, ToastKind::refusal);
}

/// In the place of the automatic snapshots: what the person asks for meanwhile waits for it.
void AppModel::saveUnreviewed(const std::string& name, Answer<Uuid> answer) {
    if (!accessibilityGranted_) return answer(fail(ErrorKind::unavailable, accessibilityAccess().reason()));
    if (snapshotting() || atWork())
        return answer(fail(ErrorKind::refused, "Quillo is at work for the person."));
    const auto waiting = std::make_shared<Answer<Uuid>>(std::move(answer));
    autoSnapshotTask_.start(executor(), captureUnreviewed(name, waiting), [this, waiting] {
        give<Uuid>(*waiting, fail(ErrorKind::refused, "The settings changed meanwhile. Try again."));
        snapshotEnded();
    });
    Q_EMIT busyChanged();
}

Task<> AppModel::captureUnreviewed(std::string name, SharedAnswer<Uuid> answer) {
    WorkspaceSnapshot snapshot = co_await Capture::snapshot(services_.desktop, settings_.captureOptions());
    co_await checkpoint();
    if (!services_.desktop.platform.accessibility.trusted())
        co_return give<Uuid>(*answer, fail(ErrorKind::unavailable, accessibilityAccess().reason()));
    CaptureDraft draft(std::move(snapshot), std::nullopt, false);
    draft.setName(name);
    const Result<Workspace> saved = save(draft);
    if (!told("Couldn't save", saved)) co_return give<Uuid>(*answer, std::unexpected(saved.error()));
    const Result<void> noted = known_.savedHere(*saved);
    reload();
    show("Saved " + saved->name);
    noteProvenance(noted);
    give<Uuid>(*answer, saved->id);
}

void AppModel::plan(const Workspace& workspace, Answer<PlanTotals> answer) {
    if (!accessibilityGranted_) return answer(fail(ErrorKind::unavailable, accessibilityAccess().reason()));
    if (planning_.active()) return answer(fail(ErrorKind::refused, "Another plan is being made."));
    const auto waiting = std::make_shared<Answer<PlanTotals>>(std::move(answer));
    planning_.start(executor(), planTask(workspace, waiting));
}

Task<> AppModel::planTask(Workspace workspace, SharedAnswer<PlanTotals> answer) {
    const RestorePreview preview = co_await Restore::preview(
        services_.desktop, workspace.snapshot, optionsFor(workspace, workspace.cleanSlate, true));
    co_await checkpoint();
    give<PlanTotals>(*answer, Restore::totalsOf(preview));
}

}  // namespace quillo
