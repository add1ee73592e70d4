// Ctrl-C, or a request to terminate, during a long command: turned into a call on the executor's thread, so
// that the command can end in good order and say what it did until then.
#pragma once
#include <functional>
#include <memory>
#include <thread>

#include "WindowEngine/support/Executor.hpp"

namespace quillo::ctl {

/// While it lives, the first SIGINT, SIGTERM or SIGHUP posts `cancel`; the second ends the program at once,
/// and so does a SIGTERM after a second in which the command has not ended: whoever sends that does not wait
/// long. One at a time. It must die before `executor` and before what `cancel` refers to; `cancel` is not
/// called after it.
class Interrupt {
  public:
    Interrupt(Executor& executor, std::function<void()> cancel);
    ~Interrupt();
    Interrupt(const Interrupt&) = delete;
    Interrupt& operator=(const Interrupt&) = delete;

    /// The signal that interrupted a command of this program; 0 where none did.
    static int received();

  private:
    std::shared_ptr<std::function<void()>> cancel_;
    std::thread reader_;
};

}  // namespace quillo::ctl
