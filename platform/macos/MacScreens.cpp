#include "platform/macos/MacScreens.hpp"

#include <ApplicationServices/ApplicationServices.h>
#include <fmt/format.h>

#include <algorithm>

#include "platform/macos/CFRef.hpp"
#include "platform/macos/CFValues.hpp"

namespace quillo {
namespace {

/// From the bottom left of the primary screen, whose upper edge is at `top`, to its top left.
Rect flipped(const Rect& rect, double top) {
    return {rect.x, top - rect.maxY(), rect.width, rect.height};
}

/// Null comes for a display that went away since it was listed.
std::optional<std::string> displayUuid(std::uint32_t displayNumber) {
    const auto uuid = CFRef<CFUUIDRef>::created(CGDisplayCreateUUIDFromDisplayID(displayNumber));
    return cf::uuid(uuid.get());
}

/// Twins share it: what a display says of itself, and serial numbers are often 0.
std::string modelOf(std::uint32_t displayNumber) {
    return fmt::format("{:08X}-{:08X}-{}", CGDisplayVendorNumber(displayNumber),
                       CGDisplayModelNumber(displayNumber), CGDisplaySerialNumber(displayNumber));
}

bool isTaken(const std::vector<Screen>& screens, const std::string& id) {
    return std::ranges::find(screens, id, &Screen::stableID) != screens.end();
}

}  // namespace

std::vector<Screen> MacScreens::screens() {
    const std::vector<NativeScreen> natives = list_();
    std::vector<Screen> screens;
    for (const NativeScreen& native : natives) {
        const double top = natives.front().frame.maxY();
        auto id = native.displayNumber ? displayUuid(*native.displayNumber) : std::nullopt;
        if (id && isTaken(screens, *id)) id.reset();  // it would name two screens
        screens.push_back(
            {.stableID = std::move(id),
             .frame = flipped(native.frame, top),
             .visibleFrame = flipped(native.visibleFrame, top),
             .scale = native.backingScale,
             .model = native.displayNumber ? std::optional(modelOf(*native.displayNumber)) : std::nullopt});
    }
    return screens;
}

ScreenState MacScreens::state() {
    const auto session = CFRef<CFDictionaryRef>::created(CGSessionCopyCurrentDictionary());
    const auto says = [&](std::string_view key) { return cf::boolean(cf::lookup(session.get(), key)); };
    // The second is not documented; where it goes away, a locked screen is only known to be blank.
    const bool locked = says("kCGSSessionOnConsoleKey") == false || says("CGSSessionScreenIsLocked") == true;
    if (locked) return ScreenState::locked;
    return CGDisplayIsAsleep(CGMainDisplayID()) != 0 ? ScreenState::blank : ScreenState::shown;
}

}  // namespace quillo
