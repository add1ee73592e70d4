// The run loop of a program that has no application object to run it.
#pragma once
#include "platform/macos/RunLoopExecutor.hpp"

namespace quillo {

/// Empties a pool of its own each time it goes round, as an application object would: what the system's
/// functions leave for one stays otherwise until the program ends.
class CommandLoop final : public RunLoopExecutor {
  private:
    bool advance(TimePoint deadline) override;
};

}  // namespace quillo
