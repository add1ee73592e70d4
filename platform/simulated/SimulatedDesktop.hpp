// A whole desktop in memory behind the engine's seam, with its own clock, seed and faults: what tests and
// demonstrations run on. What it does is described in docs/scenes.md, with the evidence for each behaviour.
#pragma once
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/services/Platform.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "platform/simulated/World.hpp"

namespace quillo {

struct SimulatedOptions {
    std::uint64_t seed = 1;
    std::vector<simulated::Fault> faults;  // laid over those of the scene
};

class SimulatedDesktop {
  public:
    /// Reads a scene; an error names the scene and the field. All services live as long as this object.
    static Result<std::unique_ptr<SimulatedDesktop>> create(std::string_view sceneJson,
                                                            std::string_view sceneName,
                                                            SimulatedOptions options = {});
    ~SimulatedDesktop();

    VirtualExecutor& executor() { return executor_; }
    /// With a log kept in memory (logLines), or with another.
    Platform platform();
    Platform platform(SystemLog& log);
    const std::vector<std::string>& logLines() const;

    /// For tests: the world itself, everything due having happened.
    simulated::World& world();
    /// The world as it is now, as a scene to start from.
    std::string sceneJson();

  private:
    struct Services;
    SimulatedDesktop(simulated::Scene scene, std::uint64_t seed);

    VirtualExecutor executor_;  // first: everything else refers to it
    simulated::World world_;
    std::unique_ptr<Services> services_;
};

}  // namespace quillo
