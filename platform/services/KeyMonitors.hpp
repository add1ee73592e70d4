// Who listens to key presses: what the layers keep monitors in.
#pragma once
#include <ranges>

#include "platform/services/KeyMonitorService.hpp"
#include "platform/services/Listeners.hpp"

namespace quillo {

class KeyMonitors : public Listeners<KeyMonitorService::KeyDown, KeyMonitor> {
  public:
    /// Whether one of them consumed it; the latest is asked first.
    bool consume(const KeyEvent& event) const {
        for (const auto& entry : snapshot() | std::views::reverse) {
            const auto keyDown = *entry;  // survives the end of its monitor while it runs
            if (keyDown && keyDown(event)) return true;
        }
        return false;
    }
};

}  // namespace quillo
