// What stands behind an element of the simulated desktop. Internal to this layer and to the fakes of macOS.
#pragma once
#include <string>
#include <utility>

#include "WindowEngine/services/AccessibilityService.hpp"

namespace quillo::simulated {

/// Names an application (number 0), a window of it, a part of a window, or a part of the Dock's overview.
class Handle final : public ElementHandle {
  public:
    Handle(ProcessID owner, WindowNumber window, std::string named = {}, std::string on = {})
        : pid(owner), number(window), part(std::move(named)), displayID(std::move(on)) {}
    bool same(const ElementHandle& other) const override {
        const auto& handle = static_cast<const Handle&>(other);
        return pid == handle.pid && number == handle.number && part == handle.part &&
               displayID == handle.displayID;
    }

    ProcessID pid;
    WindowNumber number;
    std::string part;       // empty for the window or the Dock itself
    std::string displayID;  // of the display that the part belongs to
};

inline const Handle& handleOf(const Element& element) {
    return static_cast<const Handle&>(element.handle());
}

}  // namespace quillo::simulated
