// Every command of quilloctl. Each prints its results and gives the exit status, or one line that says why
// it did not work.
#pragma once
#include "ctl/Session.hpp"

namespace quillo::ctl {

using Command = CommandResult (*)(Session&, const Arguments&);

/// The line that ends a command which changed the library: what happened and the workspace's name, or its
/// summary as `list` gives it.
CommandResult reportSaved(Session& session, std::string_view whatHappened, const Workspace& workspace);

/// What `list` gives; people get `none` where there are none.
CommandResult printList(Output& output, std::span<const Workspace> workspaces, std::string_view none);
/// The members of a workspace's line in `list`.
JsonLine summary(const Workspace& workspace);

/// The desktop as a save records it.
Expected<WorkspaceSnapshot> captureDesktop(Session& session, const Arguments& arguments);
/// "3 windows of 2 applications"; remarks of the capture go to standard error.
std::string reportCaptured(Session& session, const WorkspaceSnapshot& snapshot);

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

// The session history (HistoryCommands.cpp).
CommandResult listHistory(Session& session, const Arguments& arguments);
CommandResult saveToHistory(Session& session, const Arguments& arguments);
CommandResult clearHistory(Session& session, const Arguments& arguments);

// The live desktop (DesktopCommands.cpp).
CommandResult doctor(Session& session, const Arguments& arguments);
CommandResult showWindows(Session& session, const Arguments& arguments);
CommandResult showDisplays(Session& session, const Arguments& arguments);
CommandResult saveWorkspace(Session& session, const Arguments& arguments);

// Bringing a workspace back (RestoreCommands.cpp).
CommandResult planRestore(Session& session, const Arguments& arguments);
CommandResult restoreWorkspace(Session& session, const Arguments& arguments);

}  // namespace quillo::ctl
