// The password managers, key rings and password prompts of Linux: their windows are never captured.
#pragma once
#include <set>
#include <string>

namespace quillo::SecretKeepers {

/// In lower case. Each is known by the base name of its .desktop file as its makers, Flathub and snap call
/// it, and by the class of its windows, for which the registry takes an application that has no .desktop
/// file.
std::set<std::string> identifiers();

}  // namespace quillo::SecretKeepers
