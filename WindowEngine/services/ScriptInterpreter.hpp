// The system's script interpreter.
#pragma once
#include <string>

#include "WindowEngine/services/Capability.hpp"
#include "WindowEngine/services/Script.hpp"
#include "WindowEngine/support/Error.hpp"
#include "WindowEngine/support/Task.hpp"

namespace quillo {

struct ScriptOutcome {
    int exitStatus = 0;
    std::string standardOutput;  // raw bytes
    std::string standardError;
};

class ScriptInterpreter {
  public:
    virtual ~ScriptInterpreter() = default;
    virtual Capability scripting() = 0;
    /// Runs one script to its end. Fails with `timedOut` after `limit`; cancelled, the interpreter is
    /// terminated and Cancelled is thrown. Never blocks the executor.
    virtual Task<Result<ScriptOutcome>> execute(Script script, Duration limit) = 0;
};

}  // namespace quillo
