// The engine's error value: a closed kind for the program, a text a person can act on.
#pragma once
#include <expected>
#include <string>
#include <utility>

namespace quillo {

enum class ErrorKind {
    invalidData,        // a document or input that cannot be read; the text names file and field
    unsupportedSchema,  // a document of a version this build does not know
    notFound,           // no such file, workspace, application
    permission,         // the system refuses access
    noSpace,            // the disk is full or a quota is reached
    io,                 // any other trouble with a file
    locked,             // another process holds the directory
    timedOut,           // an answer did not come within its limit
    refused,            // an application, window manager or service said no
    unavailable,        // this machine cannot do it at all; the text is the reason
    invalidArgument,    // the caller's input is off; the text names the argument
};

/// For files the text says which file, which field, what to do; for applications and scripts it never
/// holds a path, a title or an address (such errors reach reports and logs).
struct Error {
    ErrorKind kind = ErrorKind::io;
    std::string text;
    int code = 0;  // the platform's own code (errno, accessibility error), 0 where there is none

    bool operator==(const Error&) const = default;
};

/// The value, or why there is none.
template <class T, class Reason = Error>
using Result = std::expected<T, Reason>;

inline std::unexpected<Error> fail(ErrorKind kind, std::string text, int code = 0) {
    return std::unexpected(Error{kind, std::move(text), code});
}

}  // namespace quillo
