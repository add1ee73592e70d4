// Turns what a Chromium-family browser says of a window's tabs into addresses that can be opened again. Pure.
#pragma once
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/support/Url.hpp"

namespace quillo::ChromiumURLCodec {

/// http and https addresses only: new-tab, settings and extension pages are never saved. A field in which new
/// tabs were run together with addresses is taken apart at "chrome://newtab/".
std::vector<Url> decode(std::span<const std::string> fields);

}  // namespace quillo::ChromiumURLCodec
