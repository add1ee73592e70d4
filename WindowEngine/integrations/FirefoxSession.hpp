// The file in which Firefox and its kin keep the windows and tabs of one profile while they run. There is no
// document of the format; what is told here was read out of the files of version 153.
//
// "mozLz40\0", the unpacked size in 32 bits (little endian), one LZ4 block; in it JSON.
#pragma once
#include <string_view>

#include "WindowEngine/services/BrowserSession.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo::FirefoxSession {

/// Windows with a tab in them that are neither private nor a page's own, of the bytes of recovery.jsonlz4.
/// Hidden tabs are left out. Only what is listed under "windows" counts: what was closed is kept elsewhere in
/// the file.
///
/// Bytes of any kind are survived: memory is taken for what the bytes can hold at most, whatever size they
/// claim. Errors, without a path: `invalidData` (no such file, damaged, too large), `unavailable`
/// (encrypted).
Result<BrowserSession> read(std::string_view file);

}  // namespace quillo::FirefoxSession
