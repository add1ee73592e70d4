#include "app/Automation.hpp"

#include <algorithm>

#include "WindowEngine/support/Text.hpp"
#include "app/WorkspaceAddress.hpp"

namespace quillo {
namespace {

Automation::Counts countsOf(const PlanTotals& totals) {
    return {{"inPlace", totals.inPlace}, {"changed", totals.changed},
            {"awaited", totals.awaited}, {"launched", totals.launched},
            {"opened", totals.opened},   {"createdDesktops", totals.createdDesktops},
            {"skipped", totals.skipped}, {"failed", totals.failed}};
}

Automation::Counts countsOf(const RestoreTotals& totals) {
    Automation::Counts counts;
    for (const RestoreOutcome& outcome : restoreOutcomes)
        if (outcome.total) counts.emplace_back(outcome.name, totals.*outcome.total);
    return counts;
}

}  // namespace

Automation::Automation(AppModel& model, QObject* parent)
    : QObject(parent), model_(model), known_(entriesOf(model.workspaces())) {
    connect(&model, &AppModel::workspacesChanged, this, &Automation::followLibrary);
    connect(&model, &AppModel::restoreChanged, this, &Automation::followRestore);
}

void Automation::save(const std::string& name, AppModel::Answer<Uuid> answer) {
    const std::string trimmed = text::isValidUtf8(name) ? text::trim(name) : "";
    if (trimmed.empty()) return answer(fail(ErrorKind::invalidArgument, "name: it is empty, or no UTF-8"));
    model_.saveUnreviewed(trimmed, std::move(answer));
}

Result<Automation::Begun> Automation::restore(std::string_view which) {
    const Result<Workspace> found = workspaceCalled(which, model_.workspaces());
    if (!found) return std::unexpected(found.error());
    const auto runs = [&] {
        return model_.restoreRunning() && model_.restoreRun()->workspace().id == found->id;
    };
    if (model_.asksAbout(found->id)) return Begun::waiting;
    if (model_.atWork() && !runs()) return fail(ErrorKind::refused, "Quillo is at work for the person.");
    model_.restore(*found, found->cleanSlate, Asker::program);
    return runs() ? Begun::started : Begun::waiting;
}

void Automation::plan(std::string_view which, AppModel::Answer<Counts> answer) {
    const Result<Workspace> found = workspaceCalled(which, model_.workspaces());
    if (!found) return answer(std::unexpected(found.error()));
    model_.plan(*found, [answer = std::move(answer)](const Result<PlanTotals>& totals) {
        answer(totals ? Result<Counts>(countsOf(*totals)) : std::unexpected(totals.error()));
    });
}

void Automation::followLibrary() {
    std::vector<LibraryEntry> now = entriesOf(model_.workspaces());
    const std::vector<LibraryChange> changes = changesBetween(known_, now);
    known_ = std::move(now);
    for (const LibraryChange& change : changes)
        if (change.kind != LibraryChange::Kind::restored) Q_EMIT libraryChanged(change);
}

/// A report of former days that is looked at is no run; and what puts a restore back is no restore.
void Automation::followRestore() {
    const RestoreRun* const run = model_.restoreRun();
    if (!run || run->kind() == RestoreRun::Kind::undo || run->report() || run == followed_) return;
    followed_ = run;
    connect(run, &RestoreRun::itemAdded, this, [this, run] { tellProgress(*run); });
    connect(run, &RestoreRun::finished, this, [this, run] {
        if (followed_ == run) followed_ = nullptr;
        Q_EMIT restoreEnded(run->workspace().id, run->workspace().name, countsOf(run->report()->totals()),
                            run->report()->cancelled);
    });
    Q_EMIT restoreStarted(run->workspace().id, run->workspace().name,
                          run->workspace().snapshot.windowCount());
}

void Automation::tellProgress(const RestoreRun& run) {
    if (!run.items().back().savedIndex) return;
    const auto done = std::ranges::count_if(
        run.items(), [](const RestoreReport::Item& item) { return item.savedIndex.has_value(); });
    Q_EMIT restoreProgressed(run.workspace().id, done, run.workspace().snapshot.windowCount());
}

}  // namespace quillo
