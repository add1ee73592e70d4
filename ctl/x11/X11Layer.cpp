// An X server's desktop on the plain loop; the log and the defaults are files.
#include <cstdlib>

#include "ctl/SystemLayer.hpp"
#include "platform/linux/BusRestoreEvents.hpp"
#include "platform/linux/Sha256.hpp"
#include "platform/posix/FileDefaults.hpp"
#include "platform/posix/FileLog.hpp"
#include "platform/x11/X11Desktop.hpp"
#include "settings/Launchers.hpp"

namespace quillo::ctl {
namespace {

class X11LayerDesktop final : public DesktopConnection {
  public:
    static Result<std::unique_ptr<DesktopConnection>> open(SystemLog& log, UserDefaults& defaults) {
        auto layer = std::make_unique<X11LayerDesktop>();
        Result<std::unique_ptr<X11Desktop>> desktop = X11Desktop::create(
            layer->loop_, {.commandOf = [launchers = Launchers(defaults)](std::string_view identifier) {
                return launchers.find(identifier);
            }});
        if (!desktop) return std::unexpected(desktop.error());
        layer->desktop_ = *std::move(desktop);
        layer->access_.emplace(layer->desktop_->platform(log), layer->handles_);
        return layer;
    }

    std::string description() const override {
        const char* display = std::getenv("DISPLAY");
        return std::string("X11, display ") + (display != nullptr ? display : "");
    }
    DesktopAccess& access() override { return *access_; }
    Loop& loop() override { return loop_; }
    Result<void> keepChanges() override { return {}; }

  private:
    LoopExecutor loop_;
    WindowHandleCache handles_;
    std::unique_ptr<X11Desktop> desktop_;
    std::optional<DesktopAccess> access_;
};

class X11Layer final : public SystemLayer {
  public:
    X11Layer(FileSystem& files, const StandardDirectories& directories)
        : logFile_(directories.state / "quillo.log"),
          log_(logFile_),
          defaults_(files, directories.config / "defaults.json") {}

    Result<std::unique_ptr<DesktopConnection>> openDesktop(SystemLog& log) override {
        return X11LayerDesktop::open(log, defaults_);
    }
    SystemLog& log() override { return log_; }
    std::string logPlace() const override { return logFile_.string(); }
    UserDefaults& defaults() override { return defaults_; }
    std::unique_ptr<RestoreEvents> listenToRestores(Executor& executor, RestoreEvents::Told told) override {
        return listenOnSessionBus(executor, std::move(told));
    }
    std::string digest(std::string_view bytes) const override { return sha256(bytes); }

  private:
    std::filesystem::path logFile_;
    FileLog log_;
    FileDefaults defaults_;
};

}  // namespace

const std::string_view systemDesktopName = "x11";
const bool systemHasLaunchers = true;

std::unique_ptr<SystemLayer> systemLayer(FileSystem& files, const StandardDirectories& directories) {
    return std::make_unique<X11Layer>(files, directories);
}

}  // namespace quillo::ctl
