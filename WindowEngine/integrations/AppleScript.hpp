// Runs scripts and reads what they print.
#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/services/ScriptInterpreter.hpp"

namespace quillo::AppleScript {

struct Failure {
    std::string description;
    bool operator==(const Failure&) const = default;
};

/// What a script printed: one row per line, in order, its fields separated by tabs. Empty fields are left
/// out; an empty line is a row without fields.
using Rows = std::vector<std::vector<std::string>>;

/// Fails with "Automation timed out." after `timeout` seconds, with the script's own message when it ends
/// with an error, with the reason where nothing can be run. Cancelled, it throws once the interpreter is
/// gone.
Task<std::expected<Rows, Failure>> run(ScriptInterpreter& scripts, Script script, double timeout);

/// Output of a script that went well. Undecodable output counts as empty.
Rows rows(std::string_view standardOutput);

}  // namespace quillo::AppleScript
