// What became of the workspaces between two looks at the library, whichever program did it. Pure.
#pragma once
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo {

/// As much of a workspace as tells that something became of it.
struct LibraryEntry {
    Uuid id;
    std::string name;
    Instant updatedAt, capturedAt;
    std::optional<Instant> lastRestoredAt;
};
std::vector<LibraryEntry> entriesOf(std::span<const Workspace> workspaces);

struct LibraryChange {
    enum class Kind : std::uint8_t {
        saved,    // new, captured anew, or changed in another way than its name
        renamed,  // and not saved otherwise
        deleted,
        restored,  // brought back whole
    };
    Kind kind = Kind::saved;
    Uuid id;
    std::string name;                       // by then; of one that is deleted its last
    std::optional<std::string> formerName;  // of one that is renamed

    bool operator==(const LibraryChange&) const = default;
};

/// Deletions come first, then the others in the order of `after`. Instants are compared as files keep them,
/// in whole seconds: of two changes within one, the second may not be told.
std::vector<LibraryChange> changesBetween(std::span<const LibraryEntry> before,
                                          std::span<const LibraryEntry> after);

}  // namespace quillo
