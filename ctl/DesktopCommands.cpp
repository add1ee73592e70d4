// doctor, windows, displays, save: the desktop as it is now.
#include <fmt/format.h>

#include <random>

#include "WindowEngine/capture/Capture.hpp"
#include "WindowEngine/capture/CaptureFilter.hpp"
#include "WindowEngine/capture/LeftOut.hpp"
#include "WindowEngine/desktop/Displays.hpp"
#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/SnapshotText.hpp"

namespace quillo::ctl {
namespace {

constexpr std::string_view defaultIcon = "square.stack.3d.up";

std::string randomColor() {
    std::random_device source;
    std::uniform_int_distribution<std::size_t> position(0, Workspace::colors.size() - 1);
    return std::string(Workspace::colors[position(source)]);
}

CommandResult store(CommandContext& context, std::string_view preposition, const Workspace& workspace) {
    if (const Result<void> saved = context.store.save(workspace); !saved) {
        return couldNot("save " + printable(workspace.name), saved.error());
    }
    noteProvenance(context, context.known.savedHere(workspace));
    return reportSaved(context,
                       fmt::format("Saved {} {}", reportCaptured(context, workspace.snapshot), preposition),
                       workspace);
}

CommandResult saveNew(CommandContext& context, const Arguments& arguments) {
    const Result<std::string, Failure> name = workspaceName("NAME", *arguments.name);
    if (!name) return std::unexpected(name.error());
    Result<WorkspaceSnapshot, Failure> snapshot = captureDesktop(context, arguments);
    if (!snapshot) return std::unexpected(snapshot.error());
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    if (!workspaces) return std::unexpected(workspaces.error());
    return store(context, "as",
                 Workspace::create(Uuid::random(), uniqueName(*name, *workspaces), std::string(defaultIcon),
                                   randomColor(), *std::move(snapshot), now()));
}

CommandResult renew(CommandContext& context, const Arguments& arguments) {
    Result<Workspace, Failure> workspace = find(context, *arguments.update);
    if (!workspace) return std::unexpected(workspace.error());
    Result<WorkspaceSnapshot, Failure> snapshot = captureDesktop(context, arguments, &workspace->snapshot);
    if (!snapshot) return std::unexpected(snapshot.error());
    // What it does to other applications stays only where that was chosen here.
    if (!context.known.isCleanSlateChosenHere(*workspace)) workspace->cleanSlate.reset();
    workspace->snapshot = *std::move(snapshot);
    workspace->updatedAt = now();
    return store(context, "in", *workspace);
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
    void tell(std::string_view what, const std::string& value) {
        if (output_.json()) {
            JsonLine line;
            line.add("check", what).add("value", value);
            output_.value(std::move(line));
        } else {
            print(what, printable(value));
        }
    }

  private:
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
    examination.tell("displays", std::to_string(Displays::current(platform.screens).size()));
}

std::string listed(const auto& names) {
    return names.empty() ? "none" : fmt::format("{}", fmt::join(names, ", "));
}

void examineStore(Examination& examination, CommandContext& context) {
    const WorkspaceScanResult library = context.store.scan();
    examination.tell("data directory", context.dataDirectory.string());
    examination.tell("workspaces", std::to_string(library.workspaces.size()));
    examination.tell("sessions", std::to_string(context.history.list().size()));
    examination.tell("damaged files", std::to_string(library.issues.size()));
    examination.tell("damaged versions", listed(context.store.damagedFiles()));
    if (library.failure) examination.tell("library", library.failure->text);
    examination.tell("log", context.logPlace);
}

void examineSettings(Examination& examination, const CommandContext& context, const AppSettings& settings) {
    examination.tell("settings", context.defaults.place());
    examination.tell("integrations", listed(settings.enabledAdapters));
    examination.tell("excluded applications", std::to_string(settings.excludedBundleIdentifiers.size()));
    examination.tell("excluded websites", std::to_string(settings.excludedDomains.size()));
}

}  // namespace

Result<WorkspaceSnapshot, Failure> captureDesktop(CommandContext& context, const Arguments& arguments,
                                                  const WorkspaceSnapshot* before) {
    Result<std::unique_ptr<DesktopConnection>, Failure> desktop = openTrustedDesktop(context);
    if (!desktop) return std::unexpected(desktop.error());
    DesktopAccess& access = (*desktop)->access();
    const Capture::Options options = settingsFor(context, arguments).captureOptions();
    std::optional<WorkspaceSnapshot> snapshot = run(**desktop, Capture::snapshot(access, options));
    if (!snapshot) return failure("cancelled", Exit::cancelled);
    if (!before) return *std::move(snapshot);
    const LeftOut::Exclusions excluded = LeftOut::recognised(*before, *snapshot);
    return LeftOut::carriedOver(
        *before,
        CaptureFilter::apply(*std::move(snapshot), excluded.apps, excluded.windows, excluded.contextURLs),
        {Capture::neverSaved(access.platform.applications, options), options.excludedDomains});
}

std::string reportCaptured(CommandContext& context, const WorkspaceSnapshot& snapshot) {
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
    } else {
        examination.can("window access", Capability::unavailable(desktop.error().text));
    }
    examineStore(examination, context);
    examineSettings(examination, context, settingsFor(context, arguments));
    const bool trusted = desktop && (*desktop)->access().platform.accessibility.trusted();
    return trusted ? Exit::done : Exit::permission;
}

CommandResult showWindows(CommandContext& context, const Arguments& arguments) {
    const Result<WorkspaceSnapshot, Failure> snapshot = captureDesktop(context, arguments);
    if (!snapshot) return std::unexpected(snapshot.error());
    if (snapshot->windowCount() == 0 && !context.output.json()) context.output.line("No windows.");
    printWindows(context.output, *snapshot);
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

CommandResult saveWorkspace(CommandContext& context, const Arguments& arguments) {
    if (arguments.update) return renew(context, arguments);
    if (arguments.name) return saveNew(context, arguments);
    return failure("save: give the new workspace's NAME, or --update W to renew one", Exit::usage);
}

}  // namespace quillo::ctl
