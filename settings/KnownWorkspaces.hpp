// Which workspaces this machine answers for. A file in the library's folder may come from anybody, and a
// restore launches, opens, hides and quits what it says: so what was not saved here is not brought back
// before the person has agreed to it once.
#pragma once
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "WindowEngine/library/SessionHistory.hpp"
#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/restore/Restore.hpp"
#include "platform/services/UserDefaults.hpp"

namespace quillo {

/// SHA-256 of the bytes, as hexadecimal digits; each system has one.
using Digest = std::function<std::string(std::string_view bytes)>;

enum class ReasonToAsk {
    notSavedHere,
    beyondLimits,  // saved here, but more than RestoreScope's limits let through without a question
};

/// A workspace is known by the digest of all that a restore acts on: the snapshot less its time and remarks,
/// and the clean-slate choice. A new name, icon or colour changes nothing; whatever else anybody changes in
/// the file makes it unknown. Kept in the notes of the defaults, which the application and the command line
/// share: settings that were damaged make no workspace a stranger's. Where the notes hold nothing that can be
/// read, nothing is known. Two programs that note something at the same moment
/// may lose one of the notes, which costs one more question.
///
/// What fails to be noted leaves everything as it was. For the executor's thread.
class KnownWorkspaces {
  public:
    static constexpr std::string_view defaultsKey = "knownWorkspaces";
    /// From this many on, those that `isStored` says are gone are forgotten at the next note. Not before: a
    /// library in another directory has its notes here too.
    static constexpr std::size_t roomyCount = 256;

    /// Whether a workspace or session of this identifier is in its place.
    using IsStored = std::function<bool(const Uuid&)>;

    KnownWorkspaces(UserDefaults& defaults, Digest digest, IsStored isStored)
        : defaults_(&defaults),
          notes_(&defaults.notes()),
          digest_(std::move(digest)),
          isStored_(std::move(isStored)) {}

    /// As it is, it was saved on this machine.
    bool isSavedHere(const Workspace& workspace) const;
    /// As it is, the person has agreed to it.
    bool isAgreed(const Workspace& workspace) const;
    /// Either: a restore need not ask.
    bool isKnown(const Workspace& workspace) const;
    /// It is known, or at least what it does to other applications was chosen here: a new capture may keep
    /// that choice.
    bool isCleanSlateChosenHere(const Workspace& workspace) const;

    /// Why a restore asks the person first; absent where it goes ahead.
    std::optional<ReasonToAsk> reasonToAsk(const Workspace& workspace) const;
    /// What a restore may do: only what was saved here is opened through links, and goes beyond the limits
    /// once the person agreed, now or earlier.
    void permit(const Workspace& workspace, bool agreedNow, Restore::Options& options) const;

    /// The snapshot was captured on this machine.
    Result<void> savedHere(const Workspace& workspace);
    /// The person has seen what a restore does, and wants it.
    Result<void> agreed(const Workspace& workspace);
    /// `made` is `source` with another clean-slate choice of the person's, or under another identifier: it is
    /// as known as that one.
    Result<void> madeFrom(const Workspace& source, const Workspace& made);
    Result<void> forget(const Uuid& id);
    Result<void> forgetAll();

  private:
    struct Note {
        std::string digest;
        bool savedHere = false;
        bool agreed = false;  // neither: only the clean slate was chosen here
    };
    using Notes = std::map<std::string, Note, std::less<>>;  // by identifier

    /// Empty for a record that cannot be written, which no digest equals.
    std::string digestOf(const Workspace& workspace) const;
    Notes read() const;
    /// Of the workspace as it is.
    std::optional<Note> find(const Workspace& workspace) const;
    Result<void> note(const Workspace& workspace, bool savedHere, bool agreed);
    Result<void> write(const Notes& notes);

    bool apart() const { return notes_ != defaults_; }

    UserDefaults* defaults_;  // where they stood before they had a place of their own
    UserDefaults* notes_;
    Digest digest_;
    IsStored isStored_;
};

/// SessionHistory::save, noting what it wrote: the latest session was captured here, and the one before is in
/// an archive now, as known as it was. False when nothing had changed. Only an error of the history is one.
Result<bool> saveSession(const SessionHistory& history, KnownWorkspaces& known,
                         const WorkspaceSnapshot& snapshot, Instant now);

}  // namespace quillo
