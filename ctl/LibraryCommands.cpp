// list, show, rename, duplicate, delete: the saved workspaces. None of these needs a desktop.
#include <fmt/format.h>

#include <algorithm>
#include <span>

#include "WindowEngine/library/ImportedWorkspace.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/SnapshotText.hpp"
#include "ctl/Table.hpp"

namespace quillo::ctl {
namespace {

std::int64_t applicationCount(const Workspace& workspace) {
    return static_cast<std::int64_t>(workspace.snapshot.applications.size());
}

void printTable(Output& output, std::span<const Workspace> workspaces) {
    Table table({"NAME", "WINDOWS", "APPLICATIONS", "SAVED", "RESTORED"});
    for (const Workspace& workspace : workspaces) {
        const std::string restored = workspace.lastRestoredAt ? dateText(*workspace.lastRestoredAt) : "never";
        table.row({{printable(workspace.name), Style::bold},
                   {std::to_string(workspace.snapshot.windowCount())},
                   {std::to_string(applicationCount(workspace))},
                   {dateText(workspace.updatedAt)},
                   {restored, workspace.lastRestoredAt ? Style::plain : Style::dim}});
    }
    table.print(output);
}

std::string contents(const WorkspaceSnapshot& snapshot) {
    std::string text = counted(static_cast<std::int64_t>(snapshot.applications.size()), "application") +
                       ", " + counted(snapshot.windowCount(), "window") + ", " +
                       counted(static_cast<std::int64_t>(snapshot.displays.size()), "display");
    if (const auto count = snapshot.desktopCount()) text += ", " + counted(count, "desktop");
    if (const auto count = snapshot.folderCount()) text += ", " + counted(count, "folder");
    if (const auto count = snapshot.tabCount()) text += ", " + counted(count, "tab");
    return text;
}

std::string leftOut(std::span<const LeftOutPart> parts) {
    std::string text;
    const auto count = [&](LeftOutPart::Kind kind, std::string_view noun, std::string_view plural) {
        const std::int64_t found = std::ranges::count(parts, kind, &LeftOutPart::kind);
        if (found > 0) text += (text.empty() ? "" : ", ") + counted(found, noun, plural);
    };
    count(LeftOutPart::Kind::application, "application", {});
    count(LeftOutPart::Kind::window, "window", {});
    count(LeftOutPart::Kind::address, "folder or tab", "folders or tabs");
    return text;
}

void printWorkspace(Output& output, const Workspace& workspace) {
    const auto field = [&output](std::string_view label, std::string_view value) {
        output.line(output.painted(Style::dim, padded(label, 12)) + std::string(value));
    };
    output.line(output.painted(Style::bold, printable(workspace.name)));
    field("identifier", workspace.id.lower());
    field("look", printable(workspace.color + ", " + workspace.icon));
    field("created", dateText(workspace.createdAt));
    field("saved", dateText(workspace.updatedAt));
    field("restored", workspace.lastRestoredAt ? dateText(*workspace.lastRestoredAt) : "never");
    if (workspace.cleanSlate) field("resuming", label(*workspace.cleanSlate));
    field("holds", contents(workspace.snapshot));
    if (workspace.snapshot.leftOut) field("left out", leftOut(*workspace.snapshot.leftOut));
    for (const std::string& note : workspace.snapshot.notes.value_or(std::vector<std::string>{})) {
        field("note", printable(note));
    }
    if (workspace.snapshot.windowCount() > 0) {
        output.line("");
        printWindows(output, workspace.snapshot);
    }
}

}  // namespace

JsonLine summary(const Workspace& workspace) {
    JsonLine line;
    line.add("id", workspace.id.upper())
        .add("name", workspace.name)
        .add("icon", workspace.icon)
        .add("color", workspace.color)
        .add("createdAt", workspace.createdAt)
        .add("updatedAt", workspace.updatedAt)
        .add("lastRestoredAt", workspace.lastRestoredAt)
        .add("applications", applicationCount(workspace))
        .add("windows", workspace.snapshot.windowCount())
        .add("desktops", workspace.snapshot.desktopCount())
        .add("displays", static_cast<std::int64_t>(workspace.snapshot.displays.size()))
        .add("folders", workspace.snapshot.folderCount())
        .add("tabs", workspace.snapshot.tabCount());
    return line;
}

CommandResult printList(Output& output, std::span<const Workspace> workspaces, std::string_view none) {
    if (output.json()) {
        for (const Workspace& workspace : workspaces) output.value(summary(workspace));
    } else if (workspaces.empty()) {
        output.line(none);
    } else {
        printTable(output, workspaces);
    }
    return Exit::done;
}

CommandResult listWorkspaces(CommandContext& context, const Arguments&) {
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    if (!workspaces) return std::unexpected(workspaces.error());
    return printList(context.output, *workspaces,
                     "No workspaces yet. Save what is open now with: quilloctl save NAME");
}

CommandResult showWorkspace(CommandContext& context, const Arguments& arguments) {
    const Result<Found, Failure> found = findWithHistory(context, arguments.workspace);
    if (!found) return std::unexpected(found.error());
    const Workspace& workspace = found->workspace;
    if (!context.output.json()) {
        printWorkspace(context.output, workspace);
        return Exit::done;
    }
    const Result<std::string> document = WorkspaceCoding::encode(workspace);
    if (!document) return couldNot("show " + printable(workspace.name), document.error());
    context.output.line(onOneLine(*document));
    return Exit::done;
}

CommandResult renameWorkspace(CommandContext& context, const Arguments& arguments) {
    const Result<std::string, Failure> name = workspaceName("NAME", *arguments.name);
    if (!name) return std::unexpected(name.error());
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    if (!workspaces) return std::unexpected(workspaces.error());
    const Result<Workspace, Failure> found = find(*workspaces, arguments.workspace);
    if (!found) return std::unexpected(found.error());
    if (*name == found->name) return reportSaved(context, "Unchanged:", *found);

    Result<Workspace> workspace = context.store.load(found->id);
    if (!workspace) return couldNot("rename " + printable(found->name), workspace.error());
    // The workspace itself counts among the names taken, as everywhere else in the program.
    workspace->name = uniqueName(*name, *workspaces);
    workspace->updatedAt = now();
    if (const Result<void> saved = context.store.save(*workspace); !saved) {
        return couldNot("rename " + printable(found->name), saved.error());
    }
    return reportSaved(context, "Renamed " + printable(found->name) + " to", *workspace);
}

CommandResult duplicateWorkspace(CommandContext& context, const Arguments& arguments) {
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    if (!workspaces) return std::unexpected(workspaces.error());
    const Result<Workspace, Failure> source = find(*workspaces, arguments.workspace);
    if (!source) return std::unexpected(source.error());
    const Workspace copy = source->importedCopy(uniqueName(source->name + " copy", *workspaces), now());
    if (const Result<void> saved = context.store.save(copy); !saved) {
        return couldNot("duplicate " + printable(source->name), saved.error());
    }
    noteProvenance(context, context.known.madeFrom(*source, copy));
    return reportSaved(context, "Duplicated " + printable(source->name) + " as", copy);
}

CommandResult deleteWorkspace(CommandContext& context, const Arguments& arguments) {
    const Result<Workspace, Failure> workspace = find(context, arguments.workspace);
    if (!workspace) return std::unexpected(workspace.error());
    if (const Result<void> removed = context.store.remove(workspace->id); !removed) {
        return couldNot("delete " + printable(workspace->name), removed.error());
    }
    (void)context.known.forget(workspace->id);  // what is left of it is no harm
    return reportSaved(context, "Deleted", *workspace);
}

CommandResult reportSaved(CommandContext& context, std::string_view whatHappened,
                          const Workspace& workspace) {
    if (context.output.json()) {
        context.output.value(summary(workspace));
    } else {
        context.output.line(fmt::format("{} {}", whatHappened, printable(workspace.name)));
    }
    return Exit::done;
}

}  // namespace quillo::ctl
