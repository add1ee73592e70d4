#include "WindowEngine/library/SessionHistory.hpp"

#include <algorithm>
#include <utility>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/support/StableSort.hpp"

namespace quillo {
namespace {

constexpr const char* latestName = "Last session";
constexpr const char* color = "sky";

std::string joinedAddresses(const ContextWindow& window) {
    std::string joined;
    for (const Url& url : window.urls) joined += url.string();
    return joined;
}

void normalize(AppContext& context) {
    for (ContextWindow& window : context.windows) {
        window.sourceWindowIndex.reset();
        window.sourceWindowID.reset();
    }
    sortStablyByKey(context.windows, joinedAddresses);
}

void normalize(ApplicationSnapshot& application) {
    for (WindowSnapshot& window : application.windows) window.index = 0;
    // A window that cannot be written fails the whole signature below.
    sortStablyByKey(application.windows, [](const WindowSnapshot& window) {
        return WorkspaceCoding::encode(window).value_or("");
    });
    if (application.context) normalize(*application.context);
}

Workspace latestSession(const WorkspaceSnapshot& snapshot, Instant now) {
    Workspace session = Workspace::create(SessionHistory::latestID, latestName, "clock.arrow.circlepath",
                                          color, snapshot, now);
    session.updatedAt = snapshot.capturedAt;
    return session;
}

Workspace archived(const Workspace& latest) {
    std::string name = std::string(latestName) + " (" + formatTimeOfDay(latest.snapshot.capturedAt) + ")";
    Workspace session = Workspace::create(Uuid::random(), std::move(name), "square.stack.3d.up", color,
                                          latest.snapshot, latest.createdAt);
    session.updatedAt = latest.updatedAt;
    return session;
}

Result<bool> same(const WorkspaceSnapshot& a, const WorkspaceSnapshot& b) {
    const auto first = SessionHistory::signature(a);
    if (!first) return std::unexpected(first.error());
    const auto second = SessionHistory::signature(b);
    if (!second) return std::unexpected(second.error());
    return *first == *second;
}

}  // namespace

std::vector<Workspace> SessionHistory::list() const {
    return store_.scan().workspaces;
}

Result<bool> SessionHistory::save(const WorkspaceSnapshot& snapshot, Instant now) const {
    const std::vector<Workspace> sessions = list();
    if (const auto latest = std::ranges::find(sessions, latestID, &Workspace::id); latest != sessions.end()) {
        const auto unchanged = same(latest->snapshot, snapshot);
        if (!unchanged) return std::unexpected(unchanged.error());
        if (*unchanged) return false;
        if (const auto kept = store_.save(archived(*latest)); !kept) return std::unexpected(kept.error());
    }
    if (const auto saved = store_.save(latestSession(snapshot, now)); !saved) {
        return std::unexpected(saved.error());
    }
    if (const auto pruned = prune(); !pruned) return std::unexpected(pruned.error());
    // It holds the session that is an archive now.
    (void)files_->remove(store_.backupURL(latestID));
    return true;
}

Result<void> SessionHistory::prune() const {
    std::vector<Workspace> archives = list();
    std::erase_if(archives, [](const Workspace& session) { return session.id == latestID; });
    for (std::size_t i = archivesKept; i < archives.size(); ++i) {
        if (auto removed = store_.remove(archives[i].id); !removed) return removed;
    }
    return {};
}

Result<void> SessionHistory::deleteAll() const {
    return files_->removeTree(store_.directory());
}

Result<std::string> SessionHistory::signature(const WorkspaceSnapshot& snapshot) {
    WorkspaceSnapshot normalized = snapshot;
    normalized.capturedAt = Instant{};
    normalized.notes.reset();
    sortStablyByKey(normalized.applications,
                    [](const ApplicationSnapshot& application) { return application.bundleIdentifier; });
    for (ApplicationSnapshot& application : normalized.applications) normalize(application);
    auto bytes = WorkspaceCoding::encode(normalized);
    // What cannot be written is named by its place in the snapshot that was given.
    return bytes ? std::move(bytes) : WorkspaceCoding::encode(snapshot);
}

}  // namespace quillo
