// What a restore would do beside the windows: the clean slate, documents, folders and tabs, as lines.
#pragma once
#include <set>
#include <string>
#include <vector>

#include "WindowEngine/ContextAdapter.hpp"
#include "WindowEngine/DocumentRestore.hpp"
#include "ctl/Output.hpp"

namespace quillo::ctl {

struct ReopeningPlan {
    Restore::DocumentPlan documents;
    std::vector<AdapterStep> steps;  // of the integration
    std::string contextTrouble;      // why an integration would open nothing; may be empty
    bool askedForWindow = false;     // in case the application has none
};

/// Asks the application's integration what it shows, where there is an enabled one and the application
/// `isRunning`; of one that does not run everything is yet to be opened.
Task<ReopeningPlan> planReopening(DesktopAccess& desktop, const ApplicationSnapshot& application,
                                  std::span<const LiveWindowInfo> live, bool isRunning,
                                  const std::set<std::string>& enabledAdapters);

void printReopening(Output& output, const ApplicationSnapshot& application, const ReopeningPlan& plan);

void printCleanSlate(Output& output, Applications& applications, const Workspace& workspace,
                     CleanSlateMode mode);

}  // namespace quillo::ctl
