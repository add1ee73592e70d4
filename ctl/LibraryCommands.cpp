// list, show, rename, duplicate, delete: the saved workspaces. None of these needs a desktop.
#include <fmt/format.h>

#include <algorithm>
#include <set>
#include <span>

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

Cell restored(const Workspace& workspace, std::string (*shown)(Instant)) {
    if (!workspace.lastRestoredAt) return {"never", Style::dim};
    return {shown(*workspace.lastRestoredAt)};
}

void printTable(Output& output, std::span<const Workspace> workspaces) {
    Table table({"NAME", "WINDOWS", "APPLICATIONS", "SAVED", "RESTORED"});
    for (const Workspace& workspace : workspaces)
        table.row({{listedName(workspace.name), Style::bold},
                   {std::to_string(workspace.snapshot.windowCount())},
                   {std::to_string(applicationCount(workspace))},
                   {dateText(workspace.updatedAt)},
                   restored(workspace, dateText)});
    table.print(output);
}

/// How much of the identifiers a row of `width` columns has place for: all, or as many characters as tell
/// them apart, by which a workspace is found as well.
std::size_t identifierLength(std::span<const Workspace> workspaces, std::size_t width) {
    constexpr std::size_t whole = 36, shortest = 8, roomForWhole = 110;
    if (width == 0 || width >= roomForWhole) return whole;
    const auto tellApart = [&](std::size_t length) {
        std::set<std::string> beginnings;
        for (const Workspace& one : workspaces) beginnings.insert(one.id.lower().substr(0, length));
        return beginnings.size() == workspaces.size();
    };
    std::size_t length = shortest;
    while (length < whole && !tellApart(length)) ++length;
    return length;
}

/// Of columns so narrow that a terminal's usual 80 leave some for the name.
void printLongTable(Output& output, std::span<const Workspace> workspaces) {
    Table table({"NAME", "WIN", "APP", "DISP", "DESK", "SAVED", "RESTORED", "CREATED", "IDENTIFIER"});
    const std::size_t length = identifierLength(workspaces, output.width());
    for (const Workspace& workspace : workspaces)
        table.row({{listedName(workspace.name), Style::bold},
                   {std::to_string(workspace.snapshot.windowCount())},
                   {std::to_string(applicationCount(workspace))},
                   {std::to_string(workspace.snapshot.displays.size())},
                   {std::to_string(workspace.snapshot.desktopCount())},
                   {dayText(workspace.updatedAt)},
                   restored(workspace, dayText),
                   {dayText(workspace.createdAt)},
                   {workspace.id.lower().substr(0, length), Style::dim}});
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

Result<std::string> documentOf(const Workspace& workspace) {
    Result<std::string> document = WorkspaceCoding::encode(workspace);
    const std::string written = '"' + workspace.id.upper() + '"';
    if (const auto place = document ? document->find(written) : std::string::npos; place != std::string::npos)
        document->replace(place, written.size(), '"' + workspace.id.lower() + '"');
    return document;
}

JsonLine summary(const Workspace& workspace) {
    JsonLine line;
    line.add("id", workspace.id.lower())
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

CommandResult printList(Output& output, std::span<const Workspace> workspaces, bool isLong,
                        std::string_view none) {
    if (output.json()) {
        for (const Workspace& workspace : workspaces) output.value(summary(workspace));
    } else if (workspaces.empty()) {
        output.line(none);
    } else {
        (isLong ? printLongTable : printTable)(output, workspaces);
    }
    return Exit::done;
}

CommandResult listWorkspaces(CommandContext& context, const Arguments& arguments) {
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    if (!workspaces) return std::unexpected(workspaces.error());
    return printList(context.output, *workspaces, arguments.longList,
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
    const Result<std::string> document = documentOf(workspace);
    if (!document) return couldNot("show " + quotedName(workspace.name), document.error());
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

    const auto changed = context.store.change(found->id, [&](Workspace& workspace) -> Result<void> {
        // The workspace itself counts among the names taken, as everywhere else in the program.
        workspace.name = context.store.freeName(*name, *workspaces);
        workspace.updatedAt = now();
        return {};
    });
    if (!changed) return couldNot("rename " + quotedName(found->name), changed.error());
    return reportSaved(context, "Renamed " + quotedName(found->name) + " to", changed->after);
}

CommandResult duplicateWorkspace(CommandContext& context, const Arguments& arguments) {
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    if (!workspaces) return std::unexpected(workspaces.error());
    const Result<Workspace, Failure> source = find(*workspaces, arguments.workspace);
    if (!source) return std::unexpected(source.error());
    Workspace made = source->importedCopy(source->name + " copy", now());
    made.cleanSlate =
        source->cleanSlate;  // a stranger's choice it is not: the copy is as known as the source
    const Result<Workspace> copy = context.store.saveAsNew(std::move(made), *workspaces);
    if (!copy) return couldNot("duplicate " + quotedName(source->name), copy.error());
    noteProvenance(context, context.known.madeFrom(*source, *copy));
    return reportSaved(context, "Duplicated " + quotedName(source->name) + " as", *copy);
}

CommandResult deleteWorkspaces(CommandContext& context, const Arguments& arguments) {
    const Result<std::vector<Workspace>, Failure> workspaces = scan(context);
    if (!workspaces) return std::unexpected(workspaces.error());
    std::vector<Workspace> chosen;  // all of them before the first one goes
    for (const std::string& which : arguments.workspaces) {
        Result<Workspace, Failure> found = find(*workspaces, which);
        if (!found) return std::unexpected(found.error());
        if (std::ranges::find(chosen, found->id, &Workspace::id) == chosen.end())
            chosen.push_back(*std::move(found));
    }
    for (const Workspace& workspace : chosen) {
        if (const Result<void> removed = context.store.remove(workspace.id); !removed)
            return couldNot("delete " + quotedName(workspace.name), removed.error());
        (void)context.known.forget(workspace.id);  // what is left of it is no harm
        (void)reportSaved(context, "Deleted", workspace);
    }
    return Exit::done;
}

CommandResult reportSaved(CommandContext& context, std::string_view whatHappened, const Workspace& workspace,
                          std::string_view behind) {
    if (context.output.json()) {
        context.output.value(summary(workspace));
    } else {
        context.output.done(fmt::format("{} {}{}", whatHappened, quotedName(workspace.name), behind));
    }
    return Exit::done;
}

}  // namespace quillo::ctl
