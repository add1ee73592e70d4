// The windows and displays of a snapshot as lines.
#pragma once
#include <span>

#include "WindowEngine/records/Workspace.hpp"
#include "ctl/Output.hpp"

namespace quillo::ctl {

/// One line a window, by application. A window's desktop is counted from 1 for people, from 0 in JSON.
void printWindows(Output& output, const WorkspaceSnapshot& snapshot);
/// One line a display, the primary one first.
void printDisplays(Output& output, std::span<const DisplaySnapshot> displays);

/// What sets a window apart from a plain one: "minimized", "full screen", "Desktop 2"; may be empty.
std::string windowState(const WindowSnapshot& window);

}  // namespace quillo::ctl
