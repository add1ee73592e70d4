// What a restore would do beside the windows: the clean slate, documents, folders and tabs, as lines.
#pragma once
#include "WindowEngine/restore/RestorePreview.hpp"
#include "ctl/Output.hpp"

namespace quillo::ctl {

void printReopening(Output& output, const ApplicationSnapshot& application, const ReopeningPlan& plan);

/// One line about what the limits leave out.
void printLeftOut(Output& output, const RestoreReport::Item& item);

/// Gives how many other applications are touched; none of those `held`.
std::int64_t printCleanSlate(Output& output, Applications& applications, const std::set<std::string>& held,
                             CleanSlateMode mode);

}  // namespace quillo::ctl
