// How a command ends: the exit status that scripts rely on, or a failure with one line for the person.
#pragma once
#include <expected>
#include <string>
#include <utility>

#include "WindowEngine/support/Error.hpp"

namespace quillo::ctl {

enum class Exit : int {
    done = 0,
    failed = 1,
    usage = 2,
    partly = 3,      // something was skipped or failed; the lines before say what
    permission = 4,  // other applications' windows may not be read
    differs = 5,     // plan --exit-code: a restore would have something to do
    cancelled = 130,
};

/// `text` is one line without the program's name.
struct Failure {
    Exit exit = Exit::failed;
    std::string text;
};

using CommandResult = Result<Exit, Failure>;

inline std::unexpected<Failure> failure(std::string text, Exit exit = Exit::failed) {
    return std::unexpected(Failure{exit, std::move(text)});
}

/// "Couldn't save Work: no space left".
inline std::unexpected<Failure> couldNot(const std::string& verbAndName, const Error& error) {
    return failure("Couldn't " + verbAndName + ": " + error.text);
}

}  // namespace quillo::ctl
