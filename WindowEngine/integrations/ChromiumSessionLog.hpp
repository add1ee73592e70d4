// The log in which browsers of the Chromium family keep the windows and tabs of one profile. There is no
// document of the format; what is told here was read out of the files of version 156 and holds for what is
// used of it.
//
// "SNSS", a 32-bit version, then records of a 16-bit size, a command of one byte, and size - 1 bytes; all
// little endian. It is only ever appended to, so the last record may be cut off. In version 3 the state is
// whole from a marker on.
#pragma once
#include <string_view>

#include "WindowEngine/services/BrowserSession.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo::ChromiumSessionLog {

/// Normal windows with a tab in them, of the bytes of Session_N. `closedTabs` are the bytes of Tabs_N, empty
/// where there is none: that the last window of a profile was closed is told by it alone.
///
/// Bytes of any kind are survived; memory and time grow with their number only. A record that makes no sense
/// is passed over. Errors, without a path: `invalidData` (no such log, too large, just being rewritten),
/// `unavailable` (encrypted, or of a version that this build does not know).
Result<BrowserSession> read(std::string_view session, std::string_view closedTabs);

}  // namespace quillo::ChromiumSessionLog
