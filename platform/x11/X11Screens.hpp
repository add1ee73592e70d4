// The monitors of RandR 1.5. Points are pixels of the root window: where the primary monitor does not stand
// at the root's top left corner, neither does it in these coordinates.
#pragma once
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "WindowEngine/services/Screens.hpp"
#include "platform/x11/DesktopView.hpp"

namespace quillo::x11 {

/// Space that a panel keeps free along the edges of the root window.
struct Strut {
    Rect panel;                                                       // where the panel itself stands
    double left = 0, right = 0, top = 0, bottom = 0;                  // from the root's edges
    double leftStart = 0, leftEnd = 0, rightStart = 0, rightEnd = 0;  // the last pixel included
    double topStart = 0, topEnd = 0, bottomStart = 0, bottomEnd = 0;
};

/// The part of a monitor that panels leave free. A strut counts for the monitors its panel stands on only:
/// the one of a panel at an inner edge reaches across a whole neighbour.
Rect visiblePart(const Rect& monitor, std::span<const Strut> struts, Size root,
                 std::span<const Rect> monitors);

class X11Screens final : public Screens {
  public:
    /// `isLocked`: what others than the X server know of a lock.
    explicit X11Screens(DesktopView& view, std::function<bool()> isLocked = {})
        : view_(view), isLocked_(std::move(isLocked)) {}
    std::vector<Screen> screens() override;
    /// Without the panels, for which every window is looked at.
    std::uint64_t stamp() override;
    ScreenState state() override;

  private:
    struct Monitor {
        Rect frame;
        bool primary = false;
        std::string name;
        std::optional<std::string> edid;
    };

    std::vector<Monitor> monitors();
    std::vector<Strut> struts();
    Monitor wholeRoot();

    DesktopView& view_;
    std::function<bool()> isLocked_;
};

}  // namespace quillo::x11
