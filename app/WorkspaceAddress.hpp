// How others name a workspace that they want back: in a link, or as a text. Pure.
#pragma once
#include <span>
#include <string>
#include <string_view>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo {

inline constexpr std::string_view addressScheme = "quillo:";

/// Whether the text is one of our links at all; capitals do not matter in a scheme.
bool isWorkspaceAddress(std::string_view text);

/// quillo:restore?name=Morning%20desk, for workspaceCalled().
std::string addressOfWorkspace(std::string_view name);

/// What a link names, for workspaceCalled(): the value of `name` or of `id`, decoded. Exactly one of the two
/// is there, once, and nothing else; what is wrong is named, without anything of the link's own.
Result<std::string> workspaceInAddress(std::string_view address);

/// The one with this identifier, else the only one with this name, ignoring case. The error is for the
/// person.
Result<Workspace> workspaceCalled(std::string_view which, std::span<const Workspace> workspaces);

}  // namespace quillo
