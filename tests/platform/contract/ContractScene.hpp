// What ContractDesktop describes, for the layers that stand over the simulated desktop.
#pragma once
#include "platform/simulated/SimulatedDesktop.hpp"
#include "tests/platform/contract/ContractSuite.hpp"

namespace quillo {

class SceneContractDesktop : public ContractDesktop {
  public:
    Loop& loop() override { return desktop_->executor(); }
    std::string editor() const override { return "org.example.editor"; }
    std::string launcher() const override { return "org.example.launcher"; }
    void vanish(std::string_view title) override {
        auto& world = desktop_->world();
        world.close(world.window(editor(), title)->number);
    }

  protected:
    static constexpr std::string_view scene = R"({
  "opensWindows": true,
  "displays": [{"id": "LEFT", "frame": [0, 0, 1440, 900], "visibleFrame": [0, 25, 1440, 875], "desktops": 2},
               {"id": "RIGHT", "frame": [1440, 0, 1280, 1024]}],
  "applications": [
    {"identifier": "org.example.editor", "name": "Editor", "windows": [
      {"title": "Alpha", "frame": [40, 60, 400, 300]},
      {"title": "Beta", "frame": [500, 80, 420, 320]},
      {"title": "Gamma", "frame": [1600, 100, 300, 200], "subrole": "AXDialog"}]},
    {"identifier": "org.example.launcher", "running": false, "windows": [{"title": "New", "frame": [90, 90, 300, 200]}]}
  ]})";
    const std::unique_ptr<SimulatedDesktop> desktop_ = SimulatedDesktop::create(scene, "scene").value();
};

template <class Desktop>
std::unique_ptr<ContractDesktop> makeContractDesktop() {
    return std::make_unique<Desktop>();
}

}  // namespace quillo
