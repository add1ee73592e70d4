#include "platform/simulated/SimulatedDesktop.hpp"

#include <fmt/format.h>

#include <utility>

#include "WindowEngine/support/Text.hpp"
#include "platform/simulated/SimulatedBrowserFiles.hpp"
#include "platform/simulated/SimulatedScripts.hpp"
#include "platform/simulated/SimulatedServices.hpp"

namespace quillo {

struct SimulatedDesktop::Services {
    Services(simulated::World& world, VirtualExecutor& executor)
        : accessibility(world, executor),
          server(world, executor),
          applications(world),
          screens(world),
          scripts(world, executor),
          browserFiles(world, executor) {}

    simulated::Accessibility accessibility;
    simulated::Server server;
    simulated::ApplicationList applications;
    simulated::ScreenList screens;
    simulated::Scripts scripts;
    simulated::SessionFiles browserFiles;
    simulated::MemoryLog log;
};

Result<std::unique_ptr<SimulatedDesktop>> SimulatedDesktop::create(std::string_view sceneJson,
                                                                   std::string_view sceneName,
                                                                   SimulatedOptions options) {
    Result<simulated::Scene> scene = simulated::readScene(sceneJson, sceneName);
    if (!scene) return std::unexpected(scene.error());
    for (simulated::Fault& fault : options.faults) scene->faults.push_back(std::move(fault));
    return std::unique_ptr<SimulatedDesktop>(new SimulatedDesktop(*std::move(scene), options.seed));
}

SimulatedDesktop::SimulatedDesktop(simulated::Scene scene, std::uint64_t seed)
    : world_(executor_, std::move(scene), seed), services_(std::make_unique<Services>(world_, executor_)) {}

SimulatedDesktop::~SimulatedDesktop() = default;

Platform SimulatedDesktop::platform() {
    return platform(services_->log);
}

Platform SimulatedDesktop::platform(SystemLog& log) {
    return {executor_,          services_->accessibility, services_->server,       services_->applications,
            services_->screens, services_->scripts,       services_->browserFiles, log};
}

const std::vector<std::string>& SimulatedDesktop::logLines() const {
    return services_->log.lines;
}

simulated::World& SimulatedDesktop::world() {
    world_.advance();
    return world_;
}

std::string SimulatedDesktop::sceneJson() {
    return simulated::writeScene(world().scene());
}

namespace simulated {

std::vector<Screen> ScreenList::screens() {
    world_.advance();
    std::vector<Screen> result;
    for (const Display& display : world_.displays())
        result.push_back({display.scene.id, display.scene.frame, display.scene.visibleFrame,
                          display.scene.scale, display.scene.model, display.scene.connector});
    return result;
}

ScreenState ScreenList::state() {
    world_.advance();
    return world_.screenState();
}

void MemoryLog::write(std::string_view category, LogLevel level, std::string_view message) {
    lines.push_back(fmt::format("{} {}: {}", category, level == LogLevel::info ? "info" : "error",
                                text::printable(message)));
}

}  // namespace simulated
}  // namespace quillo
