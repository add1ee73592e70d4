// An UndoRecord as one JSON document: the desktop before as a workspace's document has it, and beside it what
// only an undo needs.
#pragma once
#include <string>
#include <string_view>

#include "WindowEngine/records/UndoRecord.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo::UndoCoding {

/// Fails as WorkspaceCoding::encode does.
Result<std::string> encode(const UndoRecord& record);
/// Errors name the field; a record of a later version is none.
Result<UndoRecord> decode(std::string_view bytes);

/// Full-screen windows of one display have one frame, for which a snapshot takes them for native tabs of one
/// window. Each has a desktop of its own and is put back for itself: as a window with its own index, known
/// from `windows`.
void takeFullscreenApart(UndoRecord& record);

}  // namespace quillo::UndoCoding
