#include "platform/macos/MacKeyboardLayout.hpp"

#include <Carbon/Carbon.h>

#include <algorithm>
#include <array>

#include "platform/macos/CFValues.hpp"

namespace quillo {
namespace {

constexpr std::uint32_t lastKeyCode = 127;

/// Such as what Return, the arrows and F1 give.
bool isControl(char character) {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F;
}

/// `layout` is the bytes of the resource.
std::string translate(std::string_view layout, std::uint32_t keyCode) {
    std::array<UniChar, 8> characters{};
    UniCharCount count = 0;
    UInt32 deadKeys = 0;
    const OSStatus status =
        UCKeyTranslate(reinterpret_cast<const UCKeyboardLayout*>(layout.data()), static_cast<UInt16>(keyCode),
                       kUCKeyActionDown, 0, LMGetKbdType(), kUCKeyTranslateNoDeadKeysMask, &deadKeys,
                       characters.size(), &count, characters.data());
    if (status != noErr) return {};
    const auto text = CFRef<CFStringRef>::created(CFStringCreateWithCharacters(
        kCFAllocatorDefault, characters.data(), static_cast<CFIndex>(std::min(count, characters.size()))));
    return cf::text(text.get()).value_or("");
}

}  // namespace

std::optional<std::uint32_t> MacKeyboardLayout::keyCode(std::uint32_t nativeKeyCode) const {
    return nativeKeyCode <= lastKeyCode ? std::optional(nativeKeyCode) : std::nullopt;
}

std::string MacKeyboardLayout::characters(std::uint32_t keyCode) const {
    if (keyCode > lastKeyCode) return {};
    // The layout behind an input method too, which has none of its own.
    const auto source = CFRef<TISInputSourceRef>::created(TISCopyCurrentKeyboardLayoutInputSource());
    if (!source) return {};
    const auto layout = cf::bytes(TISGetInputSourceProperty(source.get(), kTISPropertyUnicodeKeyLayoutData));
    std::string written = layout ? translate(*layout, keyCode) : std::string();
    return std::ranges::any_of(written, isControl) ? std::string() : written;
}

}  // namespace quillo
