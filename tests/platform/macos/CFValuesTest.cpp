// Values across the border, under counts: also that the fakes notice a wrong use, without which the counts of
// every other test would prove nothing.
#include <array>
#include <cmath>
#include <limits>

#include "platform/macos/CFValues.hpp"
#include "platform/macos/PrivateSymbols.hpp"
#include "tests/platform/macos/MacTest.hpp"
#include "tests/platform/macos/fakes/FakeCoreFoundation.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

class CFValuesTest : public MacTest {};
using CFValuesDeathTest = CFValuesTest;

template <class T>
CFRef<T> own(T object) {
    return CFRef<T>::created(object);
}

TEST_F(CFValuesTest, TextGoesThereAndBack) {
    const std::string embedded("a\0b", 3);
    for (const std::string& text :
         {std::string(), std::string("plain"), std::string("Zürich – 東京 🪟"), embedded})
        EXPECT_EQ(cf::text(cf::makeText(text).get()), text);
    EXPECT_FALSE(cf::makeText("\xff"));
    EXPECT_EQ(cf::text(own(fakes::createRawText(u"a\xD800z")).get()), "a?z");  // half a pair from elsewhere
}

TEST_F(CFValuesTest, NumbersAreTakenOnlyWhereTheyFit) {
    constexpr auto largest = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(cf::integer(cf::makeInteger(largest).get()), largest);
    EXPECT_EQ(cf::number(cf::makeNumber(1.5).get()), 1.5);
    EXPECT_EQ(cf::number(cf::makeInteger(-3).get()), -3.0);
    for (const double odd : {1.5, 1e30, -1e30, std::nan("")})
        EXPECT_EQ(cf::integer(cf::makeNumber(odd).get()), std::nullopt) << odd;
    EXPECT_EQ(cf::integerAs<std::uint32_t>(cf::makeInteger(4294967295).get()), 4294967295U);
    EXPECT_EQ(cf::integerAs<std::uint32_t>(cf::makeInteger(4294967296).get()), std::nullopt);
    EXPECT_EQ(cf::integerAs<std::uint32_t>(cf::makeInteger(-1).get()), std::nullopt);
}

TEST_F(CFValuesTest, DatesIdentifiersAndAddresses) {
    const Instant instant = *parseInstant("2025-03-14T09:26:53Z") + 250ms;
    EXPECT_EQ(cf::date(cf::makeDate(instant).get()), instant);
    EXPECT_EQ(cf::date(own(CFDateCreate(nullptr, 1e300)).get()), std::nullopt);
    EXPECT_EQ(cf::date(own(CFDateCreate(nullptr, std::nan(""))).get()), std::nullopt);

    const auto text = cf::makeText("0f0e0d0c-0b0a-0908-0706-050403020100");
    EXPECT_EQ(cf::uuid(own(CFUUIDCreateFromString(nullptr, text.get())).get()),
              "0F0E0D0C-0B0A-0908-0706-050403020100");
    constexpr std::string_view address = "file:///Users/me/a%20b.txt";
    const auto url = own(CFURLCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(address.data()),
                                              address.size(), kCFStringEncodingUTF8, nullptr));
    EXPECT_EQ(cf::address(url.get()), address);
}

/// Whatever arrives in the place of an expected value is absent, never a crash.
TEST_F(CFValuesTest, AWrongTypeIsAbsent) {
    const auto text = cf::makeText("text");
    const auto number = cf::makeNumber(0.5);
    const auto array = cf::makeArray(std::array<CFTypeRef, 1>{text.get()});
    const auto dictionary =
        cf::makeDictionary(std::array{std::pair<CFTypeRef, CFTypeRef>(text.get(), array.get())});
    const auto data = cf::makeData({});
    const std::array<CFTypeRef, 8> all{nullptr,      kCFNull,          kCFBooleanTrue, text.get(),
                                       number.get(), dictionary.get(), array.get(),    data.get()};
    const auto readAs = [&](auto read) {
        int found = 0;
        for (const CFTypeRef value : all) found += read(value) ? 1 : 0;
        return found;
    };
    EXPECT_EQ(readAs(cf::text), 1);
    EXPECT_EQ(readAs(cf::number), 1);
    EXPECT_EQ(readAs(cf::integer), 0);
    EXPECT_EQ(readAs(cf::boolean), 1);
    EXPECT_EQ(readAs(cf::date), 0);
    EXPECT_EQ(readAs(cf::uuid), 0);
    EXPECT_EQ(readAs(cf::address), 0);
    EXPECT_EQ(readAs(cf::isNull), 2);
    EXPECT_EQ(readAs([](CFTypeRef value) { return !cf::items(value).empty(); }), 1);
    EXPECT_EQ(readAs([](CFTypeRef value) { return cf::lookup(value, "text"); }), 1);
    EXPECT_EQ(cf::lookup(dictionary.get(), "other"), nullptr);
    EXPECT_EQ(cf::lookup(dictionary.get(), "\xff"), nullptr);
}

TEST_F(CFValuesTest, CollectionsKeepTheirValuesAlive) {
    CFRef<CFArrayRef> outer;
    {
        const auto inner = cf::makeArray(std::array<CFTypeRef, 2>{cf::makeText("a").get(), kCFBooleanFalse});
        outer = cf::makeArray(std::array<CFTypeRef, 1>{inner.get()});
    }
    const CFRef<CFArrayRef> copy = outer;
    outer = {};
    EXPECT_EQ(cf::text(cf::items(cf::items(copy.get()).front()).front()), "a");
    EXPECT_TRUE(CFEqual(cf::makeArray({}).get(), cf::makeArray({}).get()));
    EXPECT_FALSE(CFEqual(copy.get(), cf::makeArray({}).get()));
}

TEST_F(CFValuesTest, AForgottenReferenceIsCounted) {
    const CFStringRef forgotten = cf::makeText("x").release();
    CFRetain(forgotten);
    CFRelease(forgotten);
    EXPECT_EQ(fakes::liveObjectList(), "1 CFString");
    CFRelease(forgotten);
}

TEST_F(CFValuesDeathTest, AWrongUseEndsTheProgram) {
    const auto text = cf::makeText("x");
    EXPECT_DEATH(CFRelease(nullptr), "null where an object is needed");
    EXPECT_DEATH(CFBooleanGetValue(static_cast<CFBooleanRef>(static_cast<CFTypeRef>(text.get()))),
                 "a CFString where a CFBoolean is needed");
    EXPECT_DEATH(
        {
            CFRelease(text.get());
            CFRelease(text.get());
        },
        "does not live");
}

TEST_F(CFValuesTest, AMissingLibraryOrSymbolIsNull) {
    EXPECT_EQ(systemSymbol(hiServices::library, hiServices::getWindow), nullptr);  // this is no Mac
    EXPECT_EQ(systemSymbol("libc.so.6", "noSuchFunction"), nullptr);
    EXPECT_NE(symbol<int(int)>(systemSymbol, "libc.so.6", "abs"), nullptr);
}

}  // namespace
}  // namespace quillo
