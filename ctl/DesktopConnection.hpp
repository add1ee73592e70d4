// The desktop that a command reads or changes: one platform layer with its loop. main() chooses which.
#pragma once
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "WindowEngine/desktop/Accessibility.hpp"
#include "WindowEngine/support/Job.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "ctl/Interrupt.hpp"

namespace quillo::ctl {

class DesktopConnection {
  public:
    virtual ~DesktopConnection() = default;
    /// For the doctor: which layer this is.
    virtual std::string description() const = 0;
    virtual DesktopAccess& access() = 0;
    virtual Loop& loop() = 0;
    /// After a command that changed windows. Only a simulated desktop has something to keep, its scene.
    virtual Result<void> keepChanges() = 0;
};

/// Runs `task` to its end. Ctrl-C, the end of the terminal and a request to terminate cancel it: then there
/// is no value, or the one that the task still gave.
template <class T>
std::optional<T> run(DesktopConnection& desktop, Task<T> task) {
    Job<T> job(desktop.loop(), std::move(task));
    const Interrupt interrupt(desktop.loop(), [&job] { job.cancel(); });
    desktop.loop().runUntil([&job] { return job.done(); }, Duration::max());
    try {
        return job.result();
    } catch (const Cancelled&) {
        return std::nullopt;
    }
}

}  // namespace quillo::ctl
