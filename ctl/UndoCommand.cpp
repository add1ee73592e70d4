// undo: everything back as it was before the last restore.
#include <fmt/format.h>

#include <algorithm>

#include "WindowEngine/restore/Undo.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/RestorePrinter.hpp"
#include "settings/UndoNote.hpp"

namespace quillo::ctl {
namespace {

std::vector<std::string> printableLimits(const Restore::UndoPlan& plan) {
    std::vector<std::string> limits = plan.limits();
    for (std::string& one : limits) one = printable(one);
    return limits;
}

std::vector<std::string> namesOf(const std::vector<UndoLaunch>& launched) {
    std::vector<std::string> names;
    std::ranges::transform(launched, std::back_inserter(names), &UndoLaunch::identifier);
    return names;
}

CommandResult printPlan(Output& output, const UndoRecord& record, const Restore::UndoPlan& plan) {
    if (output.json()) {
        JsonLine line;
        line.add("workspace", record.before.name)
            .add("before", record.before.createdAt)
            .add("windows", plan.windowCount())
            .add("relaunched", plan.relaunchedCount())
            .add("launched", namesOf(plan.launched))
            .add("remains", printableLimits(plan));
        output.value(std::move(line));
        return Exit::done;
    }
    output.line(
        fmt::format("Before {} was restored, {}: {} to be put back{}", printable(record.before.name),
                    dateText(record.before.createdAt), counted(plan.windowCount(), "window"),
                    plan.relaunchedCount() > 0
                        ? ", " + counted(plan.relaunchedCount(), "application") + " to be launched again"
                        : ""));
    for (const std::string& one : printableLimits(plan)) output.line("  " + one);
    return Exit::done;
}

/// Never unasked.
void offerToClose(Output& output, Applications& applications, const std::vector<UndoLaunch>& launched,
                  bool agreed) {
    if (launched.empty()) return;
    if (!agreed && output.canAsk()) {
        std::string names;
        for (const UndoLaunch& one : launched) names += (names.empty() ? "" : ", ") + printable(one.name);
        agreed = output.confirmed("Ask what the restore launched to quit (" + names + ")?");
    }
    if (agreed) Restore::closeLaunched(applications, launched);
}

}  // namespace

UndoFile undoFile(const CommandContext& context) {
    // What was tried on a desktop in memory is no restore of the person's own.
    const std::filesystem::path undo = context.dataDirectory / "undo";
    if (context.simulated) return {context.files, undo / "simulated", UndoRecord::simulatedID};
    return {context.files, undo};
}

CommandResult undoRestore(CommandContext& context, const Arguments& arguments) {
    const UndoFile file = undoFile(context);
    const Result<std::optional<UndoRecord>> found = findUndo(file, context.known);
    if (!found) return couldNot("read what was there before the last restore", found.error());
    if (!*found) return failure("there is no restore to undo");
    const UndoRecord& record = **found;
    const auto desktop = openTrustedDesktop(context);
    if (!desktop) return std::unexpected(desktop.error());
    DesktopAccess& access = (*desktop)->access();
    Applications& applications = access.platform.applications;
    if (!Restore::isOfThisSession(applications,
                                  record)) {  // most of it has ended, and nobody expects it back
        if (!arguments.planOnly) (void)forgetUndo(file, context.known);
        return failure("nothing is left to be put back: the last restore was in an earlier session");
    }
    const Restore::UndoPlan plan = Restore::planUndo(access, record);
    if (arguments.planOnly) return printPlan(context.output, record, plan);
    if (!context.output.json() && !context.output.quiet()) {
        for (const std::string& one : printableLimits(plan))
            context.output.line(context.output.painted(Style::dim, "Cannot be undone: " + one));
    }
    RestorePrinter printer(context.output, record.before,
                           {"Putting everything back…", "Everything is back as it was",
                            "Most is back as it was", "Putting everything back stopped"});
    printer.begin();
    const std::optional<RestoreReport> report =
        run(**desktop, Restore::undo(access, record,
                                     {.enabledAdapters = settingsFor(context, arguments).enabledAdapters},
                                     [&printer](const RestoreReport::Item& item) { printer.item(item); }));
    if (!report) return failure("cancelled", Exit::cancelled);
    printer.end(*report);
    if (!report->cancelled) {
        offerToClose(context.output, applications, Restore::launchedAndRunning(applications, record),
                     arguments.quitLaunched);
        // What did not succeed can be tried again.
        if (report->totals().failed == 0) {
            if (const Result<void> removed = forgetUndo(file, context.known); !removed)
                context.output.complain(printable(removed.error().text));
        }
    }
    const Result<void> kept = (*desktop)->keepChanges();
    if (!kept) return failure(printable(kept.error().text));
    if (report->cancelled) return Exit::cancelled;
    return report->clean() ? Exit::done : Exit::partly;
}

}  // namespace quillo::ctl
