// Hands every call on to another service: a fault test overrides the one it needs.
#pragma once
#include "WindowEngine/services/WindowServer.hpp"

namespace quillo {

class ForwardingWindowServer : public WindowServer {
  public:
    explicit ForwardingWindowServer(WindowServer& target) : target_(target) {}

    std::vector<WindowListEntry> windowList() override { return target_.windowList(); }
    std::vector<DisplaySpaces> displaySpaces() override { return target_.displaySpaces(); }
    std::vector<WindowFacts> facts(std::span<const WindowNumber> numbers) override {
        return target_.facts(numbers);
    }
    std::optional<WindowNumber> windowInFront() override { return target_.windowInFront(); }
    std::vector<SpaceID> spacesInFront() override { return target_.spacesInFront(); }
    std::uint64_t stamp() override { return target_.stamp(); }
    std::string noWindows() override { return target_.noWindows(); }
    Capability spaces() override { return target_.spaces(); }
    Capability desktopCreation() override { return target_.desktopCreation(); }
    bool isAnimating(std::string_view displayID) override { return target_.isAnimating(displayID); }
    Result<void> moveWindow(WindowNumber number, SpaceID space) override {
        return target_.moveWindow(number, space);
    }
    bool createsDesktopsDirectly() override { return target_.createsDesktopsDirectly(); }
    Result<void> createDesktop(std::string_view displayID) override {
        return target_.createDesktop(displayID);
    }
    bool openOverview() override { return target_.openOverview(); }
    void closeOverview() override { target_.closeOverview(); }
    std::unique_ptr<ChangeWatch> watch(std::optional<WindowNumber> window) override {
        return target_.watch(window);
    }

  private:
    WindowServer& target_;
};

}  // namespace quillo
