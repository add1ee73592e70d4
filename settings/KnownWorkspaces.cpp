#include "settings/KnownWorkspaces.hpp"

#include <simdjson.h>

#include <utility>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/restore/RestoreScope.hpp"
#include "WindowEngine/support/JsonWriter.hpp"

namespace quillo {
namespace {

using Json = simdjson::dom::object;

bool flag(const Json& object, std::string_view key) {
    bool value = false;
    return !object.at_key(key).get_bool().get(value) && value;
}

}  // namespace

std::string KnownWorkspaces::digestOf(const Workspace& workspace) const {
    WorkspaceSnapshot snapshot = workspace.snapshot;
    snapshot.capturedAt = Instant{};
    snapshot.notes.reset();
    const Result<std::string> bytes = WorkspaceCoding::encode(snapshot);
    if (!bytes) return {};
    const CleanSlateMode mode = workspace.cleanSlate.value_or(CleanSlateMode::keep);
    return digest_(std::string(storedValue(mode)) + "\n" + *bytes);
}

KnownWorkspaces::Notes KnownWorkspaces::read() const {
    notes_->refresh();
    std::optional<std::string> stored = notes_->data(defaultsKey);
    if (!stored && apart()) {
        defaults_->refresh();
        stored = defaults_->data(defaultsKey);
    }
    simdjson::dom::parser parser;
    Json all;
    if (!stored || parser.parse(simdjson::padded_string(*stored)).get_object().get(all)) return {};
    Notes notes;
    for (const auto member : all) {
        Json object;
        std::string_view digest;
        if (member.value.get_object().get(object) || object.at_key("digest").get_string().get(digest))
            continue;
        notes.insert_or_assign(std::string(member.key),
                               Note{std::string(digest), flag(object, "savedHere"), flag(object, "agreed")});
    }
    return notes;
}

std::optional<KnownWorkspaces::Note> KnownWorkspaces::find(const Workspace& workspace) const {
    const Notes notes = read();
    const auto found = notes.find(workspace.id.upper());
    if (found == notes.end() || found->second.digest.empty()) return std::nullopt;
    return found->second.digest == digestOf(workspace) ? std::optional(found->second) : std::nullopt;
}

bool KnownWorkspaces::isSavedHere(const Workspace& workspace) const {
    const std::optional<Note> note = find(workspace);
    return note && note->savedHere;
}

bool KnownWorkspaces::isAgreed(const Workspace& workspace) const {
    const std::optional<Note> note = find(workspace);
    return note && note->agreed;
}

bool KnownWorkspaces::isKnown(const Workspace& workspace) const {
    const std::optional<Note> note = find(workspace);
    return note && (note->savedHere || note->agreed);
}

bool KnownWorkspaces::isCleanSlateChosenHere(const Workspace& workspace) const {
    return find(workspace).has_value();
}

std::optional<ReasonToAsk> KnownWorkspaces::reasonToAsk(const Workspace& workspace) const {
    const std::optional<Note> note = find(workspace);
    if (note && note->agreed) return std::nullopt;
    if (!note || !note->savedHere) return ReasonToAsk::notSavedHere;
    return Restore::exceedsLimits(workspace.snapshot) ? std::optional(ReasonToAsk::beyondLimits)
                                                      : std::nullopt;
}

void KnownWorkspaces::permit(const Workspace& workspace, bool agreedNow, Restore::Options& options) const {
    const std::optional<Note> note = find(workspace);
    options.followsLinks = note && note->savedHere;
    options.limited = !(options.followsLinks && (agreedNow || note->agreed));
}

Result<void> KnownWorkspaces::savedHere(const Workspace& workspace) {
    return note(workspace, true, isAgreed(workspace));
}

Result<void> KnownWorkspaces::agreed(const Workspace& workspace) {
    return note(workspace, isSavedHere(workspace), true);
}

Result<void> KnownWorkspaces::madeFrom(const Workspace& source, const Workspace& made) {
    const std::optional<Note> known = find(source);
    if (!known && source.cleanSlate == made.cleanSlate) return {};
    return note(made, known && known->savedHere, known && known->agreed);
}

Result<void> KnownWorkspaces::forget(const Uuid& id) {
    Notes notes = read();
    return notes.erase(id.upper()) > 0 ? write(notes) : Result<void>{};
}

Result<void> KnownWorkspaces::forgetAll() {
    if (apart() && defaults_->data(defaultsKey)) {
        if (Result<void> gone = defaults_->setData(defaultsKey, std::nullopt); !gone) return gone;
    }
    return notes_->setData(defaultsKey, std::nullopt);
}

Result<void> KnownWorkspaces::note(const Workspace& workspace, bool savedHere, bool agreed) {
    Notes notes = read();
    const std::string id = workspace.id.upper();
    Note note{digestOf(workspace), savedHere, agreed};
    if (note.digest.empty()) {
        return fail(ErrorKind::invalidData, "the workspace holds a number that is not finite");
    }
    if (notes.size() >= roomyCount) {
        std::erase_if(notes, [&](const auto& one) {
            const std::optional<Uuid> known = Uuid::parse(one.first);
            return !known || !isStored_(*known);
        });
    }
    notes.insert_or_assign(id, std::move(note));
    return write(notes);
}

Result<void> KnownWorkspaces::write(const Notes& notes) {
    // Damaged settings would be put aside, and with them the complaint that the person's exclusions do not
    // hold.
    if (const auto trouble = apart() ? std::nullopt : defaults_->trouble())
        return fail(ErrorKind::invalidData, *trouble);
    JsonWriter writer;
    writer.beginObject();
    for (const auto& [id, note] : notes) {
        writer.key(id);
        writer.beginObject();
        writer.key("digest");
        writer.text(note.digest);
        writer.key("savedHere");
        writer.boolean(note.savedHere);
        writer.key("agreed");
        writer.boolean(note.agreed);
        writer.endObject();
    }
    writer.endObject();
    Result<void> written = notes_->setData(defaultsKey, std::move(writer).finish().value());
    // In their former place they count only until there are others; where they cannot be removed they stay.
    if (written && apart() && defaults_->data(defaultsKey))
        (void)defaults_->setData(defaultsKey, std::nullopt);
    return written;
}

Result<bool> saveSession(const SessionHistory& history, KnownWorkspaces& known,
                         const WorkspaceSnapshot& snapshot, Instant now) {
    const Result<Workspace> before = history.store().load(SessionHistory::latestID);
    Result<bool> saved = history.save(snapshot, now);
    if (!saved || !*saved) return saved;
    // What cannot be noted is asked about, once somebody wants it back.
    for (const Workspace& session : history.list()) {
        const bool archived = before && session.id != SessionHistory::latestID;
        if (archived && session.snapshot == before->snapshot && !known.isKnown(session))
            (void)known.madeFrom(*before, session);
    }
    // What was captured, not what the folder has under that identifier: somebody may have put a newer one
    // there. Last, for it takes the place of the note about the one before.
    Workspace latest;
    latest.id = SessionHistory::latestID;
    latest.snapshot = snapshot;
    (void)known.savedHere(latest);
    return saved;
}

}  // namespace quillo
