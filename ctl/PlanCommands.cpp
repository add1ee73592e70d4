// plan: what a restore would do. Changes nothing.
#include "WindowEngine/restore/CleanSlate.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/PlanText.hpp"
#include "ctl/ReopeningPlanText.hpp"
#include "ctl/RestoreChoice.hpp"

namespace quillo::ctl {
namespace {

void printProvenance(CommandContext& context, const Workspace& workspace) {
    if (context.known.isSavedHere(workspace)) return;
    const bool agreed = context.known.isAgreed(workspace);
    if (context.output.json()) {
        JsonLine line;
        line.add("workspace", workspace.name).add("savedHere", false).add("agreed", agreed);
        context.output.value(std::move(line));
        return;
    }
    context.output.line(context.output.painted(
        Style::warning, quotedName(workspace.name) + " was not saved on this computer; " +
                            (agreed ? "you agreed to restore it" : "restore asks first")));
}

}  // namespace

CommandResult planRestore(CommandContext& context, const Arguments& arguments) {
    Result<Found, Failure> found = findWithHistory(context, arguments.workspace);
    if (!found) return std::unexpected(found.error());
    const Workspace whole = found->workspace;
    Workspace& workspace = found->workspace;
    if (const Result<void, Failure> kept = keepOnly(workspace, arguments.only); !kept)
        return std::unexpected(kept.error());
    const Result<std::unique_ptr<DesktopConnection>, Failure> desktop = openTrustedDesktop(context);
    if (!desktop) return std::unexpected(desktop.error());
    Restore::Options options = restoreOptions(context, whole, arguments);
    context.known.permit(whole, true, options);
    DesktopAccess& access = (*desktop)->access();
    const std::optional<RestorePreview> plan =
        run(**desktop, Restore::preview(access, workspace.snapshot, options));
    if (!plan) return failure("cancelled", Exit::cancelled);
    Applications& applications = access.platform.applications;
    printProvenance(context, whole);
    const std::int64_t others = printCleanSlate(context.output, applications, whole,
                                                options.cleanSlate.value_or(CleanSlateMode::keep));
    for (const RestoreReport::Item& item : plan->scope->leftOut) printLeftOut(context.output, item);
    printPlan(context.output, *plan, applications.notInstalled());
    const PlanTotals totals = Restore::totalsOf(*plan);
    printPlanTotals(context.output, workspace.name, totals, others);
    const bool differs = others > 0 || !totals.nothingToDo();
    return arguments.exitCode && differs ? Exit::differs : Exit::done;
}

}  // namespace quillo::ctl
