// Why the system did not open an application or a document, in words of our own: the system's name documents.
#pragma once
#include "WindowEngine/support/Error.hpp"
#include "platform/macos/WorkspaceShell.hpp"

namespace quillo {

/// The text holds no path, title or address; the code is that of the cause it is about.
Error openError(const WorkspaceError& error);

}  // namespace quillo
