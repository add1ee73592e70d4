// Scripts run by the system's interpreter, a child process for each.
#pragma once
#include <string>

#include "WindowEngine/services/ScriptInterpreter.hpp"

namespace quillo {

class ScriptProcess final : public ScriptInterpreter {
  public:
    /// `interpreter` takes a script as `-e SCRIPT`, prints its result and ends with a status other than 0
    /// when the script failed.
    explicit ScriptProcess(std::string interpreter = "/usr/bin/osascript")
        : interpreter_(std::move(interpreter)) {}

    /// Whether there is such a program.
    Capability scripting() override;
    /// The limit counts in real time, whatever the executor's clock.
    Task<Result<ScriptOutcome>> execute(Script script, Duration limit) override;

  private:
    std::string interpreter_;
};

}  // namespace quillo
