// The record that an undo goes by, and the word that it was written on this machine: what it says is launched
// and opened without a question, and a file in the data folder may come from anybody.
#pragma once
#include <optional>

#include "WindowEngine/library/UndoFile.hpp"
#include "settings/KnownWorkspaces.hpp"

namespace quillo {

/// In the place of the one before. Where it cannot be kept none is: one of an earlier restore would be taken
/// for this one's.
Result<void> keepUndo(const UndoFile& file, KnownWorkspaces& known, UndoRecord record);
/// Absent where there is none; an error where it cannot be read, or was not written here.
Result<std::optional<UndoRecord>> findUndo(const UndoFile& file, const KnownWorkspaces& known);
Result<void> forgetUndo(const UndoFile& file, KnownWorkspaces& known);

}  // namespace quillo
