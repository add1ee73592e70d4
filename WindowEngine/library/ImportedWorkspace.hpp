// A workspace file that comes from elsewhere: read, cleaned, and made one of this library's own.
#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo {

struct ImportedWorkspace {
    Workspace workspace;                // fresh identity, name unique in the library, created `now`
    std::int64_t droppedAddresses = 0;  // context addresses that no integration may open

    /// Errors are those of decoding; nothing is written anywhere.
    static Result<ImportedWorkspace> read(std::string_view bytes, std::span<const Workspace> library,
                                          Instant now);
};

/// What a workspace is called that was given no name.
inline constexpr std::string_view unnamed = "Untitled";

/// `base`, or `base` followed by a blank and the first counter from 2 on that no workspace of the library has
/// as its name, ignoring case. Names of sessions (SessionHistory::isSessionName) are taken always.
std::string uniqueName(std::string_view base, std::span<const Workspace> library);
/// The same among these names.
std::string uniqueName(std::string_view base, std::span<const std::string> taken);

/// Folders of the file manager must be file URLs of this machine, all other context addresses http or https.
/// Drops the rest and whatever became empty by it, and says how many addresses went.
std::int64_t cleanContext(WorkspaceSnapshot& snapshot);

}  // namespace quillo
