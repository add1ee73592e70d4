// A Mac's desktop on the main thread's run loop; the log and the defaults are the system's.
#include "ctl/SystemLayer.hpp"
#include "platform/macos/MacDefaults.hpp"
#include "platform/macos/MacLog.hpp"
#include "platform/macos/MacSha256.hpp"
#include "platform/macos/shell/CommandLoop.hpp"
#include "platform/macos/shell/MacDesktop.hpp"

namespace quillo::ctl {
namespace {

class MacLayerDesktop final : public DesktopConnection {
  public:
    explicit MacLayerDesktop(SystemLog& log) : desktop_(loop_), access_{desktop_.platform(log), handles_} {}

    std::string description() const override { return "this Mac"; }
    DesktopAccess& access() override { return access_; }
    Loop& loop() override { return loop_; }
    Result<void> keepChanges() override { return {}; }

  private:
    CommandLoop loop_;
    WindowHandleCache handles_;
    MacDesktop desktop_;
    DesktopAccess access_;
};

class MacLayer final : public SystemLayer {
  public:
    Result<std::unique_ptr<DesktopConnection>> openDesktop(SystemLog& log) override {
        return std::make_unique<MacLayerDesktop>(log);
    }
    SystemLog& log() override { return log_; }
    std::string logPlace() const override { return "the system's log, under the subsystem app.quillo"; }
    UserDefaults& defaults() override { return defaults_; }
    std::unique_ptr<RestoreEvents> listenToRestores(Executor&, RestoreEvents::Told) override {
        return nullptr;
    }
    std::string digest(std::string_view bytes) const override { return macSha256(bytes); }

  private:
    MacLog log_;
    MacDefaults defaults_;
};

}  // namespace

const std::string_view systemDesktopName = "macos";
const bool systemHasLaunchers = false;

std::unique_ptr<SystemLayer> systemLayer(FileSystem&, const StandardDirectories&) {
    return std::make_unique<MacLayer>();
}

}  // namespace quillo::ctl
