// No script interpreter drives applications on X11.
#pragma once
#include "WindowEngine/services/ScriptInterpreter.hpp"

namespace quillo {

class NoScripts final : public ScriptInterpreter {
  public:
    Capability scripting() override { return Capability::unavailable(reason); }
    Task<Result<ScriptOutcome>> execute(Script, Duration) override {
        co_return fail(ErrorKind::unavailable, reason);
    }

  private:
    static constexpr auto reason = "Applications cannot be scripted on this system.";
};

}  // namespace quillo
