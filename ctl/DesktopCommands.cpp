// doctor, windows, displays, save: the desktop as it is now.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <random>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/capture/LeftOut.hpp"
#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/records/OwnIdentity.hpp"
#include "WindowEngine/restore/DisplayLayouts.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/SnapshotText.hpp"
#include "ctl/SystemLayer.hpp"
#include "settings/Launchers.hpp"

namespace quillo::ctl {
namespace {

constexpr std::string_view defaultIcon = "square.stack.3d.up";

std::string randomColor() {
    std::random_device source;
    std::uniform_int_distribution<std::size_t> position(0, Workspace::colors.size() - 1);
    return std::string(Workspace::colors[position(source)]);
}

CommandResult reportStored(CommandContext& context, std::string_view preposition, const Captured& captured,
                           const Workspace& workspace) {
    noteProvenance(context, context.known.savedHere(workspace));
    return reportSaved(context, fmt::format("Saved {} {}", reportCaptured(context, captured), preposition),
                       workspace);
}

CommandResult saveNew(CommandContext& context, const Arguments& arguments) {
    const Result<std::string, Failure> name = workspaceName("NAME", *arguments.name);
    if (!name) return std::unexpected(name.error());
    Result<Captured, Failure> captured = captureDesktop(context, arguments);
    if (!captured) return std::unexpected(captured.error());
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    if (!workspaces) return std::unexpected(workspaces.error());
    const Result<Workspace> saved =
        context.store.saveAsNew(Workspace::create(Uuid::random(), *name, std::string(defaultIcon),
                                                  randomColor(), captured->snapshot, now()),
                                *workspaces);
    if (!saved) return couldNot("save " + quotedName(*name), saved.error());
    return reportStored(context, "as", *captured, *saved);
}

bool canBeLaunched(Applications& applications, const std::string& identifier,
                   const std::optional<Url>& location) {
    return (location && applications.identifierAt(*location) == identifier) ||
           applications.location(identifier);
}

std::string named(const std::string& name, const std::string& identifier) {
    return printable(name) + " (" + printable(identifier) + ")";
}

std::vector<std::string> notLaunchable(Applications& applications, const WorkspaceSnapshot& snapshot) {
    std::vector<std::string> warnings;
    for (const ApplicationSnapshot& application : snapshot.applications) {
        const std::string& identifier = application.bundleIdentifier;
        if (canBeLaunched(applications, identifier, application.applicationURL)) continue;
        std::string warning = fmt::format("{}: {}, so a restore will not",
                                          named(application.name, identifier), applications.notInstalled());
        if (systemHasLaunchers)
            warning += fmt::format("; quilloctl launcher add {} COMMAND... says how", quotedName(identifier));
        warnings.push_back(std::move(warning));
    }
    return warnings;
}

std::optional<CaptureHealth::Flaw> flawOf(CommandContext& context, DesktopAccess& access,
                                          const WorkspaceSnapshot& snapshot) {
    const Result<Workspace> last = context.history.store().load(SessionHistory::latestID);
    const auto displays = Displays::current(access.platform.screens);
    return CaptureHealth::flawOf(
        {.access = access.platform.accessibility.trusted(),
         .screen = access.platform.screens.state(),
         .hasDisplay = !displays.empty(),
         .displaysChanging = displays != snapshot.displays,
         .windowsBefore = last ? CaptureHealth::windowsBefore(last->snapshot, snapshot.capturedAt) : 0,
         .windows = snapshot.windowCount()});
}

std::vector<std::string> warningsOf(Applications& applications, const WorkspaceSnapshot& snapshot,
                                    const std::optional<CaptureHealth::Flaw>& flaw) {
    std::vector<std::string> warnings = notLaunchable(applications, snapshot);
    if (flaw) warnings.push_back(CaptureHealth::warning(*flaw));
    return warnings;
}

Result<Captured, Failure> capture(CommandContext& context, DesktopConnection& desktop,
                                  const Capture::Options& options) {
    DesktopAccess& access = desktop.access();
    std::optional<WorkspaceSnapshot> snapshot = run(desktop, Capture::snapshot(access, options));
    if (!snapshot) return failure("cancelled", Exit::cancelled);
    const auto flaw = flawOf(context, access, *snapshot);
    std::vector<std::string> warnings = warningsOf(access.platform.applications, *snapshot, flaw);
    return Captured{*std::move(snapshot), std::move(warnings), flaw};
}

/// What was left out of what it takes the place of stays left out.
WorkspaceSnapshot renewed(const WorkspaceSnapshot& before, const WorkspaceSnapshot& captured,
                          const LeftOut::Policy& policy) {
    const LeftOut::Exclusions excluded = LeftOut::recognised(before, captured);
    return LeftOut::carriedOver(
        before,
        DisplayLayouts::carriedOver(
            before, CaptureFilter::apply(captured, excluded.apps, excluded.windows, excluded.contextURLs)),
        policy);
}

/// What is stored by then is renewed: it may have been changed while the desktop was read.
CommandResult renew(CommandContext& context, const Arguments& arguments) {
    const Result<Workspace, Failure> workspace = find(context, *arguments.update);
    if (!workspace) return std::unexpected(workspace.error());
    const Result<std::unique_ptr<DesktopConnection>, Failure> desktop = openTrustedDesktop(context);
    if (!desktop) return std::unexpected(desktop.error());
    const Capture::Options options = settingsFor(context, arguments).captureOptions();
    Result<Captured, Failure> captured = capture(context, **desktop, options);
    if (!captured) return std::unexpected(captured.error());
    if (const auto sound = refuseFlawed(*workspace, *captured, arguments); !sound)
        return std::unexpected(sound.error());
    Applications& applications = (*desktop)->access().platform.applications;
    const LeftOut::Policy policy{Capture::neverSaved(applications, options), options.excludedDomains};
    const auto changed = context.store.change(workspace->id, [&](Workspace& stored) -> Result<void> {
        // What it does to other applications stays only where that was chosen here.
        if (!context.known.isCleanSlateChosenHere(stored)) stored.cleanSlate.reset();
        stored.snapshot = renewed(stored.snapshot, captured->snapshot, policy);
        stored.updatedAt = now();
        return {};
    });
    if (!changed) return couldNot("save " + quotedName(workspace->name), changed.error());
    captured->snapshot = changed->after.snapshot;
    captured->warnings = warningsOf(applications, captured->snapshot, captured->flaw);
    return reportStored(context, "in", *captured, changed->after);
}

/// One line of the doctor's report.
class Examination {
  public:
    explicit Examination(Output& output) : output_(output) {}

