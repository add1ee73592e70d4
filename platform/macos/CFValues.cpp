#include "platform/macos/CFValues.hpp"

#include <chrono>
#include <cmath>

namespace quillo::cf {
namespace {

template <class T>
T typed(CFTypeRef value, CFTypeID type) {
    return value && CFGetTypeID(value) == type ? static_cast<T>(value) : nullptr;
}

}  // namespace

std::optional<std::string> text(CFTypeRef value) {
    const auto string = typed<CFStringRef>(value, CFStringGetTypeID());
    if (!string) return std::nullopt;
    const CFRange whole{0, CFStringGetLength(string)};
    constexpr UInt8 forHalfCharacters = '?';  // half of a surrogate pair has no UTF-8
    const auto convert = [&](UInt8* buffer, CFIndex size) {
        CFIndex used = 0;
        CFStringGetBytes(string, whole, kCFStringEncodingUTF8, forHalfCharacters, false, buffer, size, &used);
        return used;
    };
    std::string result(static_cast<std::size_t>(convert(nullptr, 0)), '\0');
    convert(reinterpret_cast<UInt8*>(result.data()), static_cast<CFIndex>(result.size()));
    return result;
}

std::optional<double> number(CFTypeRef value) {
    const auto number = typed<CFNumberRef>(value, CFNumberGetTypeID());
    if (!number) return std::nullopt;
    double result = 0;
    CFNumberGetValue(number, kCFNumberDoubleType, &result);  // a lossy conversion gives the nearest
    return result;
}

std::optional<std::int64_t> integer(CFTypeRef value) {
    const auto number = typed<CFNumberRef>(value, CFNumberGetTypeID());
    std::int64_t result = 0;
    if (!number || !CFNumberGetValue(number, kCFNumberSInt64Type, &result)) return std::nullopt;
    return result;
}

std::optional<bool> boolean(CFTypeRef value) {
    const auto boolean = typed<CFBooleanRef>(value, CFBooleanGetTypeID());
    return boolean ? std::optional(CFBooleanGetValue(boolean) != 0) : std::nullopt;
}

std::optional<Instant> date(CFTypeRef value) {
    const auto date = typed<CFDateRef>(value, CFDateGetTypeID());
    if (!date) return std::nullopt;
    // Of the nanoseconds since 1970, 64 bits hold some 292 years; a double far outside would not convert.
    constexpr double farthest = 9.2e9;
    const double seconds = CFDateGetAbsoluteTime(date) + kCFAbsoluteTimeIntervalSince1970;
    if (!(std::abs(seconds) < farthest)) return std::nullopt;
    return Instant(std::chrono::round<std::chrono::microseconds>(std::chrono::duration<double>(seconds)));
}

std::optional<std::string> uuid(CFTypeRef value) {
    const auto uuid = typed<CFUUIDRef>(value, CFUUIDGetTypeID());
    if (!uuid) return std::nullopt;
    return text(CFRef<CFStringRef>::created(CFUUIDCreateString(kCFAllocatorDefault, uuid)).get());
}

std::optional<std::string> address(CFTypeRef value) {
    const auto url = typed<CFURLRef>(value, CFURLGetTypeID());
    if (!url) return std::nullopt;
    const auto absolute = CFRef<CFURLRef>::created(CFURLCopyAbsoluteURL(url));
    return absolute ? text(CFURLGetString(absolute.get())) : std::nullopt;
}

std::optional<std::string_view> bytes(CFTypeRef value) {
    const auto data = typed<CFDataRef>(value, CFDataGetTypeID());
    if (!data) return std::nullopt;
    return std::string_view(reinterpret_cast<const char*>(CFDataGetBytePtr(data)),
                            static_cast<std::size_t>(CFDataGetLength(data)));
}

CFTypeRef lookup(CFTypeRef dictionary, CFStringRef key) {
    const auto entries = typed<CFDictionaryRef>(dictionary, CFDictionaryGetTypeID());
    return entries && key ? CFDictionaryGetValue(entries, key) : nullptr;
}

CFTypeRef lookup(CFTypeRef dictionary, std::string_view key) {
    return lookup(dictionary, makeText(key).get());
}

std::vector<CFTypeRef> items(CFTypeRef array) {
    std::vector<CFTypeRef> result;
    const auto values = typed<CFArrayRef>(array, CFArrayGetTypeID());
    if (!values) return result;
    const CFIndex count = CFArrayGetCount(values);
    for (CFIndex i = 0; i < count; ++i) {
        if (const CFTypeRef value = CFArrayGetValueAtIndex(values, i)) result.push_back(value);
    }
    return result;
}

bool isNull(CFTypeRef value) {
    return !value || CFGetTypeID(value) == CFNullGetTypeID();
}

CFRef<CFStringRef> makeText(std::string_view utf8) {
    return CFRef<CFStringRef>::created(
        CFStringCreateWithBytes(kCFAllocatorDefault, reinterpret_cast<const UInt8*>(utf8.data()),
                                static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, false));
}

CFRef<CFNumberRef> makeNumber(double value) {
    return CFRef<CFNumberRef>::created(CFNumberCreate(kCFAllocatorDefault, kCFNumberDoubleType, &value));
}

CFRef<CFNumberRef> makeInteger(std::int64_t value) {
    return CFRef<CFNumberRef>::created(CFNumberCreate(kCFAllocatorDefault, kCFNumberSInt64Type, &value));
}

CFBooleanRef makeBoolean(bool value) {
    return value ? kCFBooleanTrue : kCFBooleanFalse;
}

CFRef<CFDateRef> makeDate(Instant value) {
    const std::chrono::duration<double> seconds = value.time_since_epoch();
    return CFRef<CFDateRef>::created(
        CFDateCreate(kCFAllocatorDefault, seconds.count() - kCFAbsoluteTimeIntervalSince1970));
}

CFRef<CFDataRef> makeData(std::span<const std::byte> bytes) {
    return CFRef<CFDataRef>::created(CFDataCreate(kCFAllocatorDefault,
                                                  reinterpret_cast<const UInt8*>(bytes.data()),
                                                  static_cast<CFIndex>(bytes.size())));
}

CFRef<CFArrayRef> makeArray(std::span<const CFTypeRef> values) {
    std::vector<const void*> copy(values.begin(), values.end());  // the function wants them writable
    return CFRef<CFArrayRef>::created(CFArrayCreate(
        kCFAllocatorDefault, copy.data(), static_cast<CFIndex>(copy.size()), &kCFTypeArrayCallBacks));
}

CFRef<CFDictionaryRef> makeDictionary(std::span<const std::pair<CFTypeRef, CFTypeRef>> entries) {
    std::vector<const void*> keys;
    std::vector<const void*> values;
    for (const auto& [key, value] : entries) {
        keys.push_back(key);
        values.push_back(value);
    }
    return CFRef<CFDictionaryRef>::created(
        CFDictionaryCreate(kCFAllocatorDefault, keys.data(), values.data(), static_cast<CFIndex>(keys.size()),
                           &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
}

}  // namespace quillo::cf
