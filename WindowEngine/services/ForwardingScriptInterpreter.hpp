// Hands every call on to another service: a fault test overrides the one it needs.
#pragma once
#include <utility>

#include "WindowEngine/services/ScriptInterpreter.hpp"

namespace quillo {

class ForwardingScriptInterpreter : public ScriptInterpreter {
  public:
    explicit ForwardingScriptInterpreter(ScriptInterpreter& target) : target_(target) {}

    Capability scripting() override { return target_.scripting(); }
    Task<Result<ScriptOutcome>> execute(std::string script, Duration limit) override {
        return target_.execute(std::move(script), limit);
    }

  private:
    ScriptInterpreter& target_;
};

}  // namespace quillo
