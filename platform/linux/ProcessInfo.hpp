// What /proc tells of a process.
#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "WindowEngine/support/Instant.hpp"

namespace quillo {

struct ProcessInfo {
    ProcessID parent = 0;
    ProcessID session = 0;     // its leader
    bool hasTerminal = false;  // a line that it reads from and writes to
    ProcessID foreground = 0;  // leader of the group that has that line now
    std::uint64_t startTicks =
        0;  // clock ticks since the machine started; names a process together with its pid
};

/// Absent when there is no such process, or only its remains are left.
std::optional<ProcessInfo> processInfo(ProcessID pid);

/// The same for as long as the process lives.
Instant startInstant(const ProcessInfo& process);

/// Its children at this moment, in no order; none where the system does not tell.
std::vector<ProcessID> childrenOf(ProcessID pid);

/// What it calls itself, cut at 15 bytes; empty when it cannot be read.
std::string nameOf(ProcessID pid);

/// Absolute path of the program; absent when it cannot be read or was deleted.
std::optional<std::string> programOf(ProcessID pid);

/// Whether it only hands on what programs on other machines do (a secure shell's server, forwarding X11).
bool isForwarder(ProcessID pid);

/// What it was started with, after the program's own name; empty when it cannot be read.
std::vector<std::string> argumentsOf(ProcessID pid);

/// Absolute paths of what it has open, some of them twice; what is open without a path, and what the system
/// shows as files, is left out.
std::vector<std::string> openFilesOf(ProcessID pid);

/// Absolute path; empty when it cannot be read.
std::string workingDirectoryOf(ProcessID pid);

}  // namespace quillo
