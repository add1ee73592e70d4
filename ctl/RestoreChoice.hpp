// What the arguments make of a workspace and of the way it is brought back, for all commands that ask what a
// restore would do.
#pragma once
#include "ctl/CommandContext.hpp"
#include "settings/RunSelection.hpp"

namespace quillo::ctl {

/// What --only and --except say. Each names an application, by name or identifier, or a window of one:
/// APP/TITLE, by the title or, where none has it, a part of one; or APP/#2, the second of its windows as plan
/// lists them.
struct RestoreChoice {
    RunSelection selection;
    std::vector<std::string> others;  // of --except: not in the workspace, so a clean slate must touch them
};

/// What the workspace does not hold is a failure, but for applications that --except keeps from a clean
/// slate. Needs no desktop, so that a mistake is told at once.
Result<RestoreChoice, Failure> choose(const Workspace& workspace, const Arguments& arguments);

/// The options of a run of `workspace`, which becomes the part of it that was chosen.
Result<Restore::Options, Failure> chosenPart(CommandContext& context, Applications& applications,
                                             Workspace& workspace, RestoreChoice choice,
                                             const Arguments& arguments);

/// Whether no more than a part of a workspace was asked for.
inline bool isPart(const Arguments& arguments) {
    return !arguments.only.empty() || !arguments.except.empty();
}

/// What the workspace says of other applications holds for a whole restore; one of a few applications touches
/// no others unless it is asked to.
std::optional<CleanSlateMode> chosenCleanSlate(const Workspace& workspace, const Arguments& arguments);

/// Leaves only what runs where only that is to be arranged, and sets which present displays stand for saved
/// ones of their make: as the arguments say, which is remembered, else as was said before. Complains where
/// nothing tells, and refuses names of no display. To be called before the workspace's own displays are
/// looked at.
Result<void, Failure> chooseDisplays(CommandContext& context, DesktopAccess& desktop, Workspace& workspace,
                                     const Arguments& arguments, Restore::Options& options);

}  // namespace quillo::ctl
