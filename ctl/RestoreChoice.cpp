#include "ctl/RestoreChoice.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/CleanSlate.hpp"
#include "WindowEngine/restore/DisplayLayouts.hpp"
#include "WindowEngine/support/Text.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/NearestName.hpp"
#include "settings/DisplayAnswers.hpp"

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
    if (arguments.arrange) return CleanSlateMode::keep;
    if (arguments.cleanSlate) return cleanSlateMode(*arguments.cleanSlate);
    return arguments.only.empty() ? workspace.cleanSlate : std::nullopt;
}

Restore::Options restoreOptions(CommandContext& context, const Workspace& workspace,
                                const Arguments& arguments) {
    return {.cleanSlate = chosenCleanSlate(workspace, arguments),
            .enabledAdapters = settingsFor(context, arguments).enabledAdapters,
            .arrangesOnly = arguments.arrange,
            .kept = Restore::identifiersOf(workspace)};
}

void chooseDisplays(CommandContext& context, DesktopAccess& desktop, Workspace& workspace,
                    const Arguments& arguments, Restore::Options& options) {
    if (arguments.arrange) {
        DisplayLayouts::keepRunning(workspace.snapshot, [&](const std::string& identifier) {
            return desktop.platform.applications.running(identifier).has_value();
        });
    }
    const auto present = Displays::current(desktop.platform.screens);
    const auto saved = DisplayLayouts::displaysFor(workspace.snapshot, present);
    DisplayAnswers answers(context.defaults);
    options.displays = answers.find(saved, present);
    for (const std::string& pair : arguments.displays) {
        const std::size_t sign = pair.find('=');
        options.displays[pair.substr(0, sign)] = pair.substr(sign + 1);
    }
    if (!arguments.displays.empty()) {
        if (const Result<void> kept = answers.remember(saved, present, options.displays); !kept)
            context.output.complain("--display holds for this time only: " + printable(kept.error().text));
    }
    const DisplayTwins::Matching matching = DisplayTwins::match(saved, present, options.displays);
    if (matching.unclear.empty()) return;
    context.output.complain(
        fmt::format("the displays {} are alike, and nothing tells which of {} each is now; --display "
                    "SAVED=PRESENT says it",
                    printable(fmt::format("{}", fmt::join(matching.unclear, ", "))),
                    printable(fmt::format("{}", fmt::join(matching.choices, ", ")))));
}

}  // namespace quillo::ctl
