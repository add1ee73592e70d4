// The windows of an EWMH desktop as elements with attributes.
#pragma once
#include <map>
#include <unordered_map>

#include "WindowEngine/services/AccessibilityService.hpp"
#include "platform/linux/WindowDocuments.hpp"
#include "platform/x11/DesktopView.hpp"
#include "platform/x11/WindowMover.hpp"
#include "platform/x11/X11Screens.hpp"

namespace quillo::x11 {

class X11Accessibility final : public AccessibilityService {
  public:
    X11Accessibility(DesktopView& view, X11Screens& screens, X11Changes& changes)
        : view_(view), screens_(screens), mover_(view, changes) {}

    bool trusted() override;
    Capability access() override { return view_.access(); }
    Capability folders() override;
    bool listsTabsAsWindows() override { return false; }
    bool movesTogether() override { return true; }
    void prompt() override {}  // there is no permission to ask for
    Element application(ProcessID pid) override;
    void setMessagingTimeout(const Element&, double) override {}  // only the X server is ever waited for
    std::vector<std::vector<Attribute>> read(std::span<const AttributeRequest> requests) override;
    Task<bool> askPatiently() override;
    /// AXMinimized, AXFullScreen, AXPosition and AXSize of a window.
    AccessibilityCode write(const Element& element, std::string_view name,
                            const AttributeValue& value) override;
    /// A frame that fills what panels leave of a monitor is that of a maximized window, and the window is
    /// maximized there, so that ending it gives the window the frame it had before.
    FrameWrite writeFrame(const Element& window, const Rect& frame) override;
    /// AXRaise of a window.
    AccessibilityCode perform(const Element& element, std::string_view action) override;
    std::optional<WindowNumber> windowNumber(const Element& window) override;
    Capability remoteTokens() override {
        return Capability::unavailable("X11 lists every window: there is nothing to find by tokens.");
    }
    std::optional<Element> elementFromToken(std::span<const std::byte, 20>) override { return std::nullopt; }
    Capability placement(const Element& window) override;
    Task<bool> makeMovable(Element window) override;
    Task<void> settleInPlace(Element window) override;

  private:
    using Readings = std::unordered_map<xcb_window_t, WindowReading>;

    /// The documents of those of these windows that have one.
    std::unordered_map<xcb_window_t, Url> documents(const Readings& windows);
    bool isFirstOfItsProcess(const WindowReading& window);
    Attribute applicationAttribute(ProcessID pid, std::string_view name);
    bool isHere(const WindowReading& window);  // on the current desktop
    std::optional<WindowReading> readingOf(const Element& window);

    const std::vector<Screen>& screensLately();
    std::int32_t maximizeAt(const WindowReading& window, const Rect& area);

    DesktopView& view_;
    X11Screens& screens_;
    std::vector<Screen> screensSeen_;
    TimePoint screensSeenAt_{};
    WindowMover mover_;
    WindowDocuments documents_;
};

}  // namespace quillo::x11
