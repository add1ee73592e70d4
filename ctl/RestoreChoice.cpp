#include "ctl/RestoreChoice.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <charconv>
#include <utility>

#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/restore/CleanSlate.hpp"
#include "WindowEngine/restore/DisplayLayouts.hpp"
#include "WindowEngine/restore/RestoreScope.hpp"
#include "WindowEngine/support/Text.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/NearestName.hpp"
#include "settings/DisplayAnswers.hpp"

namespace quillo::ctl {
namespace {

bool isNamed(std::string_view name, std::string_view identifier, std::string_view which) {
    return text::equalIgnoringCase(name, which) || text::equalIgnoringCase(identifier, which);
}

std::vector<const ApplicationSnapshot*> applicationsNamed(const WorkspaceSnapshot& snapshot,
                                                          std::string_view which) {
    std::vector<const ApplicationSnapshot*> named;
    for (const ApplicationSnapshot& application : snapshot.applications)
        if (isNamed(application.name, application.bundleIdentifier, which)) named.push_back(&application);
    return named;
}

/// "#2": the place of the second one.
std::optional<std::size_t> place(std::string_view which) {
    std::size_t number = 0;
    if (!which.starts_with('#')) return std::nullopt;
    const auto [end, error] = std::from_chars(which.data() + 1, which.data() + which.size(), number);
    const bool whole = error == std::errc() && end == which.data() + which.size();
    return whole && number > 0 ? std::optional(number - 1) : std::nullopt;
}

std::vector<std::string> windowsNamed(const ApplicationSnapshot& application, std::string_view which) {
    std::vector<std::string> keys;
    const auto add = [&](const WindowSnapshot& window) {
        keys.push_back(CaptureFilter::windowKey(application.bundleIdentifier, window.index));
    };
    if (const auto at = place(which)) {
        if (*at < application.windows.size()) add(application.windows[*at]);
        return keys;
    }
    for (const WindowSnapshot& window : application.windows)
        if (text::equalIgnoringCase(window.title.value_or(""), which)) add(window);
    if (!keys.empty() || which.empty()) return keys;
    const std::string part = text::lowercase(which);
    for (const WindowSnapshot& window : application.windows)
        if (text::lowercase(window.title.value_or("")).contains(part)) add(window);
    return keys;
}

/// What one or all of the names of an option stand for.
struct Named {
    std::set<std::string> applications;  // whole ones
    std::set<std::string> windows;       // by key, of others
};

Failure noSuchWindow(std::string_view option, const ApplicationSnapshot& application,
                     std::string_view which) {
    std::vector<std::string> titles;
    for (const WindowSnapshot& window : application.windows) titles.push_back(window.title.value_or(""));
    return {Exit::failed, fmt::format("{}: {} has no saved window {}{}", option, quotedName(application.name),
                                      quotedName(which), suggestion(which, titles))};
}

Failure noSuchApplication(std::string_view option, const Workspace& workspace, std::string_view which) {
    std::vector<std::string> names;
    std::ranges::transform(workspace.snapshot.applications, std::back_inserter(names),
                           &ApplicationSnapshot::name);
    return {Exit::failed, fmt::format("{}: {} holds no application {}{}", option, quotedName(workspace.name),
                                      quotedName(which), suggestion(which, names))};
}

/// A name may hold a slash itself: the shortest beginning that names an application counts. False where
/// nothing does.
Result<bool, Failure> addNamed(Named& named, std::string_view option, const WorkspaceSnapshot& snapshot,
                               std::string_view which) {
    const auto whole = applicationsNamed(snapshot, which);
    for (const ApplicationSnapshot* one : whole) named.applications.insert(one->bundleIdentifier);
    if (!whole.empty()) return true;
    for (std::size_t slash = which.find('/'); slash != which.npos; slash = which.find('/', slash + 1)) {
        const auto owners = applicationsNamed(snapshot, which.substr(0, slash));
        const std::string_view window = which.substr(slash + 1);
        bool found = false;
        for (const ApplicationSnapshot* owner : owners) {
            const std::vector<std::string> keys = windowsNamed(*owner, window);
            named.windows.insert(keys.begin(), keys.end());
            found |= !keys.empty();
        }
        if (found) return true;
        if (!owners.empty()) return std::unexpected(noSuchWindow(option, *owners.front(), window));
    }
    return false;
}

void leaveOthersOut(const WorkspaceSnapshot& snapshot, const Named& named, LeftOut::Exclusions& excluded) {
    for (const ApplicationSnapshot& application : snapshot.applications) {
        const std::string& identifier = application.bundleIdentifier;
        if (named.applications.contains(identifier)) continue;
        std::vector<std::string> left;
        for (const WindowSnapshot& window : application.windows)
            if (std::string key = CaptureFilter::windowKey(identifier, window.index);
                !named.windows.contains(key))
                left.push_back(std::move(key));
        if (left.size() == application.windows.size())
            excluded.apps.insert(identifier);
        else
            excluded.windows.insert(left.begin(), left.end());
    }
}

bool touchesOthers(const Workspace& workspace, const Arguments& arguments) {
    return chosenCleanSlate(workspace, arguments).value_or(CleanSlateMode::keep) != CleanSlateMode::keep;
}

/// That one of `displays` has this identifier; `what` tells which they are.
Result<void, Failure> namesDisplay(DisplayMapper::DisplayList displays, const std::string& id,
                                   const std::string& what) {
    if (std::ranges::count(displays, id, &DisplaySnapshot::id) > 0) return {};
    std::vector<std::string> ids;
    for (const DisplaySnapshot& display : displays) ids.push_back(display.id);
    return failure(fmt::format("--display: no display {} is called {}; there is {}", what, quotedName(id),
                               printable(fmt::format("{}", fmt::join(ids, ", ")))));
}

}  // namespace

Result<RestoreChoice, Failure> choose(const Workspace& workspace, const Arguments& arguments) {
    RestoreChoice choice;
    if (!isPart(arguments)) return choice;
    const WorkspaceSnapshot snapshot = Restore::scopeOf(workspace.snapshot, false).snapshot;
    LeftOut::Exclusions& excluded = choice.selection.excluded;
    Named only, except;
    for (const std::string& which : arguments.only) {
        const Result<bool, Failure> known = addNamed(only, "--only", snapshot, which);
        if (!known) return std::unexpected(known.error());
        if (!*known) return std::unexpected(noSuchApplication("--only", workspace, which));
    }
    if (!arguments.only.empty()) leaveOthersOut(snapshot, only, excluded);
    for (const std::string& which : arguments.except) {
        const Result<bool, Failure> known = addNamed(except, "--except", snapshot, which);
        if (!known) return std::unexpected(known.error());
        if (*known) continue;
        if (!touchesOthers(workspace, arguments))
            return std::unexpected(noSuchApplication("--except", workspace, which));
        choice.others.push_back(which);
    }
    excluded.apps.insert(except.applications.begin(), except.applications.end());
    excluded.windows.insert(except.windows.begin(), except.windows.end());
    choice.selection.spared = std::move(except.applications);
    return choice;
}

Result<Restore::Options, Failure> chosenPart(CommandContext& context, Applications& applications,
                                             Workspace& workspace, RestoreChoice choice,
                                             const Arguments& arguments) {
    for (const std::string& which : choice.others) {
        bool found = false;
        for (const RunningApplication& target :
             Restore::cleanSlateTargets(applications, Restore::identifiersOf(workspace))) {
            if (!isNamed(target.localizedName.value_or(""), *target.bundleIdentifier, which)) continue;
            choice.selection.spared.insert(*target.bundleIdentifier);
            found = true;
        }
        if (!found)
            return failure(fmt::format("--except: neither {} nor what a clean slate would touch is called {}",
                                       quotedName(workspace.name), quotedName(which)));
    }
    Restore::Options options{.cleanSlate = chosenCleanSlate(workspace, arguments),
                             .enabledAdapters = settingsFor(context, arguments).enabledAdapters,
                             .arrangesOnly = arguments.arrange};
    choice.selection.apply(workspace.snapshot, options);
    return options;
}

std::optional<CleanSlateMode> chosenCleanSlate(const Workspace& workspace, const Arguments& arguments) {
    if (arguments.arrange) return CleanSlateMode::keep;
    if (arguments.cleanSlate) return cleanSlateMode(*arguments.cleanSlate);
    return arguments.only.empty() ? workspace.cleanSlate : std::nullopt;
}

Result<void, Failure> chooseDisplays(CommandContext& context, DesktopAccess& desktop, Workspace& workspace,
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
        const std::string was = pair.substr(0, sign), is = pair.substr(sign + 1);
        if (const auto known = namesDisplay(saved, was, "saved with " + quotedName(workspace.name)); !known)
            return known;
        if (const auto known = namesDisplay(present, is, "attached"); !known) return known;
        options.displays[was] = is;
    }
    if (!arguments.displays.empty()) {
        if (const Result<void> kept = answers.remember(saved, present, options.displays); !kept)
            context.output.complain("--display holds for this time only: " + printable(kept.error().text));
    }
    const DisplayTwins::Matching matching = DisplayTwins::match(saved, present, options.displays);
    if (matching.unclear.empty()) return {};
    context.output.complain(
        fmt::format("the displays {} are alike, and nothing tells which of {} each is now; --display "
                    "SAVED=PRESENT says it",
                    printable(fmt::format("{}", fmt::join(matching.unclear, ", "))),
                    printable(fmt::format("{}", fmt::join(matching.choices, ", ")))));
    return {};
}

}  // namespace quillo::ctl
