// What the applications do that scripts can ask for. Internal to this layer.
#pragma once
#include "WindowEngine/services/ScriptInterpreter.hpp"
#include "platform/simulated/World.hpp"

namespace quillo::simulated {

ScriptOutcome scriptFailed(std::string_view message, int number);

/// The application runs and answers.
ScriptOutcome perform(World& world, Application& application, const Script& script);

}  // namespace quillo::simulated
