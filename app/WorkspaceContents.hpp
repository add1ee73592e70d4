// What a person adds to a saved workspace: an application, or an address for a browser to open. Pure.
#pragma once
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo::WorkspaceContents {

/// The application as it is to be added: with the windows that it has in `current`, where the workspace was
/// saved on the same displays; otherwise without any. Their desktops only where the workspace has them.
ApplicationSnapshot fitting(ApplicationSnapshot application, const WorkspaceSnapshot& workspace,
                            const WorkspaceSnapshot& current);

/// Adds it as the last one, or brings it back where it had been left out; refused where it is there already.
Result<void> add(WorkspaceSnapshot& snapshot, ApplicationSnapshot application);

/// As people type it: without a scheme it is https. Only http and https with a host, and without a password
/// in it, and nothing on an excluded site; the reason names what is wrong and not the address.
Result<Url> webAddress(std::string_view typed, const std::set<std::string>& excludedDomains);

/// Identifiers of the applications of the workspace that an integration can open web addresses in.
std::vector<std::string> browsers(const WorkspaceSnapshot& snapshot);

/// As the last one of the browser's first window, or of a window of its own where nothing was open in any.
/// Refused where it is not there, or has the address already.
Result<void> addAddress(WorkspaceSnapshot& snapshot, std::string_view browser, const Url& address);

}  // namespace quillo::WorkspaceContents
