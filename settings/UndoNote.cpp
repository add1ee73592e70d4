#include "settings/UndoNote.hpp"

namespace quillo {

Result<void> keepUndo(const UndoFile& file, KnownWorkspaces& known, UndoRecord record) {
    record.before.id = file.id();
    Result<void> kept = file.save(record);
    // Said twice of each restore, of the same desktop.
    if (kept && !known.isSavedHere(record.before)) kept = known.savedHere(record.before);
    if (!kept) (void)file.remove();
    return kept;
}

Result<std::optional<UndoRecord>> findUndo(const UndoFile& file, const KnownWorkspaces& known) {
    Result<std::optional<UndoRecord>> found = file.load();
    if (found && *found && !known.isSavedHere((*found)->before))
        return fail(ErrorKind::refused,
                    "desktop.json: it was not written on this computer, or changed since");
    return found;
}

Result<void> forgetUndo(const UndoFile& file, KnownWorkspaces& known) {
    (void)known.forget(file.id());
    return file.remove();
}

}  // namespace quillo
