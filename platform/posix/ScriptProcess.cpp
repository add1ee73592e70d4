#include "platform/posix/ScriptProcess.hpp"

#include <unistd.h>

#include <utility>

#include "WindowEngine/integrations/AppleScriptText.hpp"
#include "platform/posix/ChildProcess.hpp"

namespace quillo {

Capability ScriptProcess::scripting() {
    if (access(interpreter_.c_str(), X_OK) == 0) return Capability::available();
    return Capability::unavailable("This system has no interpreter for application scripts.");
}

Task<Result<ScriptOutcome>> ScriptProcess::execute(Script script, Duration limit) {
    ChildProcess::Arguments arguments{.program = interpreter_,
                                      .arguments = {"-e", AppleScript::text(script)}};
    auto outcome = co_await ChildProcess::run(std::move(arguments), limit);
    if (!outcome) co_return std::unexpected(outcome.error());
    co_return ScriptOutcome{.exitStatus = outcome->exitStatus,
                            .standardOutput = std::move(outcome->standardOutput),
                            .standardError = std::move(outcome->standardError)};
}

}  // namespace quillo
