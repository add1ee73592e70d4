// What a restore would do, window by window, as lines.
#pragma once
#include <cstdint>
#include <string_view>

#include "WindowEngine/restore/RestorePreview.hpp"
#include "ctl/Output.hpp"

namespace quillo::ctl {

/// Applications that do not run yet are said to be launched; which window is which is open until then.
/// `notInstalled` says why one cannot be.
void printPlan(Output& output, const RestorePreview& plan, std::string_view notInstalled);

/// The line that closes it. `others`: applications that a clean slate would touch.
void printPlanTotals(Output& output, std::string_view workspace, const PlanTotals& totals,
                     std::int64_t others);

}  // namespace quillo::ctl
