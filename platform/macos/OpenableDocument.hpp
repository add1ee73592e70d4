// Whether a document that a workspace names may be opened on a Mac.
#pragma once
#include "platform/macos/WorkspaceShell.hpp"

namespace quillo {

/// What stands on the disk must be harmless, as everywhere, and besides what the system takes it for: no
/// application, whatever its name; no alias, which would open something else; no type that runs, installs or
/// configures. Of a file that the system says nothing about, no. Blocks for the disk only.
bool documentOpensSafelyOnMac(const Url& document, WorkspaceShell& shell);

}  // namespace quillo
