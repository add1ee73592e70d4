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

}  // namespace quillo::UndoCoding
