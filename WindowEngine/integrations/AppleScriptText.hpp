// Scripts in the words of the system's automation language.
#pragma once
#include <string>

#include "WindowEngine/services/Script.hpp"

namespace quillo::AppleScript {

/// Texts (paths, addresses, identifiers of windows) stand in it as quoted literals only, so that nothing in a
/// text can become part of the script. The application is one that an integration knows.
std::string text(const Script& script);

}  // namespace quillo::AppleScript