    void can(std::string_view what, const Capability& capability) {
        if (output_.json()) {
            JsonLine line;
            line.add("check", what).add("available", static_cast<bool>(capability));
            if (!capability) line.add("reason", capability.reason());
            output_.value(std::move(line));
            return;
        }
        print(what, capability ? output_.painted(Style::good, "yes")
                               : output_.painted(Style::bad, "no") + "  " + printable(capability.reason()));
    }
    void tell(std::string_view what, const std::string& value) { tell(what, value, value); }
    void tell(std::string_view what, std::size_t count) {
        tell(what, static_cast<std::int64_t>(count), std::to_string(count));
    }
    void tell(std::string_view what, const std::vector<std::string>& names) {
        tell(what, names, names.empty() ? "none" : fmt::format("{}", fmt::join(names, ", ")));
    }

  private:
    void tell(std::string_view what, const auto& value, const std::string& text) {
        if (output_.json()) {
            JsonLine line;
            line.add("check", what).add("value", value);
            output_.value(std::move(line));
        } else {
            print(what, printable(text));
        }
    }
    void print(std::string_view what, std::string_view value) {
        output_.line(padded(what, 22) + std::string(value));
    }
    Output& output_;
};

void examineDesktop(Examination& examination, DesktopConnection& desktop) {
    const Platform& platform = desktop.access().platform;
    examination.tell("desktop", desktop.description());
    examination.can("window access", platform.accessibility.access());
    examination.can("file manager folders", platform.accessibility.folders());
    examination.can("reading desktops", platform.windowServer.spaces());
    examination.can("creating desktops", platform.windowServer.desktopCreation());
    examination.can("hiding applications", platform.applications.hiding());
    examination.can("quitting applications", platform.applications.quitting());
    examination.can("scripting", platform.scripts.scripting());
    examination.can("browser session files", platform.browserFiles.reading());
    examination.tell("displays", Displays::current(platform.screens).size());
}

/// Of those that run.
std::vector<std::string> notLaunchable(Applications& applications) {
    std::vector<std::string> names;
    for (const RunningApplication& one : applications.running()) {
        if (one.activationPolicy != ActivationPolicy::regular || !one.bundleIdentifier) continue;
        if (*one.bundleIdentifier == ownBundleIdentifier) continue;
        if (!canBeLaunched(applications, *one.bundleIdentifier, one.bundleURL))
            names.push_back(named(one.localizedName.value_or(""), *one.bundleIdentifier));
    }
    return names;
}

void examineLaunchers(Examination& examination, CommandContext& context, DesktopConnection& desktop) {
    const std::vector<std::string> names = notLaunchable(desktop.access().platform.applications);
    examination.tell("not launchable", names);
    std::vector<std::string> launchers;
    for (const auto& [application, command] : Launchers(context.defaults).all())
        launchers.push_back(application);
    examination.tell("launchers", launchers);
    if (systemHasLaunchers && !names.empty() && !context.output.json())
        context.output.line(
            "    No menu entry starts these; quilloctl launcher add APP COMMAND... says how.");
}

void examineStore(Examination& examination, CommandContext& context) {
    const WorkspaceScanResult library = context.store.scan(), history = context.history.scan();
    std::int64_t damaged = 0;
    for (const WorkspaceScanResult* found : {&library, &history}) {
        complainOf(context, *found);
        damaged += std::ranges::count(found->issues, WorkspaceLoadIssue::Kind::unreadable,
                                      &WorkspaceLoadIssue::kind);
    }
    examination.tell("data directory", context.dataDirectory.string());
    examination.tell("workspaces", library.workspaces.size());
    examination.tell("sessions", history.workspaces.size());
    examination.tell("damaged files", static_cast<std::size_t>(damaged));
    examination.tell("damaged versions", context.store.damagedFiles());
    if (library.failure) examination.tell("library", library.failure->text);
    if (history.failure) examination.tell("history", history.failure->text);
    examination.tell("log", context.logPlace);
}

void examineSettings(Examination& examination, const CommandContext& context, const AppSettings& settings) {
    examination.tell("settings", context.defaults.place());
    examination.tell("integrations",
                     std::vector(settings.enabledAdapters.begin(), settings.enabledAdapters.end()));
    examination.tell("excluded applications", settings.excludedBundleIdentifiers.size());
    examination.tell("excluded websites", settings.excludedDomains.size());
}

}  // namespace

Result<Captured, Failure> captureDesktop(CommandContext& context, const Arguments& arguments) {
    const Result<std::unique_ptr<DesktopConnection>, Failure> desktop = openTrustedDesktop(context);
    if (!desktop) return std::unexpected(desktop.error());
    return capture(context, **desktop, settingsFor(context, arguments).captureOptions());
}

std::string reportCaptured(CommandContext& context, const Captured& captured) {
    const WorkspaceSnapshot& snapshot = captured.snapshot;
    if (snapshot.applications.empty())
        context.output.complain(
            "nothing is open that a save records, so a restore of this brings nothing back");
    for (const std::string& warning : captured.warnings) context.output.complain(warning);
    for (const std::string& note : snapshot.notes.value_or(std::vector<std::string>{})) {
        context.output.complain(printable(note));
    }
    const auto applications = static_cast<std::int64_t>(snapshot.applications.size());
    return counted(snapshot.windowCount(), "window") + " of " + counted(applications, "application");
}

CommandResult doctor(CommandContext& context, const Arguments& arguments) {
    Examination examination(context.output);
    const Result<std::unique_ptr<DesktopConnection>, Failure> desktop = openDesktop(context);
    if (desktop) {
        examineDesktop(examination, **desktop);
        examineLaunchers(examination, context, **desktop);
    } else {
        examination.can("window access", Capability::unavailable(desktop.error().text));
    }
    examineStore(examination, context);
    examineSettings(examination, context, settingsFor(context, arguments));
    const bool trusted = desktop && (*desktop)->access().platform.accessibility.trusted();
    return trusted ? Exit::done : Exit::permission;
}

CommandResult showWindows(CommandContext& context, const Arguments& arguments) {
    const Result<Captured, Failure> captured = captureDesktop(context, arguments);
    if (!captured) return std::unexpected(captured.error());
    const WorkspaceSnapshot& snapshot = captured->snapshot;
    if (snapshot.windowCount() == 0 && !context.output.json()) context.output.line("No windows.");
    printWindows(context.output, snapshot);
    return Exit::done;
}

CommandResult showDisplays(CommandContext& context, const Arguments&) {
    const Result<std::unique_ptr<DesktopConnection>, Failure> desktop = openDesktop(context);
    if (!desktop) return std::unexpected(desktop.error());
    const auto displays = Displays::current((*desktop)->access().platform.screens);
    if (displays.empty() && !context.output.json()) context.output.line("No display is attached.");
    printDisplays(context.output, displays);
    return Exit::done;
}

Result<void, Failure> refuseFlawed(const Workspace& workspace, const Captured& captured,
                                   const Arguments& arguments) {
    if (!captured.flaw || arguments.force) return {};
    return failure(fmt::format("{} stays as it was: {}; --force renews it all the same",
                               quotedName(workspace.name), CaptureHealth::words(*captured.flaw)));
}

CommandResult saveWorkspace(CommandContext& context, const Arguments& arguments) {
    if (arguments.update) return renew(context, arguments);
    if (arguments.name) return saveNew(context, arguments);
    return failure("save: give the new workspace's NAME, or --update W to renew one", Exit::usage);
}

}  // namespace quillo::ctl
