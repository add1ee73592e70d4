// Starting a child process with its two output pipes.
#pragma once
#include <sys/types.h>

#include "platform/posix/ChildProcess.hpp"
#include "platform/posix/Descriptor.hpp"

namespace quillo::ChildProcess {

struct Pipe {
    Descriptor reading;  // does not block
    Descriptor writing;

    /// Both ends are closed on exec and are none of the standard descriptors.
    static Result<Pipe> open();
};

struct Child {
    pid_t pid = 0;  // also of the process group it leads
    Descriptor standardOutput;
    Descriptor standardError;
};

/// Any thread. Returns once the program runs or could not be started.
Result<Child> spawn(const Arguments& arguments);

}  // namespace quillo::ChildProcess
