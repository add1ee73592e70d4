// A report of a problem as a file: a workspace, the desktop it was to be restored on as a scene, and each
// decision, with made-up names. docs/scenes.md describes it.
#pragma once
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/restore/RestorePreview.hpp"
#include "ctl/Arguments.hpp"
#include "ctl/CommandContext.hpp"

namespace quillo::ctl {

struct Report {
    Workspace workspace;
    std::string scene;  // a scene's document
    Restore::Options options;
    std::vector<std::string> plan;         // as plan --json prints it
    std::vector<std::string> differences;  // of what the scene comes to, from what was decided
};

/// `version` is this program's, `desktop` the kind of layer.
Result<std::string> writeReport(const Report& report, std::string_view version, std::string_view desktop);
/// Absent for what is none, a scene for example. `name` is the file's name, for errors.
Result<std::optional<Report>> readReport(std::string_view bytes, std::string_view name);

/// Every line of a plan of `workspace`, the total last; gives how many other applications it touches.
std::int64_t printWholePlan(Output& output, Applications& applications, const Workspace& workspace,
                            const RestorePreview& plan, const Restore::Options& options);

}  // namespace quillo::ctl
