// Runs a program as a child process, without a shell.
#pragma once
#include <chrono>
#include <string>
#include <vector>

#include "WindowEngine/support/Error.hpp"
#include "WindowEngine/support/Task.hpp"

namespace quillo::ChildProcess {

struct Arguments {
    std::string program;  // a path, or a name that is looked up in PATH
    std::vector<std::string> arguments;
    /// How long a child that was asked to terminate may take before it is killed.
    Duration grace = std::chrono::seconds{2};
};

struct Outcome {
    int exitStatus = 0;          // 128 + signal, as shells count, when a signal ended it
    int signal = 0;              // 0 unless a signal ended it
    std::string standardOutput;  // raw bytes, complete
    std::string standardError;
};

/// Runs the program to its end with standard input empty. The child inherits no descriptor but the three
/// standard ones, no blocked or ignored signal, and leads a process group of its own.
///
/// Fails with `notFound` or `permission` when the program cannot be started and with `timedOut` after `limit`
/// in real time, whatever the executor's clock; cancelled, it throws Cancelled. In both cases the child's
/// whole group is asked to terminate, killed after the grace, and gone when the task ends. Destroying the
/// task kills at once and waits the moment that takes. What the child's own children write after its end is
/// not waited for. Error texts hold no path.
Task<Result<Outcome>> run(Arguments arguments, Duration limit);

}  // namespace quillo::ChildProcess
