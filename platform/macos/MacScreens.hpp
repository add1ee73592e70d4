// The attached displays. AppKit lists them (the shell hands its list on); everything else is done here.
#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "WindowEngine/services/Screens.hpp"

namespace quillo {

/// An NSScreen's own words: points, the origin at the bottom left of the primary screen, y growing upwards.
struct NativeScreen {
    Rect frame;
    Rect visibleFrame;
    double backingScale = 1;
    std::optional<std::uint32_t> displayNumber;  // the device description's "NSScreenNumber"
};

/// NSScreen's list, the primary screen first. Called on the main thread.
using NativeScreenList = std::function<std::vector<NativeScreen>()>;

class MacScreens final : public Screens {
  public:
    explicit MacScreens(NativeScreenList list) : list_(std::move(list)) {}
    std::vector<Screen> screens() override;
    ScreenState state() override;

  private:
    NativeScreenList list_;
};

}  // namespace quillo
