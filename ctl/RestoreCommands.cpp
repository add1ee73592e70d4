// restore: bringing a workspace back.
#include <fmt/format.h>

#include <chrono>

#include "WindowEngine/capture/UndoCapture.hpp"
#include "WindowEngine/library/DirectoryWatch.hpp"
#include "WindowEngine/restore/CleanSlate.hpp"
#include "WindowEngine/restore/ConsequenceWords.hpp"
#include "WindowEngine/restore/LateWindows.hpp"
#include "WindowEngine/restore/RestoreScope.hpp"
#include "WindowEngine/restore/Undo.hpp"
#include "ctl/AwaitedDesktop.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/RestoreChoice.hpp"
#include "ctl/RestorePrinter.hpp"
#include "settings/UndoNote.hpp"

namespace quillo::ctl {
namespace {

Exit exitFor(const RestoreReport& report) {
    if (report.cancelled) return Exit::cancelled;
    return report.clean() ? Exit::done : Exit::partly;
}

/// A workspace of which only some applications were asked for has not been restored: its time stays.
bool noteRestored(CommandContext& context, const Uuid& id) {
    const Result<bool> updated = context.store.updateLastRestored(id, now());
    if (updated && *updated) return true;
    context.output.complain("Restored, but couldn't update last-used time");
    return false;
}

std::string words(ReasonToAsk reason, const Workspace& workspace) {
    switch (reason) {
        case ReasonToAsk::notSavedHere:
            return quotedName(workspace.name) + " was not saved on this computer";
        case ReasonToAsk::beyondLimits:
            return fmt::format("{} holds more than {} windows and documents of one application or {} in all",
                               quotedName(workspace.name), Restore::mostOfOneApplication, Restore::mostInAll);
    }
    return {};
}

/// What was agreed to for a part of the workspace, or with less done to other applications than it says, is
/// not agreed to for all of it.
bool isAllOfIt(const Workspace& workspace, const Arguments& arguments) {
    const CleanSlateMode says = workspace.cleanSlate.value_or(CleanSlateMode::keep);
    return !isPart(arguments) && !arguments.arrange &&
           (says == CleanSlateMode::keep || chosenCleanSlate(workspace, arguments) == says);
}

void printConsequences(Output& output, const Consequences& consequences) {
    for (const ConsequenceGroup& group : consequenceGroups(consequences)) {
        output.line("  " + output.painted(Style::bold, group.heading));
        for (const std::string& line : group.lines) output.line("    " + line);
        if (group.more > 0) output.line(fmt::format("    and {} more", group.more));
    }
}

/// Shows what a restore of the part that was asked for would do, and asks.
Result<void, Failure> askPerson(CommandContext& context, DesktopConnection& desktop,
                                const Workspace& workspace, const Workspace& part,
                                const Restore::Options& options, const std::string& reason) {
    if (!context.output.canAsk()) {
        return failure(reason + "; look at it with plan, then give --yes to restore it");
    }
    DesktopAccess& access = desktop.access();
    const std::optional<RestorePreview> preview =
        run(desktop, Restore::preview(access, part.snapshot, options));
    if (!preview) return failure("cancelled", Exit::cancelled);
    context.output.line(reason + ". Restoring it would do this:");
    printConsequences(context.output,
                      Restore::consequences(access.platform.applications, *preview, workspace,
                                            options.cleanSlate.value_or(CleanSlateMode::keep)));
    if (!context.output.confirmed("Restore it?")) return failure("cancelled", Exit::cancelled);
    return {};
}

/// Asks where that is needed, and sets what the restore may do then. `part` is what was chosen of
/// `workspace`.
Result<void, Failure> consent(CommandContext& context, DesktopConnection& desktop, const Workspace& workspace,
                              const Workspace& part, Restore::Options& options, const Arguments& arguments) {
    const std::optional<ReasonToAsk> reason = context.known.reasonToAsk(workspace);
    context.known.permit(workspace, reason.has_value(), options);
    if (!reason) return {};
    if (!arguments.yes) {
        Result<void, Failure> asked =
            askPerson(context, desktop, workspace, part, options, words(*reason, workspace));
        if (!asked) return asked;
    }
    if (isAllOfIt(workspace, arguments)) noteProvenance(context, context.known.agreed(workspace));
    return {};
}

void keepRecord(CommandContext& context, const UndoRecord& record) {
    const Result<void> kept = keepUndo(undoFile(context), context.known, record);
    if (!kept) context.output.complain("undo will not be possible: " + printable(kept.error().text));
}

/// With a record for undo; afterwards it goes on for as long as --late says, for windows that are missing, or
/// until another program replaces or removes that record: it restores, or has put everything back.
Task<RestoreReport> restoreUndoably(CommandContext& context, DesktopAccess& desktop, Workspace workspace,
                                    Restore::Options options, Capture::Options capturing, double lateSeconds,
                                    RestorePrinter& printer) {
    UndoRecord before;
    try {
        before = co_await Capture::undoRecord(desktop, std::move(capturing), workspace,
                                              options.cleanSlate.value_or(CleanSlateMode::keep));
    } catch (const Cancelled&) {  // before anything was done
        co_return RestoreReport{.items = {}, .cancelled = true};
    }
    const Restore::OnItem print = [&printer](const RestoreReport::Item& item) { printer.item(item); };
    std::vector<RestoreReport::Item> came;
    Restore::LateWindows late(desktop, [&](const RestoreReport::Item& item) {
        came.push_back(item);
        printer.item(item);
    });
    const Context here = co_await quillo::context();
    std::optional<Job<void>> placing;
    std::optional<DirectoryWatch> others;
    bool isLatest = true;
    if (lateSeconds > 0) {
        options.late = &late;
        placing = spawn(here, late.place());
        others.emplace(desktop.platform.executor, context.files, undoFile(context).directory(), [&] {
            isLatest = false;
            placing->cancel();
        });
    }
    RestoreReport report =
        co_await Restore::runUndoably(desktop, std::move(workspace), std::move(options), print,
                                      std::move(before), [&](const UndoRecord& record) {
                                          if (!isLatest) return;  // what stands there is another's
                                          keepRecord(context, record);
                                          if (others) others->look();
                                      });
    if (placing && !report.cancelled) {
        late.runEnded(std::chrono::duration_cast<Duration>(std::chrono::duration<double>(lateSeconds)));
        if (isLatest && late.awaited() > 0) printer.waiting(late.awaited(), lateSeconds);
        co_await placing->ended();
        if (!isLatest && late.awaited() > 0) printer.waitingEnded();
    }
    for (RestoreReport::Item& item : came) report.amend(std::move(item));
    co_return report;
}

}  // namespace

CommandResult restoreWorkspace(CommandContext& context, const Arguments& arguments) {
    Result<Found, Failure> found = findWithHistory(context, arguments.workspace);
    if (!found) return std::unexpected(found.error());
    const Workspace whole = found->workspace;
    Workspace& workspace = found->workspace;
    Result<RestoreChoice, Failure> choice = choose(workspace, arguments);
    if (!choice) return std::unexpected(choice.error());
    const Result<std::unique_ptr<DesktopConnection>, Failure> desktop =
        arguments.wait
            ? openAwaitedDesktop(
                  context, workspace,
                  std::chrono::duration_cast<Duration>(std::chrono::duration<double>(arguments.waitLimit)))
            : openTrustedDesktop(context);
    if (!desktop) return std::unexpected(desktop.error());
    const AppSettings settings = settingsFor(context, arguments);
    Result<Restore::Options, Failure> options = chosenPart(
        context, (*desktop)->access().platform.applications, workspace, *std::move(choice), arguments);
    if (!options) return std::unexpected(options.error());
    if (const auto chosen = chooseDisplays(context, (*desktop)->access(), workspace, arguments, *options);
        !chosen)
        return std::unexpected(chosen.error());
    if (const Result<void, Failure> agreed =
            consent(context, **desktop, whole, workspace, *options, arguments);
        !agreed) {
        return std::unexpected(agreed.error());
    }

    Workspace shown = workspace;
    Restore::RestoreScope scope = Restore::scopeOf(shown.snapshot, options->limited);
    Restore::giveShownNames((*desktop)->access().platform.applications, scope);
    shown.snapshot = std::move(scope.snapshot);
    RestorePrinter printer(context.output, shown);
    printer.begin();
    std::optional<RestoreReport> report =
        run(**desktop, restoreUndoably(context, (*desktop)->access(), workspace, *options,
                                       settings.captureOptions(), arguments.late, printer));
    const Result<void> kept = (*desktop)->keepChanges();
    if (!report) return failure("cancelled", Exit::cancelled);
    if (report->cancelled) {
        for (RestoreReport::Item& item : Restore::notReached(shown.snapshot, *report)) {
            printer.item(item);
            report->items.push_back(std::move(item));
        }
    }
    printer.end(*report);
    if (!kept) return failure(printable(kept.error().text));
    const Exit exit = exitFor(*report);
    // A use on a desktop in memory would pass for the person's own: schedules and layouts go by the last one.
    if (context.simulated || report->cancelled || isPart(arguments) || arguments.arrange || found->isSession)
        return exit;
    return noteRestored(context, workspace.id) ? exit : Exit::partly;
}

}  // namespace quillo::ctl
