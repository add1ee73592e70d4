// Core Foundation values in our own types and back. Readers take any object, null too: what is not of the
// expected type is absent.
#pragma once
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "WindowEngine/support/Instant.hpp"
#include "platform/macos/CFRef.hpp"

namespace quillo::cf {

std::optional<std::string> text(CFTypeRef value);      // of a CFString; UTF-8
std::optional<double> number(CFTypeRef value);         // of a CFNumber
std::optional<std::int64_t> integer(CFTypeRef value);  // of a CFNumber that is a whole one in range
std::optional<bool> boolean(CFTypeRef value);          // of a CFBoolean
std::optional<Instant> date(CFTypeRef value);          // of a CFDate; in microseconds, as exact as it holds
std::optional<std::string> uuid(CFTypeRef value);      // of a CFUUID; upper case
std::optional<std::string> address(CFTypeRef value);   // of a CFURL; absolute

/// Of a CFData, which keeps them.
std::optional<std::string_view> bytes(CFTypeRef value);

/// An integer that fits the type, such as a process or window number.
template <class Integer>
std::optional<Integer> integerAs(CFTypeRef value) {
    const auto whole = integer(value);
    return whole && std::in_range<Integer>(*whole) ? std::optional(static_cast<Integer>(*whole))
                                                   : std::nullopt;
}

/// The object under a key, which the dictionary keeps; null when it is none or has no such key.
CFTypeRef lookup(CFTypeRef dictionary, CFStringRef key);
CFTypeRef lookup(CFTypeRef dictionary, std::string_view key);
/// The objects of an array, which the array keeps; empty when it is none. None of them is null.
std::vector<CFTypeRef> items(CFTypeRef array);
bool isNull(CFTypeRef value);  // a null pointer or the null object

CFRef<CFStringRef> makeText(std::string_view utf8);  // null when it is not UTF-8
CFRef<CFNumberRef> makeNumber(double value);
CFRef<CFNumberRef> makeInteger(std::int64_t value);
CFBooleanRef makeBoolean(bool value);  // needs no release
CFRef<CFDateRef> makeDate(Instant value);
CFRef<CFDataRef> makeData(std::span<const std::byte> bytes);
CFRef<CFArrayRef> makeArray(std::span<const CFTypeRef> values);
CFRef<CFDictionaryRef> makeDictionary(std::span<const std::pair<CFTypeRef, CFTypeRef>> entries);

}  // namespace quillo::cf
