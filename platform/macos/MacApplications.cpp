#include "platform/macos/MacApplications.hpp"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <tuple>

#include "WindowEngine/records/OwnIdentity.hpp"
#include "WindowEngine/support/Completion.hpp"
#include "platform/macos/WorkspaceErrors.hpp"

namespace quillo {
namespace {

/// Living processes of one identity; the one that stands for it first.
using Family = std::vector<WorkspaceProcess>;

/// A helper may carry the identifier of the application whose bundle it came in: it never stands for one that
/// shows itself. Among equals the oldest does; what the system does not know the start of counts as young.
auto seniority(const WorkspaceProcess& process) {
    return std::tuple(process.policy, process.launchDate.value_or(Instant::max()), process.pid);
}

bool belongs(const Family& family, const WorkspaceProcess& process) {
    return process.identifier && family.front().identifier == process.identifier;
}

/// In the order in which the system lists the first member of each.
std::vector<Family> familiesOf(std::vector<WorkspaceProcess> processes) {
    std::vector<Family> families;
    for (auto& process : processes) {
        if (process.terminated || process.pid <= 0) continue;
        const auto known =
            std::ranges::find_if(families, [&](const Family& family) { return belongs(family, process); });
        if (known == families.end()) {
            families.push_back({std::move(process)});
        } else {
            known->push_back(std::move(process));
        }
    }
    for (auto& family : families) std::ranges::sort(family, {}, seniority);
    return families;
}

RunningApplication described(const Family& family) {
    const WorkspaceProcess& eldest = family.front();
    return {.pid = eldest.pid,
            .bundleIdentifier = eldest.identifier,
            .localizedName = eldest.name,
            .activationPolicy = eldest.policy,
            .bundleURL = eldest.location,
            .launchDate = eldest.launchDate,
            .isHidden = eldest.hidden};
}

bool contains(const auto& range, const auto& value, auto projection) {
    return std::ranges::find(range, value, projection) != std::ranges::end(range);
}

Family familyOf(WorkspaceShell& shell, ProcessID pid) {
    for (auto& family : familiesOf(shell.processes())) {
        if (contains(family, pid, &WorkspaceProcess::pid)) return std::move(family);
    }
    return {};
}

Family familyNamed(WorkspaceShell& shell, std::string_view identifier) {
    for (auto& family : familiesOf(shell.processes())) {
        if (family.front().identifier == identifier) return std::move(family);
    }
    return {};
}

/// Where a person, an administrator or the system puts applications; whatever lies in their folders too.
bool isInstalledPlace(const Url& location) {
    const auto path = location.standardized().filePath().value_or("");
    const char* const home = std::getenv("HOME");
    const std::array folders{std::string("/Applications/"), std::string("/System/"),
                             std::string(home && *home == '/' ? home : "") + "/Applications/"};
    return std::ranges::any_of(folders, [&](const std::string& folder) { return path.starts_with(folder); });
}

/// Those of the identifier that count as installed, the one that the system would open first.
std::vector<Url> installedPlaces(WorkspaceShell& shell, std::string_view identifier) {
    std::vector<Url> places = shell.locations(identifier);
    std::erase_if(places, [](const Url& place) { return !isInstalledPlace(place); });
    return places;
}

std::optional<RunningApplication> describedIfAny(const Family& family) {
    return family.empty() ? std::nullopt : std::optional(described(family));
}

}  // namespace

std::vector<RunningApplication> MacApplications::running() {
    std::vector<RunningApplication> all;
    std::ranges::transform(familiesOf(shell_.processes()), std::back_inserter(all), described);
    return all;
}

std::optional<RunningApplication> MacApplications::running(ProcessID pid) {
    return describedIfAny(familyOf(shell_, pid));
}

std::optional<RunningApplication> MacApplications::running(std::string_view bundleIdentifier) {
    return describedIfAny(familyNamed(shell_, bundleIdentifier));
}

std::vector<ProcessID> MacApplications::family(ProcessID pid) {
    std::vector<ProcessID> pids;
    // The system lets a prohibited one create no windows, and it may not even serve accessibility: asked for
    // them, it would answer as one that hangs, and those of the others would count as unread.
    for (const auto& process : familyOf(shell_, pid)) {
        if (pids.empty() || process.policy != ActivationPolicy::prohibited) pids.push_back(process.pid);
    }
    return pids;
}

std::vector<std::string> MacApplications::ownIdentifiers() {
    std::vector<std::string> identifiers{std::string(ownBundleIdentifier)};
    const auto add = [&](const std::optional<std::string>& identifier) {
        if (identifier && !contains(identifiers, *identifier, std::identity()))
            identifiers.push_back(*identifier);
    };
    add(shell_.ownIdentifier());
    const auto processes = shell_.processes();
    for (ProcessID pid = getpid(); pid > 1; pid = shell_.parent(pid).value_or(0)) {
        const auto process = std::ranges::find(processes, pid, &WorkspaceProcess::pid);
        if (process != processes.end()) add(process->identifier);
    }
    // Under a terminal multiplexer the terminal is no ancestor, but what it started inherits its name.
    if (const char* const terminal = std::getenv("__CFBundleIdentifier")) add(terminal);
    return identifiers;
}

std::optional<Url> MacApplications::location(std::string_view bundleIdentifier) {
    if (const auto application = running(bundleIdentifier); application && application->bundleURL)
        return application->bundleURL;
    const auto locations = installedPlaces(shell_, bundleIdentifier);
    return locations.empty() ? std::nullopt : std::optional(locations.front());
}

std::optional<std::string> MacApplications::identifierAt(const Url& location) {
    if (!location.filePath()) return std::nullopt;
    auto identifier = shell_.identifierAt(location);
    if (!identifier) return std::nullopt;
    // Any folder may say of itself whose it is: it counts only where the system has it in its own list.
    const auto installed = installedPlaces(shell_, *identifier);
    const bool known = contains(installed, location.standardized(), &Url::standardized);
    return known ? std::move(identifier) : std::nullopt;
}

std::optional<std::string> MacApplications::name(std::string_view bundleIdentifier) {
    const auto places = installedPlaces(shell_, bundleIdentifier);
    return places.empty() ? std::nullopt : shell_.name(places.front());
}

Task<Result<void>> MacApplications::openWith(Url location, std::vector<Url> documents) {
    using Outcome = std::optional<WorkspaceError>;
    Completion<Outcome> completion(executor_);
    shell_.open(location, documents,
                [setter = completion.setter()](Outcome outcome) { setter.set(std::move(outcome)); });
    try {
        if (const Outcome outcome = co_await completion) co_return std::unexpected(openError(*outcome));
        co_return Result<void>();
    } catch (const CompletionLost&) {  // the system let go of whom it was to answer
        co_return fail(ErrorKind::refused, "the system gave no answer");
    }
}

bool MacApplications::activate(std::string_view identifier) {
    const Family family = familyNamed(shell_, identifier);
    return !family.empty() && shell_.activate(family.front().pid);
}

Task<Result<void>> MacApplications::launch(Url location, std::vector<Url> documents) {
    const auto identifier = identifierAt(location);
    if (!identifier) co_return fail(ErrorKind::notFound, "the application is not installed");
    // The system's launcher would also ask a running application to open again, on which some bring up a
    // window.
    if (documents.empty() && activate(*identifier)) co_return Result<void>();
    co_return co_await openWith(std::move(location), std::move(documents));
}

Task<Result<void>> MacApplications::open(std::string bundleIdentifier, std::vector<Url> documents) {
    const auto where = location(bundleIdentifier);
    if (!where) co_return fail(ErrorKind::notFound, "the application is not installed");
    co_return co_await openWith(*where, std::move(documents));
}

Task<Result<void>> MacApplications::requestWindow(std::string bundleIdentifier) {
    const auto application = running(bundleIdentifier);
    if (!application) co_return fail(ErrorKind::notFound, "the application is not running");
    co_return co_await open(std::move(bundleIdentifier), {});
}

Result<Url> MacApplications::openable(std::string_view bundleIdentifier, const Url& document) {
    auto judged = judge_(document, shell_);
    if (!judged) return judged;
    const auto places = shell_.locations(bundleIdentifier);
    const auto opens = [&](const Url& opener) {
        return contains(places, opener.standardized(), &Url::standardized);
    };
    if (!std::ranges::any_of(shell_.openers(*judged), opens))
        return fail(ErrorKind::refused, "the application does not say that it opens such documents");
    return judged;
}

bool MacApplications::hide(std::string_view bundleIdentifier) {
    bool accepted = false;
    for (const auto& process : familyNamed(shell_, bundleIdentifier)) accepted |= shell_.hide(process.pid);
    return accepted;
}

bool MacApplications::show(std::string_view bundleIdentifier) {
    bool accepted = false;
    for (const auto& process : familyNamed(shell_, bundleIdentifier)) accepted |= shell_.show(process.pid);
    return accepted;
}

bool MacApplications::terminate(std::string_view bundleIdentifier) {
    bool accepted = false;
    for (const auto& process : familyNamed(shell_, bundleIdentifier))
        accepted |= shell_.terminate(process.pid);
    return accepted;
}

std::optional<ProcessID> MacApplications::serviceProcess(std::string_view bundleIdentifier) {
    const auto application = running(bundleIdentifier);
    const bool isService = application && application->activationPolicy != ActivationPolicy::regular;
    return isService ? std::optional(application->pid) : std::nullopt;
}

}  // namespace quillo
