#include "WindowEngine/library/SessionHistory.hpp"

#include <algorithm>
#include <set>
#include <utility>

#include "WindowEngine/library/WorkspaceFiles.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/support/StableSort.hpp"
#include "WindowEngine/support/Text.hpp"

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

bool holds(const Workspace& archive, const Workspace& latest) {
    return archive.createdAt == latest.createdAt && archive.updatedAt == latest.updatedAt &&
           archive.snapshot == latest.snapshot;
}

Result<bool> same(const WorkspaceSnapshot& a, const WorkspaceSnapshot& b) {
    const auto first = SessionHistory::signature(a);
    if (!first) return std::unexpected(first.error());
    const auto second = SessionHistory::signature(b);
    if (!second) return std::unexpected(second.error());
    return *first == *second;
}

}  // namespace

bool SessionHistory::isSessionName(std::string_view name) {
    const std::string lower = text::lowercase(name), latest = text::lowercase(latestName);
    return lower == latest || (lower.starts_with(latest + " (") && lower.ends_with(')'));
}

// A save that was interrupted leaves the latest session archived as well: it is one session.
WorkspaceScanResult SessionHistory::scan() const {
    WorkspaceScanResult found = store_.scan();
    const auto latest = std::ranges::find(found.workspaces, latestID, &Workspace::id);
    if (latest == found.workspaces.end()) return found;
    std::set<Uuid> copies;
    for (const Workspace& session : found.workspaces)
        if (session.id != latestID && holds(session, *latest)) copies.insert(session.id);
    std::erase_if(found.workspaces, [&](const Workspace& session) { return copies.contains(session.id); });
    return found;
}

Result<bool> SessionHistory::save(const WorkspaceSnapshot& snapshot, Instant now) const {
    if (const auto replaceable = latestIsReplaceable(); !replaceable)
        return std::unexpected(replaceable.error());
    const WorkspaceScanResult found = store_.scan();
    if (found.failure) return std::unexpected(*found.failure);
    const std::vector<Workspace>& sessions = found.workspaces;
    if (const auto latest = std::ranges::find(sessions, latestID, &Workspace::id); latest != sessions.end()) {
        const auto unchanged = same(latest->snapshot, snapshot);
        if (!unchanged) return std::unexpected(unchanged.error());
        if (*unchanged) return false;
        if (const auto kept = archive(*latest, sessions); !kept) return std::unexpected(kept.error());
    }
    if (const auto saved = store_.save(latestSession(snapshot, now)); !saved) {
        return std::unexpected(saved.error());
    }
    if (const auto pruned = prune(); !pruned) return std::unexpected(pruned.error());
    // It holds the session that is an archive now.
    (void)files_->remove(store_.backupURL(latestID));
    return true;
}

// What cannot be read now may be whole (a newer program's, say), and is not overwritten.
Result<void> SessionHistory::latestIsReplaceable() const {
    const auto latest = store_.load(latestID);
    if (latest || latest.error().kind == ErrorKind::notFound || WorkspaceFiles::isDamaged(latest.error()))
        return {};
    return std::unexpected(latest.error());
}

// An attempt that failed after this has archived it already.
Result<void> SessionHistory::archive(const Workspace& latest, const std::vector<Workspace>& sessions) const {
    const bool kept = std::ranges::any_of(
        sessions, [&](const Workspace& session) { return session.id != latestID && holds(session, latest); });
    return kept ? Result<void>() : store_.save(archived(latest));
}

Result<void> SessionHistory::prune() const {
    std::vector<Workspace> archives = list();
    std::erase_if(archives, [](const Workspace& session) { return session.id == latestID; });
    for (std::size_t i = archivesKept; i < archives.size(); ++i) {
        auto removed = store_.remove(archives[i].id);
        const bool gone = removed || removed.error().kind == ErrorKind::notFound;  // by another program
        if (!gone) return removed;
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
