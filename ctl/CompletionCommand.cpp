// complete KIND [W]: names for the shells' completions (packaging/completions), one a line as they are. Not
// in the help: nobody types it.
#include <algorithm>

#include "ctl/Commands.hpp"
#include "settings/Launchers.hpp"

namespace quillo::ctl {
namespace {

/// One that holds a control character could be taken for two, and no shell could be given it.
void printNames(Output& output, std::vector<std::string> names) {
    std::ranges::sort(names);
    const auto [from, to] = std::ranges::unique(names);
    names.erase(from, to);
    for (const std::string& name : names) {
        const bool harmless =
            std::ranges::none_of(name, [](unsigned char one) { return one < 0x20 || one == 0x7f; });
        if (!name.empty() && harmless) output.line(name);
    }
}

}  // namespace

CommandResult completeNames(CommandContext& context, const Arguments& arguments) {
    const std::string kind = arguments.words.empty() ? "" : arguments.words.front();
    std::vector<std::string> names;
    const auto add = [&names](const Result<std::vector<Workspace>, Failure>& workspaces) {
        if (workspaces) std::ranges::transform(*workspaces, std::back_inserter(names), &Workspace::name);
    };
    if (kind == "workspaces" || kind == "sessions") add(scan(context));
    if (kind == "sessions") add(scanHistory(context));
    if (kind == "applications" && arguments.words.size() > 1) {
        if (const auto found = findWithHistory(context, arguments.words[1]))
            std::ranges::transform(found->workspace.snapshot.applications, std::back_inserter(names),
                                   &ApplicationSnapshot::name);
    }
    if (kind == "launchers")
        for (const auto& [application, command] : Launchers(context.defaults).all())
            names.push_back(application);
    printNames(context.output, std::move(names));
    return Exit::done;
}

}  // namespace quillo::ctl
