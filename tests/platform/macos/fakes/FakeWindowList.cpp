#include "tests/platform/macos/fakes/FakeWindowList.hpp"

#include "platform/macos/CFValues.hpp"
#include "tests/platform/macos/fakes/FakeCoreFoundation.hpp"
#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo::fakes {

Value FakeWindowList::dictionaryOf(const WindowListEntry& entry) const {
    const auto keyed = [&](CFStringRef key, Value value) {
        return std::pair(key, orInstead(instead, cf::text(key).value(), std::move(value)));
    };
    static const CFStringRef x = immortalText("X"), y = immortalText("Y"), width = immortalText("Width"),
                             height = immortalText("Height");
    const Rect& frame = entry.bounds;
    Value bounds =
        dictionaryValue({keyed(x, realValue(frame.x)), keyed(y, realValue(frame.y)),
                         keyed(width, realValue(frame.width)), keyed(height, realValue(frame.height))});
    return orInstead(instead, "window",
                     dictionaryValue({keyed(kCGWindowNumber, numberValue(entry.number)),
                                      keyed(kCGWindowOwnerPID, numberValue(entry.ownerPid)),
                                      keyed(kCGWindowLayer, numberValue(entry.layer)),
                                      keyed(kCGWindowBounds, std::move(bounds))}));
}

CFArrayRef FakeWindowList::copy() {
    std::vector<Value> windows;
    for (const WindowListEntry& entry : mac_.desktop().platform().windowServer.windowList())
        windows.push_back(dictionaryOf(entry));
    return handedOut<CFArrayRef>(orInstead(instead, "list", arrayValue(windows)));
}

}  // namespace quillo::fakes

using namespace quillo::fakes;  // what follows is the system's, and global

const CFStringRef kCGWindowNumber = immortalText("kCGWindowNumber");
const CFStringRef kCGWindowOwnerPID = immortalText("kCGWindowOwnerPID");
const CFStringRef kCGWindowLayer = immortalText("kCGWindowLayer");
const CFStringRef kCGWindowBounds = immortalText("kCGWindowBounds");

CFArrayRef CGWindowListCopyWindowInfo(CGWindowListOption option, CGWindowID relativeToWindow) {
    // Only the request that is made of it is answered.
    if (option != (kCGWindowListOptionAll | kCGWindowListExcludeDesktopElements) ||
        relativeToWindow != kCGNullWindowID)
        fail("a list of windows that the fake does not know");
    return FakeMac::onItsThread().part<FakeWindowList>().copy();
}
