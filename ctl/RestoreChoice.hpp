// What the arguments make of a workspace and of the way it is brought back, for all commands that ask what a
// restore would do.
#pragma once
#include "WindowEngine/restore/Restore.hpp"
#include "ctl/CommandContext.hpp"

namespace quillo::ctl {

/// Leaves only the applications that --only names; one that the workspace does not hold is a failure.
Result<void, Failure> keepOnly(Workspace& workspace, const std::vector<std::string>& only);

/// What the workspace says of other applications holds for a whole restore; one of a few applications touches
/// no others unless it is asked to.
std::optional<CleanSlateMode> chosenCleanSlate(const Workspace& workspace, const Arguments& arguments);

/// Leaves only what runs where only that is to be arranged, and sets which present displays stand for saved
/// ones of their make: as the arguments say, which is remembered, else as was said before. Complains where
/// nothing tells. To be called before the workspace's own displays are looked at.
void chooseDisplays(CommandContext& context, DesktopAccess& desktop, Workspace& workspace,
                    const Arguments& arguments, Restore::Options& options);

/// Of the whole workspace: what --only leaves out of it is still no other application.
Restore::Options restoreOptions(CommandContext& context, const Workspace& workspace,
                                const Arguments& arguments);

}  // namespace quillo::ctl
