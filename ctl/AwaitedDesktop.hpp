// Waiting at login until the desktop is there, for a restore that starts with it.
#pragma once
#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/support/Executor.hpp"
#include "ctl/CommandContext.hpp"

namespace quillo::ctl {

/// As openTrustedDesktop, once a window manager answers, a display is attached and, where the workspace holds
/// documents, the accessibility bus runs, by which file managers' folders are known. After `limit` in all it
/// is opened as it is, and what is not there is complained of.
Result<std::unique_ptr<DesktopConnection>, Failure> openAwaitedDesktop(CommandContext& context,
                                                                       const Workspace& workspace,
                                                                       Duration limit);

}  // namespace quillo::ctl
