// The platform layer for an X11 desktop whose window manager speaks EWMH. Every call is at most a few round
// trips to the X server, which answers whatever applications do, over a connection whose events nobody reads;
// waits hear of changes over one of their own.
#pragma once
#include <memory>
#include <string>

#include "WindowEngine/services/Platform.hpp"
#include "platform/linux/RegisteredCommands.hpp"

namespace quillo {

struct X11Options {
    std::string display = {};  // empty: $DISPLAY
    /// How applications without a menu entry are started.
    RegisteredCommands::CommandOf commandOf = {};
};

class X11Desktop {
  public:
    /// `unavailable` where no X server answers or no window manager that speaks EWMH runs; the text says what
    /// to do. The executor must outlive it.
    static Result<std::unique_ptr<X11Desktop>> create(Executor& executor, const X11Options& options);
    X11Desktop(const X11Desktop&) = delete;
    X11Desktop& operator=(const X11Desktop&) = delete;
    ~X11Desktop();

    /// References into this object.
    Platform platform(SystemLog& log);

    /// X errors that nothing was waiting for: always 0 unless this layer has a fault.
    std::size_t strayErrors();

  private:
    struct Services;
    explicit X11Desktop(std::unique_ptr<Services> services);
    std::unique_ptr<Services> services_;
};

}  // namespace quillo
