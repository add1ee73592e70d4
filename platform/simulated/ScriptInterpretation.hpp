// Carries out scripts word by word as the system's interpreter does, so that what goes wrong between two of
// their steps goes wrong here too. Internal to this layer.
#pragma once
#include <string>
#include <string_view>

namespace quillo::simulated {

class ScriptedApplication;

/// What the script returns, or the value of its last statement. Of the automation language it knows what
/// AppleScriptText writes: anything else is a mistake of ours and throws std::logic_error. An error that the
/// script does not handle is thrown as a ScriptError.
std::string interpret(std::string_view text, ScriptedApplication& application);

}  // namespace quillo::simulated
