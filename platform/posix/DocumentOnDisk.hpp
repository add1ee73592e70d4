// Whether a document named by a workspace may be opened, judged by what stands on the disk.
#pragma once
#include "WindowEngine/support/Error.hpp"
#include "WindowEngine/support/Url.hpp"

namespace quillo {

/// The address of the file or folder itself, every symbolic link resolved: what is judged is what is opened,
/// for a reader that resolves ".." before links would come to another file. Given for an existing, readable
/// regular file that nobody may execute and that is no program and no launcher by its ending or its first
/// bytes, and for a folder that is no application; of a link both names count.
///
/// Refused, with a reason that names nothing, is any other, and any address that two readers could understand
/// differently: with a query or a fragment, of another machine, wrongly escaped; and what the system itself
/// shows as files (/proc, /sys, /dev). Blocks for the disk only, never for a pipe, a device or an automatic
/// mount under /net.
Result<Url> openableDocument(const Url& document);

}  // namespace quillo
