// The macOS core over the fakes of the system's functions, as a whole.
#pragma once
#include "platform/macos/MacAccessibility.hpp"
#include "platform/macos/fakes/FakeAccessibility.hpp"
#include "tests/platform/macos/MacTest.hpp"

namespace quillo {

class MacUnderTest {
  public:
    explicit MacUnderTest(SimulatedDesktop& desktop) : simulated_(desktop.platform()), mac_(desktop) {}

    /// The services of the core where there are any, for the rest the simulated ones.
    Platform platform() {
        return {simulated_.executor, accessibility_,     simulated_.windowServer, simulated_.applications,
                simulated_.screens,  simulated_.scripts, simulated_.log};
    }

  private:
    const LeakCheck leaks_;  // first: it looks when all else is gone
    const Platform simulated_;
    fakes::FakeMac mac_;
    // A part provides its private functions when it is first asked for: before the core looks for them.
    fakes::FakeAccessibility& framework_ = mac_.part<fakes::FakeAccessibility>();
    MacAccessibility accessibility_{&fakes::FakeMac::symbol};
};

}  // namespace quillo
