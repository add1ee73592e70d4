// Windows and desktops as the window manager tells of them. EWMH has one list of desktops for all displays; a
// desktop's space is its number plus one.
#pragma once
#include "WindowEngine/services/Screens.hpp"
#include "WindowEngine/services/WindowServer.hpp"
#include "platform/x11/DesktopView.hpp"
#include "platform/x11/X11Changes.hpp"

namespace quillo::x11 {

class X11WindowServer final : public WindowServer {
  public:
    X11WindowServer(DesktopView& view, Screens& screens, X11Changes& changes)
        : view_(view), screens_(screens), changes_(changes) {}

    std::vector<WindowListEntry> windowList() override;
    std::vector<DisplaySpaces> displaySpaces() override;
    std::vector<WindowFacts> facts(std::span<const WindowNumber> numbers) override;
    std::optional<WindowNumber> windowInFront() override;
    std::vector<SpaceID> spacesInFront() override;
    std::uint64_t stamp() override;
    std::string noWindows() override {
        return "no accessible windows appeared; windows on other desktops may be unavailable";
    }
    Capability spaces() override;
    Capability desktopCreation() override;
    bool isAnimating(std::string_view displayID) override;
    Result<void> moveWindow(WindowNumber number, SpaceID space) override;
    bool createsDesktopsDirectly() override { return true; }
    Result<void> createDesktop(std::string_view displayID) override;
    bool openOverview() override { return false; }  // desktops are created directly
    void closeOverview() override {}
    std::unique_ptr<ChangeWatch> watch(std::optional<WindowNumber> window) override {
        return changes_.watch(window.value_or(view_.connection().root()));
    }

  private:
    DesktopView& view_;
    Screens& screens_;
    X11Changes& changes_;
};

}  // namespace quillo::x11
