// The last sessions: captures kept apart from the library, so that a desktop can be restored after a crash or
// a shutdown. The latest has a fixed identity; up to four before it are archives of their own.
#pragma once
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/library/WorkspaceStore.hpp"

namespace quillo {

/// Stateless like the store it stands on. Saving takes several steps, each under the directory's lock but not
/// all under one: callers save one session at a time.
class SessionHistory {
  public:
    /// 03CC17F4-4EAF-47BB-9F08-13A4854D3F71, of the latest session always.
    static constexpr Uuid latestID = Uuid::fromBytes({0x03, 0xCC, 0x17, 0xF4, 0x4E, 0xAF, 0x47, 0xBB,  //
                                                      0x9F, 0x08, 0x13, 0xA4, 0x85, 0x4D, 0x3F, 0x71});
    static constexpr std::size_t archivesKept = 4;
    /// Whether sessions are called so, in whatever case: "Last session", "Last session (09:05)". No workspace
    /// of the library gets such a name (uniqueName), or it would stand before the session that is meant.
    static bool isSessionName(std::string_view name);

    SessionHistory(FileSystem& files, std::filesystem::path directory)
        : files_(&files), store_(files, std::move(directory)) {}

    const WorkspaceStore& store() const { return store_; }

    /// Newest first.
    WorkspaceScanResult scan() const;
    std::vector<Workspace> list() const { return scan().workspaces; }
    /// Makes the snapshot the latest session, archives the one before and drops what is too old. False when
    /// nothing has changed since: then nothing is written. An error ends it where it arose; neither it nor
    /// the end of the program in between loses a session or counts one twice.
    Result<bool> save(const WorkspaceSnapshot& snapshot, Instant now) const;
    /// Removes the directory with everything in it; one that does not exist is success.
    Result<void> deleteAll() const;

    /// Equal for two captures of the same session: of the same applications, windows and context, whatever
    /// the time, the remarks, the order in which they were listed and the numbers the window server gave.
    /// Fails for a number that is not finite.
    static Result<std::string> signature(const WorkspaceSnapshot& snapshot);

  private:
    Result<void> latestIsReplaceable() const;
    Result<void> archive(const Workspace& latest, const std::vector<Workspace>& sessions) const;
    Result<void> prune() const;

    FileSystem* files_;
    WorkspaceStore store_;
};

}  // namespace quillo
