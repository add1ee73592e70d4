// Brings a decoded workspace to the current schema.
#pragma once
#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo::WorkspaceCoding {

/// unsupportedSchema, with the text people see, for any version but 1 and 2.
Result<void> checkSchemaVersion(std::int64_t version);

/// Runs on every decoded workspace before anyone sees it. Its version must have passed checkSchemaVersion.
Workspace migrated(Workspace workspace);

}  // namespace quillo::WorkspaceCoding
