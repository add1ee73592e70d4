// Key presses in windows that nobody sees.
#pragma once
#include <utility>

#include "platform/services/KeyMonitors.hpp"

namespace quillo {

class SimulatedKeyMonitor final : public KeyMonitorService {
  public:
    std::unique_ptr<KeyMonitor> addKeyDownMonitor(KeyDown keyDown) override {
        return monitors_.add(std::move(keyDown));
    }

    /// Whether it was consumed; else a window sees it.
    bool press(const KeyEvent& event) const { return monitors_.consume(event); }
    std::size_t monitors() const { return monitors_.count(); }

  private:
    KeyMonitors monitors_;
};

}  // namespace quillo
