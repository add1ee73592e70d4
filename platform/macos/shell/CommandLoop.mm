#include "platform/macos/shell/CommandLoop.hpp"

namespace quillo {

bool CommandLoop::advance(TimePoint deadline) {
    @autoreleasepool {
        return RunLoopExecutor::advance(deadline);
    }
}

}  // namespace quillo
