// Every command of quilloctl. Each prints its results and gives the exit status, or one line that says why
// it did not work.
#pragma once
#include "WindowEngine/capture/CaptureHealth.hpp"
#include "WindowEngine/library/UndoFile.hpp"
#include "ctl/CommandContext.hpp"

namespace quillo::ctl {

using Command = CommandResult (*)(CommandContext&, const Arguments&);

/// The line that ends a command which changed the library: what happened, the workspace's name and what
/// stands `behind` it, or its summary as `list` gives it.
CommandResult reportSaved(CommandContext& context, std::string_view whatHappened, const Workspace& workspace,
                          std::string_view behind = {});
/// A workspace's document with its identifier as everything here prints it: in lower case. (A file of the
/// library has it in capitals; whoever reads one takes either.)
Result<std::string> documentOf(const Workspace& workspace);

/// What `list` gives; people get `none` where there are none.
CommandResult printList(Output& output, std::span<const Workspace> workspaces, bool isLong,
                        std::string_view none);
/// The members of a workspace's line in `list`.
JsonLine summary(const Workspace& workspace);

/// The desktop as a save records it.
struct Captured {
    WorkspaceSnapshot snapshot;
    /// "XClock (xclock): no menu entry starts it, so a restore will not": applications that could not be
    /// launched again.
    std::vector<std::string> warnings;
    /// Why it may not be the desktop that anybody wants back; it is among the warnings too.
    std::optional<CaptureHealth::Flaw> flaw;
};
Result<Captured, Failure> captureDesktop(CommandContext& context, const Arguments& arguments);
/// What is stored is not renewed from a flawed one, unless --force says so.
Result<void, Failure> refuseFlawed(const Workspace& workspace, const Captured& captured,
                                   const Arguments& arguments);
/// "3 windows of 2 applications"; remarks of the capture go to standard error.
std::string reportCaptured(CommandContext& context, const Captured& captured);

// The library (LibraryCommands.cpp).
CommandResult listWorkspaces(CommandContext& context, const Arguments& arguments);
CommandResult showWorkspace(CommandContext& context, const Arguments& arguments);
CommandResult renameWorkspace(CommandContext& context, const Arguments& arguments);
CommandResult duplicateWorkspace(CommandContext& context, const Arguments& arguments);
CommandResult deleteWorkspaces(CommandContext& context, const Arguments& arguments);

// Arrangements on other displays (LayoutCommands.cpp).
CommandResult listLayouts(CommandContext& context, const Arguments& arguments);
CommandResult saveLayout(CommandContext& context, const Arguments& arguments);
CommandResult removeLayout(CommandContext& context, const Arguments& arguments);

// Workspace files (FileCommands.cpp).
CommandResult exportWorkspaces(CommandContext& context, const Arguments& arguments);
CommandResult importWorkspace(CommandContext& context, const Arguments& arguments);
CommandResult validateFile(CommandContext& context, const Arguments& arguments);

// The session history (HistoryCommands.cpp).
CommandResult listHistory(CommandContext& context, const Arguments& arguments);
CommandResult saveToHistory(CommandContext& context, const Arguments& arguments);
CommandResult clearHistory(CommandContext& context, const Arguments& arguments);

// How applications without a menu entry are started (LauncherCommands.cpp).
CommandResult addLauncher(CommandContext& context, const Arguments& arguments);
CommandResult listLaunchers(CommandContext& context, const Arguments& arguments);
CommandResult removeLaunchers(CommandContext& context, const Arguments& arguments);

// What happens to the workspaces (WatchCommand.cpp).
CommandResult watchEvents(CommandContext& context, const Arguments& arguments);

// What the shells' completions ask (CompletionCommand.cpp).
CommandResult completeNames(CommandContext& context, const Arguments& arguments);

// The live desktop (DesktopCommands.cpp).
CommandResult doctor(CommandContext& context, const Arguments& arguments);
CommandResult showWindows(CommandContext& context, const Arguments& arguments);
CommandResult showDisplays(CommandContext& context, const Arguments& arguments);
CommandResult saveWorkspace(CommandContext& context, const Arguments& arguments);

// Bringing a workspace back, and what that would do (RestoreCommands.cpp, PlanCommands.cpp,
// DiffCommand.cpp).
/// Of the workspace that a report holds, on the desktop that it tells of; what plan does without a W
/// (ReportCommand.cpp).
CommandResult replayPlan(CommandContext& context, const Arguments& arguments);
CommandResult reportProblem(CommandContext& context, const Arguments& arguments);
CommandResult planRestore(CommandContext& context, const Arguments& arguments);
CommandResult diffWorkspace(CommandContext& context, const Arguments& arguments);
CommandResult restoreWorkspace(CommandContext& context, const Arguments& arguments);

// Putting everything back as it was before (UndoCommand.cpp).
CommandResult undoRestore(CommandContext& context, const Arguments& arguments);
UndoFile undoFile(const CommandContext& context);

}  // namespace quillo::ctl
