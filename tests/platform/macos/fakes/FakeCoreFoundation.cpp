#include "tests/platform/macos/fakes/FakeCoreFoundation.hpp"

#include <unicode/utf16.h>
#include <unicode/utf8.h>

#include <cmath>
#include <cstring>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "WindowEngine/support/Text.hpp"
#include "WindowEngine/support/Url.hpp"
#include "WindowEngine/support/Uuid.hpp"
#include "platform/macos/CFRef.hpp"
#include "platform/macos/CFValues.hpp"
#include "tests/platform/macos/fakes/FakeObject.hpp"

namespace quillo::fakes {
namespace {

/// An object that holds one value: equal when the values are.
template <class Value, TypeName name>
class Box final : public Typed<name> {
  public:
    explicit Box(Value held, Lifetime lifetime = Lifetime::counted)
        : Typed<name>(lifetime), value(std::move(held)) {}
    bool equals(const Object& other) const override { return value == static_cast<const Box&>(other).value; }

    const Value value;
};

/// Whole, or a floating-point number; 1 equals 1.0.
struct Number {
    std::variant<std::int64_t, double> value;
    double real() const {
        return std::visit([](auto number) { return static_cast<double>(number); }, value);
    }
    bool operator==(const Number& other) const { return value == other.value || real() == other.real(); }
};

using StringBox = Box<std::u16string, "CFString">;
using NumberBox = Box<Number, "CFNumber">;
using BooleanBox = Box<bool, "CFBoolean">;
using NullBox = Box<std::monostate, "CFNull">;
using DataBox = Box<std::vector<UInt8>, "CFData">;
using DateBox = Box<CFAbsoluteTime, "CFDate">;
using UuidBox = Box<Uuid, "CFUUID">;

/// Lends its text out, as CFURLGetString does.
class UrlObject final : public Typed<"CFURL"> {
  public:
    explicit UrlObject(CFRef<CFStringRef> held) : text(std::move(held)) {}
    bool equals(const Object& other) const override {
        return CFEqual(text.get(), static_cast<const UrlObject&>(other).text.get()) != 0;
    }

    const CFRef<CFStringRef> text;
};

std::u16string utf16(std::string_view utf8) {
    std::u16string units;
    const auto length = static_cast<std::int32_t>(utf8.size());
    for (std::int32_t at = 0; at < length;) {
        UChar32 character = 0;
        U8_NEXT(utf8.data(), at, length, character);
        char16_t pair[2];
        std::size_t count = 0;
        U16_APPEND_UNSAFE(pair, count, character);
        units.append(pair, count);
    }
    return units;
}

/// Half of a pair becomes the loss byte; at 0 the conversion ends there. Returns the units converted.
std::size_t appendUtf8(std::string& bytes, std::u16string_view units, UInt8 lossByte) {
    std::size_t at = 0;
    while (at < units.size()) {
        const std::size_t before = at;
        UChar32 character = 0;
        U16_NEXT(units.data(), at, units.size(), character);
        if (U16_IS_SURROGATE(character)) {
            if (lossByte == 0) return before;
            bytes += static_cast<char>(lossByte);
            continue;
        }
        char encoded[4];
        std::size_t count = 0;
        U8_APPEND_UNSAFE(encoded, count, character);
        bytes.append(encoded, count);
    }
    return at;
}

}  // namespace

CFStringRef immortalText(std::string_view ascii) {
    return (new StringBox(utf16(ascii), Lifetime::immortal))->as<CFStringRef>();
}

CFStringRef createRawText(std::u16string_view units) {
    return (new StringBox(std::u16string(units)))->as<CFStringRef>();
}

}  // namespace quillo::fakes

using namespace quillo::fakes;  // the functions below are global C functions

const CFAllocatorRef kCFAllocatorDefault = nullptr;
const CFNullRef kCFNull = (new NullBox({}, Lifetime::immortal))->as<CFNullRef>();
const CFBooleanRef kCFBooleanTrue = (new BooleanBox(true, Lifetime::immortal))->as<CFBooleanRef>();
const CFBooleanRef kCFBooleanFalse = (new BooleanBox(false, Lifetime::immortal))->as<CFBooleanRef>();
const CFTimeInterval kCFAbsoluteTimeIntervalSince1970 = 978307200.0;

CFTypeRef CFRetain(CFTypeRef object) {
    objectAt(object).retain();
    return object;
}

void CFRelease(CFTypeRef object) {
    objectAt(object).release();
}

CFTypeID CFGetTypeID(CFTypeRef object) {
    return objectAt(object).type();
}

Boolean CFEqual(CFTypeRef one, CFTypeRef other) {
    const Object& left = objectAt(one);
    const Object& right = objectAt(other);
    return &left == &right || (left.type() == right.type() && left.equals(right));
}

CFTypeID CFNullGetTypeID() {
    return NullBox::typeID();
}

CFTypeID CFStringGetTypeID() {
    return StringBox::typeID();
}

