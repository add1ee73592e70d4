// Identifiers and instants: the two values whose text form files depend on.
#include <gtest/gtest.h>

#include "WindowEngine/support/Instant.hpp"
#include "WindowEngine/support/Uuid.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

TEST(Uuid, ReadsEitherCaseWritesBothAndRefusesEveryOtherForm) {
    const auto id = Uuid::parse("6f1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60").value();
    EXPECT_EQ(id.upper(), "6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60");
    EXPECT_EQ(id.lower(), "6f1c2a9e-0b7d-4e51-9c3a-2d4b8e7f1a60");
    for (const char* text : {"", "6F1C2A9E0B7D4E519C3A2D4B8E7F1A60", "{6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60}",
                             "6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A6", "6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A6G",
                             "6F1C2A9E-0B7D-4E519-C3A-2D4B8E7F1A60", "6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A600"})
        EXPECT_FALSE(Uuid::parse(text)) << text;
    for (const std::size_t hyphen : {8U, 13U, 18U, 23U})
        EXPECT_FALSE(Uuid::parse(id.upper().replace(hyphen, 1, "0"))) << hyphen;
}

TEST(Uuid, RandomOnesAreDistinctAndOfVersion4) {
    for (int i = 0; i < 200; ++i) {
        const std::string text = Uuid::random().upper();
        EXPECT_EQ(text[14], '4');
        EXPECT_TRUE(std::string_view("89AB").contains(text[19]));
        EXPECT_NE(text, Uuid::random().upper());
    }
}

TEST(Instant, WritesWholeSecondsFlooredAndReadsThemBack) {
    const Instant moment{1741944413s};
    EXPECT_EQ(formatInstant(moment + 999'999'999ns), "2025-03-14T09:26:53Z");
    EXPECT_EQ(formatInstant(Instant{-1ns}), "1969-12-31T23:59:59Z");
    EXPECT_EQ(parseInstant("2025-03-14T09:26:53Z"), moment);
    for (const Instant end : {Instant::max(), Instant::min() + 1s})
        EXPECT_EQ(parseInstant(formatInstant(end)), std::chrono::floor<std::chrono::seconds>(end));
}

TEST(Instant, RefusesEveryOtherForm) {
    for (const char* text :
         {"", "2025-03-14T09:26:53.120Z", "2025-03-14T09:26:53", "2025-03-14T09:26:53+00:00",
          "2025-03-14t09:26:53z", "2025-03-14 09:26:53Z", "2025-02-29T00:00:00Z", "2025-13-01T00:00:00Z",
          "2025-00-01T00:00:00Z", "2025-01-01T24:00:00Z", "2025-01-01T00:60:00Z", "2025-01-01T00:00:60Z",
          "+025-01-01T00:00:00Z", "9999-12-31T23:59:59Z", "0001-01-01T00:00:00Z", "2025-03-14T09:26:53ZZ"})
        EXPECT_FALSE(parseInstant(text)) << text;
    EXPECT_TRUE(parseInstant("2024-02-29T23:59:59Z"));
}

}  // namespace
}  // namespace quillo
