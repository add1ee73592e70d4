// Memory that is not needed now, given back to the system.
#pragma once

namespace quillo {

/// For moments after much was let go, as when the last window closes: allocators keep it for themselves else.
/// Takes some milliseconds; does nothing where the allocator has no such call.
void releaseFreeMemory();

}  // namespace quillo
