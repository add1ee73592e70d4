// Brings a saved workspace back onto the screen.
#pragma once
#include <functional>

#include "WindowEngine/Accessibility.hpp"
#include "WindowEngine/RestoreReport.hpp"

namespace quillo::Restore {

/// The clean slate and the enabled adapters join these together with what carries them out: no option is
/// taken and ignored.
struct Options {
    double launchTimeout = 15.0;  // seconds to wait for an application's windows
    double settleDelay = 1.0;     // seconds without a new window after which an application is complete
};

/// Called on the executor's thread for each item as it is made, in report order.
using OnItem = std::function<void(const RestoreReport::Item&)>;

/// Never throws: trouble is items; cancelled, the report is marked so and keeps the items made until then.
/// (Being cancelled, it still returns its report: whoever awaits the Job gets it.)
Task<RestoreReport> run(DesktopAccess& desktop, Workspace workspace, Options options, OnItem onItem);

}  // namespace quillo::Restore
