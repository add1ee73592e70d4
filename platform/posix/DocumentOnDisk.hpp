// Whether a document named by a workspace may be opened, judged by what stands on the disk.
#pragma once
#include "WindowEngine/support/Url.hpp"

namespace quillo {

/// True for an existing, readable regular file that nobody may execute and that is no program by its ending
/// or its first bytes, and for a folder that is no application. Symbolic links are followed, and both names
/// count. False for any address that two readers could understand differently: with a query or a fragment, of
/// another machine, wrongly escaped. Blocks for the disk only, never for a pipe or a device.
bool documentOpensSafely(const Url& document);

}  // namespace quillo
