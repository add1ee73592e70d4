// The macOS core over the fakes of the system's functions, as a whole.
#pragma once
#include "WindowEngine/restore/DocumentSafety.hpp"
#include "platform/macos/MacAccessibility.hpp"
#include "platform/macos/MacApplications.hpp"
#include "platform/macos/MacScreens.hpp"
#include "platform/macos/MacWindowServer.hpp"
#include "tests/platform/macos/MacTest.hpp"
#include "tests/platform/macos/fakes/FakeAccessibility.hpp"
#include "tests/platform/macos/fakes/FakeDisplays.hpp"
#include "tests/platform/macos/fakes/FakeSkyLight.hpp"
#include "tests/platform/macos/fakes/FakeWorkspace.hpp"

namespace quillo {

/// Documents of a simulated desktop do not stand on this machine's disk.
inline Result<Url> openableByName(const Url& document, WorkspaceShell&) {
    const auto path = document.filePath();
    if (!path || DocumentSafety::isProgramFile(*path) || DocumentSafety::isProgramFolder(*path))
        return fail(ErrorKind::refused, "opening it could run a program");
    return document.standardized();
}

class MacUnderTest {
  public:
    explicit MacUnderTest(SimulatedDesktop& desktop)
        : simulated_(desktop.platform()), mac_(desktop), workspace_(desktop) {}

    /// The services of the core where there are any, for the rest the simulated ones.
    Platform platform() {
        return {simulated_.executor, accessibility_,          windowServer_, applications_, screens_,
                simulated_.scripts,  simulated_.browserFiles, simulated_.log};
    }

  private:
    const LeakCheck leaks_;  // first: it looks when all else is gone
    const Platform simulated_;
    fakes::FakeMac mac_;
    // A part provides its private functions when it is first asked for: before the core looks for them.
    fakes::FakeAccessibility& framework_ = mac_.part<fakes::FakeAccessibility>();
    fakes::FakeSkyLight& skyLight_ = mac_.part<fakes::FakeSkyLight>();
    MacAccessibility accessibility_{&fakes::FakeMac::symbol,
                                    [this](ProcessID pid) { return applications_.family(pid); }};
    fakes::FakeWorkspace workspace_;
    MacApplications applications_{simulated_.executor, workspace_, &openableByName};
    MacScreens screens_{[this] { return mac_.part<fakes::FakeDisplays>().screens(); }};
    MacWindowServer windowServer_{
        {simulated_.executor, accessibility_, applications_, screens_}, &fakes::FakeMac::symbol, nullptr};
};

}  // namespace quillo
