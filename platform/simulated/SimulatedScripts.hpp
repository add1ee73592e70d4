// The script interpreter, which hands each script to the application that it is for. Internal to this layer.
#pragma once
#include <optional>
#include <string>
#include <string_view>

#include "WindowEngine/services/ScriptInterpreter.hpp"
#include "platform/simulated/World.hpp"

namespace quillo::simulated {

class Scripts final : public ScriptInterpreter {
  public:
    Scripts(World& world, VirtualExecutor& executor) : world_(world), executor_(executor) {}

    Capability scripting() override { return Capability::available(); }
    /// A script to an application that is not installed ends with an error; one that does not run is launched
    /// first.
    Task<Result<ScriptOutcome>> execute(Script script, Duration limit) override;

  private:
    /// False when the deadline comes first.
    Task<bool> passes(Duration duration, TimePoint deadline);
    /// Why the application will never answer a script; starts it where it may.
    std::optional<ScriptOutcome> refusal(std::string_view identifier);
    /// No more waiting: it answers, or it has ended.
    bool decided(std::string_view identifier);

    World& world_;
    VirtualExecutor& executor_;
};

}  // namespace quillo::simulated
