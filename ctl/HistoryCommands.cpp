// history list, save, clear: the last sessions, apart from the library.
#include "ctl/Commands.hpp"
#include "ctl/HumanText.hpp"

namespace quillo::ctl {

CommandResult listHistory(Session& session, const Arguments&) {
    const Expected<std::vector<Workspace>> sessions = scanHistory(session);
    if (!sessions) return std::unexpected(sessions.error());
    return printList(session.output, *sessions,
                     "No sessions yet. Save this one with: quilloctl history save");
}

CommandResult saveToHistory(Session& session, const Arguments& arguments) {
    const Expected<WorkspaceSnapshot> snapshot = captureDesktop(session, arguments);
    if (!snapshot) return std::unexpected(snapshot.error());
    const std::string captured = reportCaptured(session, *snapshot);
    const Result<bool> saved = saveSession(session.history, session.known, *snapshot, now());
    if (!saved) return couldNot("save the last session", saved.error());
    const Result<Workspace> latest = session.history.store().load(SessionHistory::latestID);
    if (!latest) return couldNot("read the last session", latest.error());
    if (session.output.json()) {
        JsonLine line = summary(*latest);
        line.add("saved", *saved);
        session.output.value(std::move(line));
    } else {
        session.output.line(*saved ? "Saved " + captured + " as " + latest->name
                                   : "Unchanged since " + dateText(latest->updatedAt) + ": " + captured);
    }
    return Exit::done;
}

CommandResult clearHistory(Session& session, const Arguments&) {
    const auto count = static_cast<std::int64_t>(session.history.list().size());
    if (const Result<void> removed = session.history.deleteAll(); !removed) {
        return couldNot("delete session history", removed.error());
    }
    if (session.output.json()) {
        JsonLine line;
        line.add("removed", count);
        session.output.value(std::move(line));
    } else {
        session.output.line("Removed " + counted(count, "session"));
    }
    return Exit::done;
}

}  // namespace quillo::ctl
