// A desktop described by a scene file, on a virtual clock.
#include "ctl/SimulatedLayer.hpp"

#include "WindowEngine/library/AtomicFile.hpp"
#include "ctl/ReportFile.hpp"
#include "platform/simulated/SimulatedDesktop.hpp"

namespace quillo::ctl {
namespace {

class SimulatedLayer final : public DesktopConnection {
  public:
    SimulatedLayer(std::unique_ptr<SimulatedDesktop> desktop, SceneFile scene, SystemLog& log)
        : desktop_(std::move(desktop)),
          scene_(std::move(scene)),
          access_{desktop_->platform(log), handles_} {}

    std::string description() const override { return "simulated, " + scene_.path.string(); }
    DesktopAccess& access() override { return access_; }
    Loop& loop() override { return desktop_->executor(); }

    Result<void> keepChanges() override {
        if (!scene_.keep) return {};
        return writeAtomically(scene_.files, scene_.path, desktop_->sceneJson());
    }

  private:
    std::unique_ptr<SimulatedDesktop> desktop_;
    SceneFile scene_;
    WindowHandleCache handles_;
    DesktopAccess access_;
};

}  // namespace

Result<std::unique_ptr<DesktopConnection>> openSimulatedDesktop(const SceneFile& scene, SystemLog& log) {
    const Result<std::string> json = scene.files.read(scene.path);
    if (!json) return std::unexpected(json.error());
    const Result<std::optional<Report>> report = readReport(*json, scene.path.string());
    if (!report) return std::unexpected(report.error());
    if (*report && scene.keep)
        return fail(ErrorKind::invalidArgument, "--keep-scene: " + scene.path.string() + " is a report");
    auto desktop = SimulatedDesktop::create(*report ? (*report)->scene : *json, scene.path.string());
    if (!desktop) return std::unexpected(desktop.error());
    return std::make_unique<SimulatedLayer>(*std::move(desktop), scene, log);
}

}  // namespace quillo::ctl
