#include "platform/macos/WorkspaceErrors.hpp"

#include <algorithm>
#include <array>

namespace quillo {
namespace {

constexpr std::string_view cocoa = "NSCocoaErrorDomain", status = "NSOSStatusErrorDomain",
                           posix = "NSPOSIXErrorDomain";

struct Known {
    std::string_view domain;
    int code;
    ErrorKind kind;
    std::string_view text;
};

constexpr std::string_view gone = "it is not there any more", forbidden = "you have no permission to open it",
                           canceled = "opening it was canceled",
                           notFound = "the application is not installed",
                           notForThisMac = "the application does not run on this Mac",
                           damaged = "the application is damaged or incomplete";

constexpr std::array known{
    Known{cocoa, 4, ErrorKind::notFound, gone},
    Known{cocoa, 257, ErrorKind::permission, forbidden},
    Known{cocoa, 260, ErrorKind::notFound, gone},
    Known{cocoa, 3072, ErrorKind::refused, canceled},
    Known{cocoa, 3584, ErrorKind::refused, damaged},        // not loadable
    Known{cocoa, 3585, ErrorKind::refused, notForThisMac},  // another processor's
    Known{cocoa, 3587, ErrorKind::refused, damaged},
    Known{posix, 2, ErrorKind::notFound, gone},
    Known{posix, 13, ErrorKind::permission, forbidden},
    Known{status, -43, ErrorKind::notFound, gone},
    Known{status, -128, ErrorKind::refused, canceled},
    Known{status, -600, ErrorKind::refused, "the application has just quit"},
    Known{status, -609, ErrorKind::refused, "the application has just quit"},
    Known{status, -1712, ErrorKind::timedOut, "the application did not answer"},
    Known{status, -10660, ErrorKind::refused, "the application is in the Trash"},
    Known{status, -10661, ErrorKind::refused, notForThisMac},
    Known{status, -10665, ErrorKind::refused, "the application needs Rosetta, which is not installed"},
    Known{status, -10811, ErrorKind::refused, "what is there is no application"},
    Known{status, -10814, ErrorKind::notFound, notFound},
    Known{status, -10825, ErrorKind::refused, "the application needs another version of macOS"},
    Known{status, -10826, ErrorKind::permission, "you have no permission to open the application"},
    Known{status, -10827, ErrorKind::refused, damaged},
};

}  // namespace

Error openError(const WorkspaceError& error) {
    // The innermost cause says most; the outer ones only that something went wrong.
    for (auto cause = error.causes.rbegin(); cause != error.causes.rend(); ++cause) {
        const auto one = std::ranges::find_if(
            known, [&](const Known& k) { return k.domain == cause->domain && k.code == cause->code; });
        if (one != known.end()) return {one->kind, std::string(one->text), one->code};
    }
    const long code = error.causes.empty() ? 0 : error.causes.back().code;
    return {ErrorKind::refused, "the system refused (error " + std::to_string(code) + ")",
            static_cast<int>(code)};
}

}  // namespace quillo
