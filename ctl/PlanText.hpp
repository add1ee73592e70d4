// What a restore would do, window by window, as lines.
#pragma once
#include "WindowEngine/restore/RestorePreview.hpp"
#include "ctl/Output.hpp"

namespace quillo::ctl {

/// Applications that do not run yet are said to be launched; which window is which is open until then.
void printPlan(Output& output, const RestorePreview& plan);

}  // namespace quillo::ctl
