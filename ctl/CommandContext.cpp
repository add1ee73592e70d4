#include "ctl/CommandContext.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>

#include "WindowEngine/support/Text.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/NearestName.hpp"
#include "settings/SettingsRescue.hpp"

namespace quillo::ctl {
namespace {

Failure ambiguous(std::string_view which, std::span<const Workspace* const> named) {
    const bool byName = text::equalIgnoringCase(named.front()->name, which);
    std::string text =
        fmt::format("{} {} {}; give one of these identifiers instead:", named.size(),
                    byName ? "workspaces are named" : "identifiers begin with", quotedName(which));
    for (const Workspace* workspace : named) {
        text += fmt::format("\n  {}  {}, saved {}", workspace->id.lower(), printable(workspace->name),
                            dateText(workspace->updatedAt));
    }
    return {Exit::failed, std::move(text)};
}

constexpr std::size_t fewestOfIdentifier = 4;  // that nobody types them by chance

bool begins(const Workspace& workspace, std::string_view which) {
    return !which.empty() && workspace.id.lower().starts_with(text::lowercase(which));
}

/// The one with this identifier, else all with this name, else all whose identifier begins so.
std::vector<const Workspace*> knownAs(std::string_view which, std::span<const Workspace> workspaces) {
    const std::optional<Uuid> id = Uuid::parse(which);
    std::vector<const Workspace*> named, begun;
    for (const Workspace& workspace : workspaces) {
        if (id && workspace.id == *id) return {&workspace};
        if (text::equalIgnoringCase(workspace.name, which)) named.push_back(&workspace);
        if (which.size() >= fewestOfIdentifier && begins(workspace, which)) begun.push_back(&workspace);
    }
    return named.empty() ? begun : named;
}

std::vector<std::string> namesOf(std::span<const Workspace> workspaces) {
    std::vector<std::string> names;
    std::ranges::transform(workspaces, std::back_inserter(names), &Workspace::name);
    return names;
}

std::unexpected<Failure> unknown(std::string_view which, std::span<const Workspace> workspaces) {
    const bool beginsOne = std::ranges::any_of(
        workspaces, [which](const Workspace& workspace) { return begins(workspace, which); });
    const std::string hint =
        beginsOne ? fmt::format("; of an identifier give {} characters at least", fewestOfIdentifier)
                  : suggestion(which, namesOf(workspaces));
    return failure("there is no workspace " + quotedName(which) + hint);
}

Result<std::vector<Workspace>, Failure> workspacesOf(CommandContext& context, WorkspaceScanResult found) {
    complainOf(context, found);
    if (found.failure) return failure(printable(found.failure->text));
    return std::move(found.workspaces);
}

}  // namespace

AppSettings settingsFor(CommandContext& context, const Arguments& arguments) {
    const std::optional<std::string> stored = context.defaults.data(AppSettings::defaultsKey);
    std::optional<AppSettings> settings = stored ? AppSettings::decode(*stored) : AppSettings{};
    std::optional<std::string> trouble = context.defaults.trouble();
    if (!settings) {
        trouble = std::filesystem::path(context.defaults.place()).filename().string() + ": " +
                  std::string(AppSettings::defaultsKey) + ": a field is not of the type it must have";
    }
    if (trouble) {
        context.output.complain("the settings cannot be read, the usual ones are used: " +
                                printable(*trouble));
    }
    const SettingsRescue rescued(context.defaults);  // by the application, and nobody has dealt with it
    if (rescued.trouble()) context.output.complain(printable(*rescued.trouble()));
    AppSettings chosen = std::move(settings).value_or(AppSettings{});
    chosen.enabledAdapters.insert(arguments.adapters.begin(), arguments.adapters.end());
    return chosen;
}

void noteProvenance(CommandContext& context, const Result<void>& noted) {
    if (noted) return;
    context.output.complain("could not note that this was done here, so a restore will ask first: " +
                            printable(noted.error().text));
}

void complainOf(CommandContext& context, const WorkspaceScanResult& found) {
    for (const WorkspaceLoadIssue& issue : found.issues) context.output.complain(printable(issue.text()));
    for (const std::string& file : found.moved) context.output.complain(printable(file));
}

Result<std::vector<Workspace>, Failure> scan(CommandContext& context) {
    return workspacesOf(context, context.store.scan());
}

Result<std::vector<Workspace>, Failure> scanHistory(CommandContext& context) {
    return workspacesOf(context, context.history.scan());
}

Result<Workspace, Failure> find(std::span<const Workspace> workspaces, std::string_view which) {
    const std::vector<const Workspace*> known = knownAs(which, workspaces);
    if (known.empty()) return unknown(which, workspaces);
    if (known.size() > 1) return std::unexpected(ambiguous(which, known));
    return *known.front();
}

Result<Workspace, Failure> find(CommandContext& context, std::string_view which) {
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    return workspaces ? find(*workspaces, which) : std::unexpected(workspaces.error());
}

Result<Found, Failure> findWithHistory(CommandContext& context, std::string_view which) {
    Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    const bool isSession = workspaces && knownAs(which, *workspaces).empty();
    if (isSession) {
        Result<std::vector<Workspace>, Failure> sessions = scanHistory(context);
        if (sessions && knownAs(which, *sessions).empty()) {
            workspaces->insert(workspaces->end(), sessions->begin(), sessions->end());
            return unknown(which, *workspaces);
        }
        workspaces = std::move(sessions);
    }
    if (!workspaces) return std::unexpected(workspaces.error());
    Result<Workspace, Failure> found = find(*workspaces, which);
    if (!found) return std::unexpected(found.error());
    return Found{*std::move(found), isSession};
}

Result<std::string, Failure> workspaceName(std::string_view argument, std::string_view text) {
    if (!text::isValidUtf8(text)) return failure(fmt::format("{}: not valid UTF-8", argument), Exit::usage);
    std::string name = text::trim(text);
    if (name.empty()) return failure(fmt::format("{}: the name is empty", argument), Exit::usage);
    return name;
}

Result<std::unique_ptr<DesktopConnection>, Failure> openDesktop(CommandContext& context) {
    Result<std::unique_ptr<DesktopConnection>> desktop = context.openDesktop();
    if (desktop) return *std::move(desktop);
    const ErrorKind kind = desktop.error().kind;
    const bool unreachable = kind == ErrorKind::unavailable || kind == ErrorKind::permission;
    return failure(printable(desktop.error().text), unreachable ? Exit::permission : Exit::failed);
}

Result<std::unique_ptr<DesktopConnection>, Failure> openTrustedDesktop(CommandContext& context) {
    Result<std::unique_ptr<DesktopConnection>, Failure> desktop = openDesktop(context);
    if (!desktop) return desktop;
    AccessibilityService& accessibility = (*desktop)->access().platform.accessibility;
    if (!accessibility.trusted()) {
        return failure("Accessibility permission not granted: " + accessibility.access().reason(),
                       Exit::permission);
    }
    return desktop;
}

std::filesystem::path absolutePath(const std::filesystem::path& path) {
    std::error_code trouble;
    std::filesystem::path absolute = std::filesystem::absolute(path, trouble);
    return trouble ? path : absolute;
}

Instant now() {
    return std::chrono::time_point_cast<Instant::duration>(std::chrono::system_clock::now());
}

}  // namespace quillo::ctl