CFIndex CFStringGetLength(CFStringRef string) {
    return static_cast<CFIndex>(objectOf<StringBox>(string).value.size());
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, const UInt8* bytes, CFIndex length,
                                    CFStringEncoding encoding, Boolean) {
    if (encoding != kCFStringEncodingUTF8) fail("an encoding that the fake does not know");
    const std::string_view text(reinterpret_cast<const char*>(bytes), static_cast<std::size_t>(length));
    return quillo::text::isValidUtf8(text) ? (new StringBox(utf16(text)))->as<CFStringRef>() : nullptr;
}

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, const UniChar* characters, CFIndex count) {
    return createRawText(std::u16string(characters, characters + count));
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding, UInt8 lossByte,
                         Boolean, UInt8* buffer, CFIndex maximumLength, CFIndex* usedLength) {
    const std::u16string& units = objectOf<StringBox>(string).value;
    if (encoding != kCFStringEncodingUTF8) fail("an encoding that the fake does not know");
    if (range.location != 0 || range.length != static_cast<CFIndex>(units.size()))
        fail("a part of a string, which the fake does not give");
    std::string bytes;
    const std::size_t converted = appendUtf8(bytes, units, lossByte);
    if (buffer && static_cast<CFIndex>(bytes.size()) > maximumLength)
        fail("a buffer too small for its string");
    if (buffer) std::memcpy(buffer, bytes.data(), bytes.size());
    if (usedLength) *usedLength = static_cast<CFIndex>(bytes.size());
    return static_cast<CFIndex>(converted);
}

CFTypeID CFBooleanGetTypeID() {
    return BooleanBox::typeID();
}

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
    return objectOf<BooleanBox>(boolean).value;
}

CFTypeID CFNumberGetTypeID() {
    return NumberBox::typeID();
}

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
    Number number;
    if (type == kCFNumberSInt64Type)
        number.value = *static_cast<const std::int64_t*>(value);
    else if (type == kCFNumberDoubleType)
        number.value = *static_cast<const double*>(value);
    else
        fail("a kind of number that the fake does not know");
    return (new NumberBox(number))->as<CFNumberRef>();
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
    const Number& held = objectOf<NumberBox>(number).value;
    const auto* whole = std::get_if<std::int64_t>(&held.value);
    const double real = held.real();
    if (type == kCFNumberDoubleType) {
        std::memcpy(value, &real, sizeof real);
        return !whole || static_cast<std::int64_t>(real) == *whole;
    }
    if (type != kCFNumberSInt64Type) fail("a kind of number that the fake does not know");
    const bool exact = whole || (real >= -0x1p63 && real < 0x1p63 && real == std::floor(real));
    const std::int64_t converted = whole ? *whole : exact ? static_cast<std::int64_t>(real) : 0;
    std::memcpy(value, &converted, sizeof converted);
    return exact;
}

CFTypeID CFDataGetTypeID() {
    return DataBox::typeID();
}

CFDataRef CFDataCreate(CFAllocatorRef, const UInt8* bytes, CFIndex length) {
    return (new DataBox(std::vector<UInt8>(bytes, bytes + length)))->as<CFDataRef>();
}

CFIndex CFDataGetLength(CFDataRef data) {
    return static_cast<CFIndex>(objectOf<DataBox>(data).value.size());
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
    return objectOf<DataBox>(data).value.data();
}

CFTypeID CFDateGetTypeID() {
    return DateBox::typeID();
}

CFDateRef CFDateCreate(CFAllocatorRef, CFAbsoluteTime time) {
    return (new DateBox(time))->as<CFDateRef>();
}

CFAbsoluteTime CFDateGetAbsoluteTime(CFDateRef date) {
    return objectOf<DateBox>(date).value;
}

CFTypeID CFUUIDGetTypeID() {
    return UuidBox::typeID();
}

CFUUIDRef CFUUIDCreateFromString(CFAllocatorRef, CFStringRef string) {
    const auto parsed = quillo::Uuid::parse(quillo::cf::text(string).value());
    return parsed ? (new UuidBox(*parsed))->as<CFUUIDRef>() : nullptr;
}

CFStringRef CFUUIDCreateString(CFAllocatorRef, CFUUIDRef uuid) {
    return quillo::cf::makeText(objectOf<UuidBox>(uuid).value.upper()).release();
}

CFTypeID CFURLGetTypeID() {
    return UrlObject::typeID();
}

CFURLRef CFURLCreateWithBytes(CFAllocatorRef allocator, const UInt8* bytes, CFIndex length,
                              CFStringEncoding encoding, CFURLRef base) {
    if (base) fail("an address relative to another, which the fake does not make");
    auto text = quillo::CFRef<CFStringRef>::created(
        CFStringCreateWithBytes(allocator, bytes, length, encoding, false));
    if (!text || !quillo::Url::parse(*quillo::cf::text(text.get()))) return nullptr;
    return (new UrlObject(std::move(text)))->as<CFURLRef>();
}

CFStringRef CFURLGetString(CFURLRef url) {
    return objectOf<UrlObject>(url).text.get();
}

CFURLRef CFURLCopyAbsoluteURL(CFURLRef url) {
    CFRetain(url);
    return url;
}
