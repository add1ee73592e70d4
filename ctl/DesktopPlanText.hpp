// Which desktops a restore would create and where it would send windows, as lines.
#pragma once
#include <string>

#include "WindowEngine/restore/DesktopTargets.hpp"
#include "WindowEngine/restore/RestorePlan.hpp"
#include "ctl/Output.hpp"

namespace quillo::ctl {

/// What would be created on which display, and what could not be and why; nothing where all is there.
void printDesktops(Output& output, const DesktopPlan& desktops);

/// "desktop 2", "desktop 3 (to be created)"; absent for a window without a target desktop.
std::optional<std::string> desktopText(const DesktopPlan& desktops, const WindowPlan& plan);
/// The same for scripts: "desktop" counts from 0, as in a saved workspace.
void addDesktop(JsonLine& line, const DesktopPlan& desktops, const WindowPlan& plan);

}  // namespace quillo::ctl
