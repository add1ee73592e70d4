// Runs scripts of the system's automation language, and writes texts into them so that nothing in a text can
// become part of the script.
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

/// Fails with timedOut() after `timeout` seconds, with the script's own message when it ends with an error,
/// with the reason where nothing can be run. Cancelled, it throws once the interpreter is gone.
Task<std::expected<Rows, Failure>> run(ScriptInterpreter& scripts, std::string script, double timeout);

Failure timedOut();

/// Output of a script that went well. Undecodable output counts as empty.
Rows rows(std::string_view standardOutput);

/// A text as a literal of the language: backslashes doubled, quotes escaped, the whole in double quotes.
std::string quoted(std::string_view text);

/// Lines joined by line feeds.
std::string lines(const std::vector<std::string>& lines);

/// The handler `joinList(list, delimiter)`, with which every script that reports begins.
const std::string& joinList();

}  // namespace quillo::AppleScript
