#include "platform/simulated/SimulatedScripts.hpp"

#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/simulated/ScriptedApplications.hpp"
#include "platform/simulated/WorldRules.hpp"

namespace quillo::simulated {
namespace {

using namespace std::chrono_literals;

constexpr Duration scriptTakes = 50ms, pollEvery = 50ms;

std::unexpected<Error> late() {
    return fail(ErrorKind::timedOut, "the script did not end in time");
}

}  // namespace

Task<bool> Scripts::passes(Duration duration, TimePoint deadline) {
    const Duration left = deadline - executor_.now();
    co_await sleepFor(std::min(duration, left));
    world_.advance();
    co_return duration <= left;
}

std::optional<ScriptOutcome> Scripts::refusal(std::string_view identifier) {
    Application* application = world_.application(identifier);
    if (!application || !application->scene.installed) return scriptFailed("Can’t get application.", -1728);
    if (world_.fault(FaultKind::automationRefused, identifier))
        return scriptFailed("Not authorized to send Apple events to " + application->scene.name + ".", -1743);
    if (application->running) return std::nullopt;
    if (world_.fault(FaultKind::launchRefused, identifier))
        return scriptFailed("The application can’t be opened.", -10810);
    world_.start(*application);
    return std::nullopt;
}

bool Scripts::decided(std::string_view identifier) {
    const Application& application = *world_.application(identifier);
    return application.running ? !world_.hangs(application) : !application.starting;
}

Task<Result<ScriptOutcome>> Scripts::execute(Script script, Duration limit) {
    const TimePoint deadline = executor_.timeAfter(limit);
    if (!co_await passes(scriptTakes, deadline)) co_return late();
    const std::string& identifier = script.bundleIdentifier;
    if (auto refused = refusal(identifier)) co_return *std::move(refused);
    const Fault* slow = world_.fault(FaultKind::automationSlow, identifier);
    if (slow && !co_await passes(toDuration(slow->seconds), deadline)) co_return late();
    while (!decided(identifier)) {
        if (!co_await passes(pollEvery, deadline)) co_return late();
    }
    Application& application = *world_.application(identifier);
    if (!application.running) co_return scriptFailed("Connection is invalid.", -609);
    ScriptOutcome outcome = perform(world_, application, script);
    world_.scriptRan(identifier);
    co_return outcome;
}

}  // namespace quillo::simulated
