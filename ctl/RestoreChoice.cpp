#include "ctl/RestoreChoice.hpp"

#include <fmt/format.h>

#include <algorithm>

#include "WindowEngine/restore/CleanSlate.hpp"
#include "WindowEngine/support/Text.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/NearestName.hpp"

namespace quillo::ctl {
namespace {

bool isNamed(const ApplicationSnapshot& application, std::string_view which) {
    return text::equalIgnoringCase(application.name, which) ||
           text::equalIgnoringCase(application.bundleIdentifier, which);
}

}  // namespace

Result<void, Failure> keepOnly(Workspace& workspace, const std::vector<std::string>& only) {
    if (only.empty()) return {};
    std::vector<ApplicationSnapshot>& applications = workspace.snapshot.applications;
    for (const std::string& which : only) {
        const auto named = [&which](const ApplicationSnapshot& application) {
            return isNamed(application, which);
        };
        if (std::ranges::none_of(applications, named)) {
            std::vector<std::string> names;
            std::ranges::transform(applications, std::back_inserter(names), &ApplicationSnapshot::name);
            return failure(fmt::format("--only: {} holds no application {}{}", quotedName(workspace.name),
                                       quotedName(which), suggestion(which, names)));
        }
    }
    std::erase_if(applications, [&only](const ApplicationSnapshot& application) {
        return std::ranges::none_of(only,
                                    [&](const std::string& which) { return isNamed(application, which); });
    });
    return {};
}

std::optional<CleanSlateMode> chosenCleanSlate(const Workspace& workspace, const Arguments& arguments) {
    if (arguments.cleanSlate) return cleanSlateMode(*arguments.cleanSlate);
    return arguments.only.empty() ? workspace.cleanSlate : std::nullopt;
}

Restore::Options restoreOptions(CommandContext& context, const Workspace& workspace,
                                const Arguments& arguments) {
    return {.cleanSlate = chosenCleanSlate(workspace, arguments),
            .enabledAdapters = settingsFor(context, arguments).enabledAdapters,
            .kept = Restore::identifiersOf(workspace)};
}

}  // namespace quillo::ctl
