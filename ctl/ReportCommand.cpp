// report: a problem in one file, to be given away: everything that a restore decides by, and what it decides,
// without anybody's names. And its replay.
#include <fmt/format.h>
#include <simdjson.h>

#include <random>

#include "WindowEngine/library/AtomicFile.hpp"
#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "WindowEngine/restore/PlanComparison.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/NamedFile.hpp"
#include "ctl/ReportFile.hpp"
#include "ctl/RestoreChoice.hpp"
#include "ctl/SimulatedLayer.hpp"
#include "ctl/SystemLayer.hpp"
#include "platform/simulated/ReportScene.hpp"
#include "platform/simulated/SimulatedDesktop.hpp"
#include "settings/Version.hpp"

namespace quillo::ctl {
namespace {

constexpr std::string_view usualFile = "quillo-report.json";

/// One argument that can only be a file is one.
bool isFileName(std::string_view argument) {
    return argument == standardStream || argument.ends_with(".json");
}

struct Subject {
    std::string workspace;  // empty: the desktop as it is
    std::string file;
};

Subject subjectOf(const Arguments& arguments) {
    Subject subject{arguments.workspace, arguments.file};
    if (subject.file.empty() && isFileName(subject.workspace)) std::swap(subject.workspace, subject.file);
    if (subject.file.empty()) subject.file = usualFile;
    return subject;
}

Result<Workspace, Failure> workspaceOf(CommandContext& context, const Arguments& arguments,
                                       const Subject& subject) {
    if (!subject.workspace.empty()) {
        Result<Found, Failure> found = findWithHistory(context, subject.workspace);
        if (!found) return std::unexpected(found.error());
        return std::move(found->workspace);
    }
    Result<Captured, Failure> captured = captureDesktop(context, arguments);
    if (!captured) return std::unexpected(captured.error());
    return Workspace::create(Uuid::random(), std::string(unnamed), "square.stack.3d.up", "slate",
                             std::move(captured->snapshot), now());
}

/// Where the file goes; nothing stands there, unless it may be replaced.
Result<std::filesystem::path, Failure> target(CommandContext& context, const Arguments& arguments,
                                              const std::string& file) {
    std::filesystem::path path = namedFile(file);
    std::error_code trouble;
    if (std::filesystem::is_directory(path, trouble))
        return failure("FILE: " + printable(file) + " is a folder", Exit::usage);
    if (file != standardStream && !arguments.force && context.files.exists(path))
        return failure(printable(path.string()) + ": a file of this name exists; --force replaces it");
    return path;
}

/// The plan of the report's workspace on its own scene.
std::optional<RestorePreview> replayed(SimulatedDesktop& desktop, DesktopAccess& access,
                                       const Report& report) {
    Job<RestorePreview> job(desktop.executor(),
                            Restore::preview(access, report.workspace.snapshot, report.options));
    desktop.executor().runUntil([&job] { return job.done(); }, Duration::max());
    return job.result();
}

/// Has the report tell what its scene comes to, and how that differs from what was decided here.
Result<void> decide(Report& report, const RestorePreview& decided, SystemLog& log) {
    auto desktop = SimulatedDesktop::create(report.scene, "scene");
    if (!desktop) return std::unexpected(desktop.error());
    WindowHandleCache handles;
    DesktopAccess access{(*desktop)->platform(log), handles};
    const std::optional<RestorePreview> plan = replayed(**desktop, access, report);
    report.differences = Restore::planDifferences(decided, *plan);
    Output lines(report.plan);
    printWholePlan(lines, access.platform.applications, report.workspace, *plan, report.options);
    return {};
}

std::string_view layerOf(const Arguments& arguments) {
    return arguments.desktop.starts_with(simulatedPrefix) ? "simulated" : systemDesktopName;
}

}  // namespace

CommandResult reportProblem(CommandContext& context, const Arguments& arguments) {
    const Subject subject = subjectOf(arguments);
    const Result<std::filesystem::path, Failure> path = target(context, arguments, subject.file);
    if (!path) return std::unexpected(path.error());
    Result<Workspace, Failure> workspace = workspaceOf(context, arguments, subject);
    if (!workspace) return std::unexpected(workspace.error());
    const Result<std::unique_ptr<DesktopConnection>, Failure> desktop = openTrustedDesktop(context);
    if (!desktop) return std::unexpected(desktop.error());
    DesktopAccess& access = (*desktop)->access();
    Result<Restore::Options, Failure> options =
        chosenPart(context, access.platform.applications, *workspace, {}, arguments);
    if (!options) return std::unexpected(options.error());
    context.known.permit(*workspace, true, *options);
    const std::optional<RestorePreview> plan =
        run(**desktop, Restore::preview(access, workspace->snapshot, *options));
    if (!plan) return failure("cancelled", Exit::cancelled);
    std::random_device source;
    Pseudonyms names((std::uint64_t{source()} << 32) | source());
    std::optional<simulated::ReportScene> scene =
        run(**desktop, simulated::reportScene(access, *workspace, *plan, *options, names));
    if (!scene) return failure("cancelled", Exit::cancelled);
    Report report{.workspace = std::move(scene->workspace),
                  .scene = simulated::writeScene(scene->scene),
                  .options = *options,
                  .plan = {},
                  .differences = {}};
    if (const Result<void> told = decide(report, *plan, access.platform.log); !told)
        return couldNot("make the report", told.error());
    const Result<std::string> document = writeReport(report, versionWithCommit(), layerOf(arguments));
    if (!document) return couldNot("make the report", document.error());
    if (!report.differences.empty())
        context.output.complain(fmt::format("the report does not replay {}: it says which",
                                            counted(std::ssize(report.differences), "decision")));
    if (subject.file == standardStream) {
        context.output.document(*document);
        return Exit::done;
    }
    if (const Result<void> written = writeAtomically(context.files, *path, *document); !written)
        return couldNot("write the report", written.error());
    if (context.output.json()) {
        JsonLine line;
        line.add("report", path->string())
            .add("differences", static_cast<std::int64_t>(report.differences.size()));
        context.output.value(std::move(line));
    } else {
        context.output.done("Wrote " + printable(path->string()) + ", without titles, paths or addresses");
    }
    return Exit::done;
}

CommandResult replayPlan(CommandContext& context, const Arguments& arguments) {
    const Failure needsWorkspace{Exit::usage, "plan: W is required, unless --desktop names a report"};
    if (!arguments.desktop.starts_with(simulatedPrefix)) return std::unexpected(needsWorkspace);
    const std::filesystem::path file = namedFile(arguments.desktop.substr(simulatedPrefix.size()));
    const Result<std::string> bytes = context.files.read(file);
    if (!bytes) return failure(printable(bytes.error().text));
    Result<std::optional<Report>> report = readReport(*bytes, file.string());
    if (!report) return failure(printable(report.error().text));
    if (!*report) return std::unexpected(needsWorkspace);
    const Result<std::unique_ptr<DesktopConnection>, Failure> desktop = openTrustedDesktop(context);
    if (!desktop) return std::unexpected(desktop.error());
    DesktopAccess& access = (*desktop)->access();
    const Report& told = **report;
    const std::optional<RestorePreview> plan =
        run(**desktop, Restore::preview(access, told.workspace.snapshot, told.options));
    if (!plan) return failure("cancelled", Exit::cancelled);
    Applications& applications = access.platform.applications;
    std::vector<std::string> now;
    Output lines(now);
    printWholePlan(lines, applications, told.workspace, *plan, told.options);
    const std::int64_t others =
        printWholePlan(context.output, applications, told.workspace, *plan, told.options);
    // As its reader writes them, which may escape otherwise.
    simdjson::dom::parser parser;
    for (std::string& line : now) line = simdjson::minify(parser.parse(line).value());
    for (const std::string& difference : told.differences)
        context.output.complain("where it was made another decision was taken: " + printable(difference));
    if (now != told.plan) context.output.complain("this Quillo decides otherwise than the one that made it");
    const bool differs = others > 0 || !Restore::totalsOf(*plan).nothingToDo();
    return arguments.exitCode && differs ? Exit::differs : Exit::done;
}

}  // namespace quillo::ctl
