// The real desktop of an X server, on the plain loop.
#include <cstdlib>

#include "ctl/DesktopLayers.hpp"
#include "platform/x11/X11Desktop.hpp"

namespace quillo::ctl {
namespace {

class X11Layer final : public Desktop {
  public:
    static Result<std::unique_ptr<Desktop>> open(SystemLog& log) {
        auto layer = std::make_unique<X11Layer>();
        Result<std::unique_ptr<X11Desktop>> desktop = X11Desktop::create(layer->loop_, {});
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

}  // namespace

Result<std::unique_ptr<Desktop>> openX11Desktop(SystemLog& log) {
    return X11Layer::open(log);
}

}  // namespace quillo::ctl
