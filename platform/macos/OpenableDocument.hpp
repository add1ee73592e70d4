// Whether a document that a workspace names may be opened on a Mac.
#pragma once
#include "platform/macos/WorkspaceShell.hpp"

namespace quillo {

/// What stands on the disk must be harmless, as everywhere, and besides what the system takes it for: no
/// application, whatever its name; no alias, which would open something else; no type that runs, installs or
/// configures. Of a file that the system says nothing about, no. Blocks for the disk only.
/// Gives the address of the file itself. The mark that the system keeps on what was downloaded stays on it,
/// so that the system's own question comes as when a person opens it.
Result<Url> openableDocumentOnMac(const Url& document, WorkspaceShell& shell);

}  // namespace quillo
