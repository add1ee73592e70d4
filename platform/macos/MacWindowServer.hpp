// Windows from the window server's public list; desktops, and what stands on them, through its private
// functions (SkyLight). Where those are missing or answer nothing, no desktops are told of and nothing is
// moved.
//
// The server has no answer about many windows that says which of them it concerns: facts() asks it twice for
// each window and once for each space. These are calls to the server, not to applications, and none waits.
#pragma once
#include "WindowEngine/services/Applications.hpp"
#include "WindowEngine/services/Screens.hpp"
#include "WindowEngine/services/WindowServer.hpp"
#include "WindowEngine/support/Executor.hpp"
#include "platform/macos/SkyLight.hpp"

namespace quillo {

class MacWindowServer final : public WindowServer {
  public:
    /// Moves a window through an operation class of the system; false where that was not asked.
    using MoveBridge = bool (*)(std::uint32_t window, std::uint64_t space);

    /// What stands beside it in the same layer.
    struct Neighbours {
        Executor& executor;
        AccessibilityService& accessibility;
        Applications& applications;
        Screens& screens;
    };
    /// `bridge` is null where the system has no such class.
    MacWindowServer(Neighbours neighbours, SymbolLookup lookup, MoveBridge bridge)
        : neighbours_(neighbours),
          skyLight_(lookup),
          bridge_(bridge),
          elementsHaveNumbers_(lookup(hiServices::library, hiServices::getWindow) != nullptr) {}

    std::vector<WindowListEntry> windowList() override;
    std::vector<DisplaySpaces> displaySpaces() override;
    std::vector<WindowFacts> facts(std::span<const WindowNumber> numbers) override;
    Capability spaces() override;
    Capability desktopCreation() override;
    bool isAnimating(std::string_view displayID) override;
    /// Asks in each way there is, one after the other, until the window stands there.
    Result<void> moveWindow(WindowNumber number, SpaceID space) override;
    bool createsDesktopsDirectly() override { return false; }
    Result<void> createDesktop(std::string_view displayID) override;
    bool openOverview() override;
    void closeOverview() override;

  private:
    bool isKnown(WindowNumber number) const;
    bool isDesktop(SpaceID space) const;
    bool standsOn(WindowNumber number, SpaceID space) const;
    bool overviewShows();
    bool isOverviewOpening() const;

    Neighbours neighbours_;
    SkyLight skyLight_;
    MoveBridge bridge_;
    bool elementsHaveNumbers_;
    std::optional<TimePoint> overviewAskedFor_;  // empty when it is not ours to close
};

}  // namespace quillo
