#include <gtest/gtest.h>

#include <stdexcept>
#include <tuple>

#include "WindowEngine/support/Text.hpp"

namespace quillo::text {
namespace {

TEST(Text, LowercasesAllScriptsAndReplacesInvalidBytes) {
    EXPECT_EQ(lowercase("Report — EDITED"), "report — edited");
    EXPECT_EQ(lowercase("I ÄÖÜ ΣΊΣΥΦΟΣ"), "i äöü σίσυφος");  // root locale: never the dotless i
    EXPECT_EQ(lowercase("A\xff"), "a\xef\xbf\xbd");
}

TEST(Text, ComparesIgnoringCaseByFolding) {
    EXPECT_TRUE(equalIgnoringCase("Work", "wORK"));
    EXPECT_TRUE(equalIgnoringCase("STRASSE", "straße"));
    EXPECT_TRUE(equalIgnoringCase("Caf\xc3\xa9", "CAFE\xcc\x81"));  // composed and decomposed
    EXPECT_FALSE(equalIgnoringCase("Cafe", "Café"));
    EXPECT_FALSE(equalIgnoringCase("Work", "Work "));
}

TEST(Text, TrimsUnicodeWhiteSpace) {
    EXPECT_EQ(trim("\xc2\xa0 \t\r\n a b \xe2\x80\xa8\xe3\x80\x80"), "a b");
    EXPECT_EQ(trim(" \n "), "");
    EXPECT_EQ(trim(" \xff "), "\xef\xbf\xbd");
    EXPECT_EQ(trimBlanks("\t\xc2\xa0 a\n \t"), "a\n");
}

TEST(Text, ValidatesUtf8) {
    EXPECT_TRUE(isValidUtf8("aé漢😀"));
    for (const char* bad : {"\x80", "\xc0\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80", "\xe2\x82"})
        EXPECT_FALSE(isValidUtf8(bad));
}

TEST(Text, SpellsOutWhatCouldDriveATerminalOrFakeALine) {
    EXPECT_EQ(printable("a é 漢 😀 \xef\xbf\xbd \\"), "a é 漢 😀 \xef\xbf\xbd \\");
    EXPECT_EQ(printable(std::string_view("\0\n\t\r\x1b[2J\x7f", 9)), R"(\x00\n\t\x0d\x1b[2J\x7f)");
    EXPECT_EQ(printable("\xc2\x9b\xe2\x80\xa8\xe2\x80\xae"), R"(\x9b\u2028\u202e)");
    EXPECT_EQ(printable("\xff \xc0\xaf \xe2\x82"), R"(\xff \xc0\xaf \xe2\x82)");
}

TEST(Text, IsCutBetweenCharactersAndShownOnOneLine) {
    EXPECT_EQ(beginning("añb", 2), "a");
    EXPECT_EQ(beginning("añb", 9), "añb");
    const std::string accents = "abe\xcc\x81\xcc\x81";  // an e with two accents
    const std::tuple<std::string, std::size_t, std::string> cases[] = {
        {"three", 5, "three"},
        {"three", 4, "thr…"},
        {"日本語", 2, "日…"},
        {accents, 4, "ab…"},
        {"a\nb\x1b[1mc\xe2\x80\xa8"
         "d\x7f",
         20, "a b [1mc d "},
        {"pay\xe2\x80\xaegnp.exe", 20, "paygnp.exe"},  // an override of the direction
        {"\xff", 3, "\xef\xbf\xbd"},
        {std::string(100'000, 'x'), 3, "xx…"},
        {"", 3, ""}};
    for (const auto& [text, characters, shown] : cases) EXPECT_EQ(clipped(text, characters), shown);
}

TEST(Text, CollatesWithoutCase) {
    EXPECT_EQ(compareLocalized("work", "WORK"), std::weak_ordering::equivalent);
    EXPECT_EQ(compareLocalized("apple", "Banana"), std::weak_ordering::less);
    EXPECT_EQ(compareLocalized("Zebra", "apple"), std::weak_ordering::greater);
    EXPECT_NE(compareLocalized("resume", "résumé"), std::weak_ordering::equivalent);
}

TEST(Pattern, ReplacesEveryMatchWithUnicodeClasses) {
    EXPECT_EQ(Pattern("\\s+").replaceAll("a \xc2\xa0\n b\tc", " "), "a b c");
    EXPECT_EQ(Pattern("^•\\s*").replaceAll("• draft •", ""), "draft •");
    EXPECT_THROW(Pattern("("), std::logic_error);
}

}  // namespace
}  // namespace quillo::text
