// layout list, save, remove: how a workspace stands on each set of displays that it was arranged on.
#include <fmt/format.h>
#include <fmt/ranges.h>

#include "WindowEngine/restore/DisplayLayouts.hpp"
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"
#include "ctl/Table.hpp"
#include "settings/DisplayAnswers.hpp"

namespace quillo::ctl {
namespace {

void printLayout(Output& output, Table& table, std::int64_t number, std::span<const DisplaySnapshot> displays,
                 std::int64_t windows) {
    std::vector<std::string> names, sizes;
    for (const DisplaySnapshot& display : displays) {
        names.push_back(display.id);
        sizes.push_back(fmt::format("{} × {}", display.frame.width, display.frame.height));
    }
    if (output.json()) {
        JsonLine line;
        line.add("number", number).add("displays", names).add("sizes", sizes).add("windows", windows);
        output.value(std::move(line));
        return;
    }
    table.row({{std::to_string(number)},
               {printable(fmt::format("{}", fmt::join(names, ", ")))},
               {fmt::format("{}", fmt::join(sizes, ", "))},
               {std::to_string(windows)},
               {number == 0 ? "as it was saved" : ""}});
}

/// Changes what is stored; the workspace stays as known as it was.
Result<Workspace, Failure> change(CommandContext& context, const Workspace& workspace,
                                  const std::function<Result<void>(Workspace&)>& change) {
    const auto changed = context.store.change(workspace.id, [&](Workspace& stored) -> Result<void> {
        if (auto done = change(stored); !done) return done;
        stored.updatedAt = now();
        return {};
    });
    if (!changed) return couldNot("save " + quotedName(workspace.name), changed.error());
    noteProvenance(context, context.known.madeFrom(changed->before, changed->after));
    return changed->after;
}

}  // namespace

CommandResult listLayouts(CommandContext& context, const Arguments& arguments) {
    const Result<Found, Failure> found = findWithHistory(context, arguments.workspace);
    if (!found) return std::unexpected(found.error());
    const WorkspaceSnapshot& snapshot = found->workspace.snapshot;
    Table table({"NUMBER", "DISPLAYS", "SIZES", "WINDOWS", ""});
    printLayout(context.output, table, 0, snapshot.displays, snapshot.windowCount());
    std::int64_t number = 0;
    for (const DisplayLayout& layout : snapshot.layouts.value_or(std::vector<DisplayLayout>()))
        printLayout(context.output, table, ++number, layout.displays, std::ssize(layout.windows));
    if (!table.empty()) table.print(context.output);
    return Exit::done;
}

CommandResult saveLayout(CommandContext& context, const Arguments& arguments) {
    const Result<Workspace, Failure> workspace = find(context, arguments.workspace);
    if (!workspace) return std::unexpected(workspace.error());
    const Result<Captured, Failure> captured = captureDesktop(context, arguments);
    if (!captured) return std::unexpected(captured.error());
    if (const auto sound = refuseFlawed(*workspace, *captured, arguments); !sound)
        return std::unexpected(sound.error());
    for (const std::string& warning : captured->warnings) context.output.complain(warning);
    const Result<Workspace, Failure> saved =
        change(context, *workspace, [&](Workspace& stored) -> Result<void> {
            WorkspaceSnapshot arranged = DisplayLayouts::arranged(
                stored.snapshot, captured->snapshot,
                DisplayAnswers(context.defaults)
                    .find(DisplayLayouts::displaysFor(stored.snapshot, captured->snapshot.displays),
                          captured->snapshot.displays));
            if (!DisplayLayouts::has(arranged, captured->snapshot.displays))
                return fail(ErrorKind::notFound, "none of its windows is open");
            stored.snapshot = std::move(arranged);
            return {};
        });
    if (!saved) return std::unexpected(saved.error());
    return reportSaved(context, "Saved the layout for these displays in", *saved);
}

CommandResult removeLayout(CommandContext& context, const Arguments& arguments) {
    const Result<Workspace, Failure> workspace = find(context, arguments.workspace);
    if (!workspace) return std::unexpected(workspace.error());
    const std::int64_t count =
        workspace->snapshot.layouts ? std::ssize(*workspace->snapshot.layouts) : std::int64_t{0};
    if (arguments.number < 1 || arguments.number > count) {
        return failure(fmt::format("NUMBER: {} has no layout {}{}", quotedName(workspace->name),
                                   arguments.number,
                                   count == 0 ? "" : fmt::format("; there are 1 to {}", count)));
    }
    const DisplayLayout chosen =
        (*workspace->snapshot.layouts)[static_cast<std::size_t>(arguments.number - 1)];
    const Result<Workspace, Failure> saved =
        change(context, *workspace, [&](Workspace& stored) -> Result<void> {
            DisplayLayouts::remove(stored.snapshot, chosen);
            return {};
        });
    if (!saved) return std::unexpected(saved.error());
    return reportSaved(context, "Removed a layout of", *saved);
}

}  // namespace quillo::ctl
