// history list, save, clear: the last sessions, apart from the library.
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"

namespace quillo::ctl {

CommandResult listHistory(CommandContext& context, const Arguments& arguments) {
    const Result<std::vector<Workspace>, Failure> sessions = scanHistory(context);
    if (!sessions) return std::unexpected(sessions.error());
    return printList(context.output, *sessions, arguments.longList,
                     "No sessions yet. Save this one with: quilloctl history save");
}

CommandResult saveToHistory(CommandContext& context, const Arguments& arguments) {
    const Result<Captured, Failure> captured = captureDesktop(context, arguments);
    if (!captured) return std::unexpected(captured.error());
    const std::string what = reportCaptured(context, *captured);
    const Result<bool> saved = saveSession(context.history, context.known, captured->snapshot, now());
    if (!saved) return couldNot("save the last session", saved.error());
    const Result<Workspace> latest = context.history.store().load(SessionHistory::latestID);
    if (!latest) return couldNot("read the last session", latest.error());
    if (context.output.json()) {
        JsonLine line = summary(*latest);
        line.add("saved", *saved);
        context.output.value(std::move(line));
    } else {
        context.output.done(*saved ? "Saved " + what + " as " + quotedName(latest->name)
                                   : "Unchanged since " + dateText(latest->updatedAt) + ": " + what);
    }
    return Exit::done;
}

CommandResult clearHistory(CommandContext& context, const Arguments&) {
    const auto count = static_cast<std::int64_t>(context.history.list().size());
    if (const Result<void> removed = context.history.deleteAll(); !removed) {
        return couldNot("delete session history", removed.error());
    }
    if (context.output.json()) {
        JsonLine line;
        line.add("removed", count);
        context.output.value(std::move(line));
    } else {
        context.output.done("Removed " + counted(count, "session"));
    }
    return Exit::done;
}

}  // namespace quillo::ctl
