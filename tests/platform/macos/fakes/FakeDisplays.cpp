#include "tests/platform/macos/fakes/FakeDisplays.hpp"

#include <ColorSync/ColorSync.h>
#include <CoreGraphics/CoreGraphics.h>

#include <algorithm>
#include <array>
#include <functional>

#include "WindowEngine/support/Uuid.hpp"
#include "platform/macos/CFValues.hpp"
#include "tests/platform/macos/fakes/FakeAnswer.hpp"
#include "tests/platform/macos/fakes/FakeCoreFoundation.hpp"
#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo::fakes {
namespace {

constexpr std::uint32_t firstNumber = 69734;  // displays are not numbered from 0

/// From the top left of the primary screen, which is `height` high, to its bottom left.
Rect unflipped(const Rect& rect, double height) {
    return {rect.x, height - rect.maxY(), rect.width, rect.height};
}

}  // namespace

std::string FakeDisplays::uuidOf(std::string_view sceneName) {
    std::array<std::uint8_t, 16> bytes{};
    if (sceneName.size() > bytes.size()) fail("a display's name that does not fit a UUID");
    std::ranges::copy(sceneName, bytes.begin());
    return Uuid::fromBytes(bytes).upper();
}

std::string FakeDisplays::sceneNameOf(std::string_view uuid) {
    const auto parsed = Uuid::parse(uuid);
    if (!parsed) return {};
    std::string name(parsed->bytes().begin(), parsed->bytes().end());
    return name.substr(0, name.find('\0'));
}

std::uint32_t FakeDisplays::numberOf(const std::string& sceneName) {
    const auto known = std::ranges::find(names_, sceneName);
    const auto place = static_cast<std::uint32_t>(known - names_.begin());
    if (known == names_.end()) names_.push_back(sceneName);
    return firstNumber + place;
}

std::string FakeDisplays::sceneNameOf(std::uint32_t displayNumber) {
    const std::size_t place = displayNumber - firstNumber;
    if (place >= names_.size() || !mac_.desktop().world().display(names_[place])) return {};
    return names_[place];
}

std::uint32_t FakeDisplays::mainNumber() {
    const auto screens = mac_.desktop().platform().screens.screens();
    return screens.empty() ? 0 : numberOf(*screens.front().stableID);
}

std::vector<NativeScreen> FakeDisplays::screens() {
    const auto screens = mac_.desktop().platform().screens.screens();
    std::vector<NativeScreen> natives;
    for (const Screen& screen : screens) {
        const double height = screens.front().frame.height;
        natives.push_back({.frame = unflipped(screen.frame, height),
                           .visibleFrame = unflipped(screen.visibleFrame, height),
                           .backingScale = screen.scale,
                           .displayNumber = numberOf(*screen.stableID)});
    }
    return natives;
}

}  // namespace quillo::fakes

CFUUIDRef CGDisplayCreateUUIDFromDisplayID(uint32_t displayID) {
    using namespace quillo;
    auto& displays = fakes::FakeMac::onItsThread().part<fakes::FakeDisplays>();
    const std::string name = displays.sceneNameOf(displayID);
    if (name.empty() || std::ranges::find(displays.withoutUuid, name) != displays.withoutUuid.end())
        return nullptr;
    const auto text = cf::makeText(fakes::FakeDisplays::uuidOf(name));
    return CFUUIDCreateFromString(kCFAllocatorDefault, text.get());
}

namespace quillo::fakes {
namespace {

Value booleanValue(bool value) {
    return Value::retained(value ? kCFBooleanTrue : kCFBooleanFalse);
}

ScreenState shownState() {
    return FakeMac::onItsThread().desktop().platform().screens.state();
}

}  // namespace
}  // namespace quillo::fakes

CFDictionaryRef CGSessionCopyCurrentDictionary() {
    using namespace quillo::fakes;
    static const CFStringRef onConsole = immortalText("kCGSSessionOnConsoleKey"),
                             isLocked = immortalText("CGSSessionScreenIsLocked");
    auto& displays = FakeMac::onItsThread().part<FakeDisplays>();
    std::vector<std::pair<CFStringRef, Value>> entries{{onConsole, booleanValue(displays.onConsole)}};
    // As the system does: there while it is locked, else missing.
    if (shownState() == quillo::ScreenState::locked) entries.emplace_back(isLocked, booleanValue(true));
    return handedOut<CFDictionaryRef>(dictionaryValue(entries));
}

CGDirectDisplayID CGMainDisplayID() {
    return quillo::fakes::FakeMac::onItsThread().part<quillo::fakes::FakeDisplays>().mainNumber();
}

uint32_t CGDisplayIsAsleep(CGDirectDisplayID display) {
    using namespace quillo::fakes;
    if (display != CGMainDisplayID()) fail("a display that is not the main one");
    return shownState() == quillo::ScreenState::blank ? 1 : 0;
}

namespace quillo::fakes {
namespace {

/// Of its model in the scene; of one that has none, of the display itself. 0 for one that is gone.
std::uint32_t saidBy(CGDirectDisplayID number) {
    auto& mac = FakeMac::onItsThread();
    const std::string name = mac.part<FakeDisplays>().sceneNameOf(number);
    const auto* display = mac.desktop().world().display(name);
    if (!display) return 0;
    return static_cast<std::uint32_t>(std::hash<std::string>()(display->scene.model.value_or(name)));
}

}  // namespace
}  // namespace quillo::fakes

uint32_t CGDisplayVendorNumber(CGDirectDisplayID display) {
    return quillo::fakes::saidBy(display) & 0xFFFFU;
}

uint32_t CGDisplayModelNumber(CGDirectDisplayID display) {
    return quillo::fakes::saidBy(display) >> 16U;
}

uint32_t CGDisplaySerialNumber(CGDirectDisplayID) {
    return 0;  // as many displays have it
}
