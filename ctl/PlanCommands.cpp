// plan: what a restore would do. Changes nothing.
#include "WindowEngine/restore/CleanSlate.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/PlanText.hpp"
#include "ctl/ReopeningPlanText.hpp"
#include "ctl/ReportFile.hpp"
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

std::int64_t printWholePlan(Output& output, Applications& applications, const Workspace& workspace,
                            const RestorePreview& plan, const Restore::Options& options) {
    std::set<std::string> held = Restore::identifiersOf(workspace);
    held.insert(options.kept.begin(), options.kept.end());
    const std::int64_t others =
        printCleanSlate(output, applications, held, options.cleanSlate.value_or(CleanSlateMode::keep));
    for (const RestoreReport::Item& item : plan.scope->leftOut) printLeftOut(output, item);
    printPlan(output, plan, applications.notInstalled());
    printPlanTotals(output, workspace.name, Restore::totalsOf(plan), others);
    return others;
}

CommandResult planRestore(CommandContext& context, const Arguments& arguments) {
    if (arguments.workspace.empty()) return replayPlan(context, arguments);
    Result<Found, Failure> found = findWithHistory(context, arguments.workspace);
    if (!found) return std::unexpected(found.error());
    const Workspace whole = found->workspace;
    Workspace& workspace = found->workspace;
    Result<RestoreChoice, Failure> choice = choose(workspace, arguments);
    if (!choice) return std::unexpected(choice.error());
    const Result<std::unique_ptr<DesktopConnection>, Failure> desktop = openTrustedDesktop(context);
    if (!desktop) return std::unexpected(desktop.error());
    DesktopAccess& access = (*desktop)->access();
    Applications& applications = access.platform.applications;
    Result<Restore::Options, Failure> options =
        chosenPart(context, applications, workspace, *std::move(choice), arguments);
    if (!options) return std::unexpected(options.error());
    context.known.permit(whole, true, *options);
    if (const auto chosen = chooseDisplays(context, access, workspace, arguments, *options); !chosen)
        return std::unexpected(chosen.error());
    const std::optional<RestorePreview> plan =
        run(**desktop, Restore::preview(access, workspace.snapshot, *options));
    if (!plan) return failure("cancelled", Exit::cancelled);
    printProvenance(context, whole);
    const std::int64_t others = printWholePlan(context.output, applications, workspace, *plan, *options);
    const bool differs = others > 0 || !Restore::totalsOf(*plan).nothingToDo();
    return arguments.exitCode && differs ? Exit::differs : Exit::done;
}

}  // namespace quillo::ctl
