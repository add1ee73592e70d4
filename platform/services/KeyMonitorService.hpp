// Key presses that reach a window of ours, heard before the window hears them.
#pragma once
#include <functional>
#include <memory>

#include "platform/services/KeyEvent.hpp"

namespace quillo {

/// Takes the monitor away when it goes.
class KeyMonitor {
  public:
    virtual ~KeyMonitor() = default;
};

/// For the thread of the application's windows, on which the callbacks come too.
class KeyMonitorService {
  public:
    /// Told of each key that goes down, modifier keys on their own and repeats of a held key left out; true
    /// consumes the event, so that no window sees it. May take its own monitor away.
    using KeyDown = std::function<bool(const KeyEvent&)>;

    virtual ~KeyMonitorService() = default;

    /// While a monitor exists, the application's own shortcuts rest: their keys come here as well. Of several
    /// monitors the latest is asked first, the others where it does not consume.
    [[nodiscard]] virtual std::unique_ptr<KeyMonitor> addKeyDownMonitor(KeyDown keyDown) = 0;
};

}  // namespace quillo
