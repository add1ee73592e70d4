// Every command of quilloctl. Each prints its results and gives the exit status, or one line that says why
// it did not work.
#pragma once
#include "ctl/Session.hpp"

namespace quillo::ctl {

using Command = CommandResult (*)(Session&, const Arguments&);

/// The line that ends a command which changed the library: what happened and the workspace's name, or its
/// summary as `list` gives it.
CommandResult reportSaved(Session& session, std::string_view whatHappened, const Workspace& workspace);

// The library (LibraryCommands.cpp).
CommandResult listWorkspaces(Session& session, const Arguments& arguments);
CommandResult showWorkspace(Session& session, const Arguments& arguments);
CommandResult renameWorkspace(Session& session, const Arguments& arguments);
CommandResult duplicateWorkspace(Session& session, const Arguments& arguments);
CommandResult deleteWorkspace(Session& session, const Arguments& arguments);

// Workspace files (FileCommands.cpp).
CommandResult exportWorkspace(Session& session, const Arguments& arguments);
CommandResult importWorkspace(Session& session, const Arguments& arguments);
CommandResult validateFile(Session& session, const Arguments& arguments);

// The live desktop (DesktopCommands.cpp).
CommandResult doctor(Session& session, const Arguments& arguments);
CommandResult showWindows(Session& session, const Arguments& arguments);
CommandResult showDisplays(Session& session, const Arguments& arguments);
CommandResult saveWorkspace(Session& session, const Arguments& arguments);

// Bringing a workspace back (RestoreCommands.cpp).
CommandResult planRestore(Session& session, const Arguments& arguments);
CommandResult restoreWorkspace(Session& session, const Arguments& arguments);

}  // namespace quillo::ctl
