// What a restore would do, window by window, as lines.
#pragma once
#include "WindowEngine/Accessibility.hpp"
#include "ctl/Output.hpp"

namespace quillo::ctl {

/// Reads the live windows of the saved applications once and prints the decision that a restore would begin
/// with. Applications that do not run yet are said to be launched; which window is which is open until then.
void printPlan(Output& output, DesktopAccess& desktop, const WorkspaceSnapshot& snapshot);

}  // namespace quillo::ctl
