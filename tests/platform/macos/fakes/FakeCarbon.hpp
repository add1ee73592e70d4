// The fake event manager's hot keys, and a keyboard whose layout a test lays out.
#pragma once
#include <Carbon/Carbon.h>

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "platform/macos/CFRef.hpp"
#include "tests/platform/macos/fakes/FakeMac.hpp"

namespace quillo::fakes {

class HotKey;
class EventHandler;

class FakeCarbon {
  public:
    using Combination = std::pair<UInt32, UInt32>;  // key code, modifiers

    explicit FakeCarbon(FakeMac&) {}

    /// A press of the combination by the person, or an event that names a hot key (`hasParameter`: as it
    /// should); what the handlers answered.
    OSStatus press(UInt32 keyCode, UInt32 modifiers);
    OSStatus deliver(EventHotKeyID id, bool hasParameter = true);

    std::set<Combination> taken{};  // held by other programs for themselves
    OSStatus handlerFailure = noErr;
    std::vector<HotKey*> hotKeys{};
    std::vector<EventHandler*> handlers{};

    struct Key {
        std::u16string writes{};
        bool dead = false;  // and writes it only where dead keys are not wanted
    };
    std::map<UInt16, Key> keys{};
    enum class Layout { data, none, noSource } layout = Layout::data;
};

}  // namespace quillo::fakes
