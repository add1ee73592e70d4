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

/// Of the whole workspace: what --only leaves out of it is still no other application.
Restore::Options restoreOptions(CommandContext& context, const Workspace& workspace,
                                const Arguments& arguments);

}  // namespace quillo::ctl
