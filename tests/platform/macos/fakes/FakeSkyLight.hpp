// The fake window server's private functions, and the Dock's notification, over the simulated desktop. Their
// signatures are those that SkyLight.hpp decides on; that a Mac's are the same is not shown by any of this.
#pragma once
#include <cstdint>
#include <map>

#include "platform/macos/SkyLight.hpp"
#include "tests/platform/macos/fakes/FakeAnswer.hpp"
#include "tests/platform/macos/fakes/FakeMac.hpp"

namespace quillo::fakes {

class FakeSkyLight {
  public:
    /// Provides the functions; withdraw them from the FakeMac for a system without.
    explicit FakeSkyLight(FakeMac& mac);

    /// By the dictionaries' keys; "display" and "space" are whole dictionaries, and a function's name is its
    /// whole answer.
    Substitutes instead;
    /// All displays show one list of spaces: the primary display's.
    bool sharedSpaces = false;
    /// Ways to move a window that take every request and do nothing.
    bool managedMovesIgnored = false, workspaceMovesIgnored = false;
    int toggles = 0;  // of the overview

    /// What the bridge to the system's operation class does; for MacWindowServer.
    static bool moveThroughBridge(std::uint32_t window, std::uint64_t space);

    // For the functions.
    WindowServer& server() { return mac_.desktop().platform().windowServer; }
    CFArrayRef copyManagedDisplaySpaces();
    CFArrayRef copySpacesForWindows(CFArrayRef windows);
    bool isAnimating(CFStringRef displayIdentifier);
    std::int32_t typeOf(SpaceID space);
    void move(CFArrayRef windows, SpaceID space);
    void nameWorkspace(SpaceID space, std::int32_t workspace);
    void moveToWorkspace(WindowNumber window, std::int32_t workspace);
    CFTypeRef query(CFArrayRef windows);
    void notifyDock(CFStringRef notification);

  private:
    Value dictionaryOf(const DisplaySpaces& display) const;
    Value dictionaryOf(const Space& space) const;

    FakeMac& mac_;
    std::map<std::int32_t, SpaceID> workspaces_;
    bool overviewOpen_ = false;
};

}  // namespace quillo::fakes
