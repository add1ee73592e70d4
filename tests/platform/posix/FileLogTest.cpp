#include <gtest/gtest.h>
#include <sys/stat.h>

#include <regex>

#include "platform/posix/FileLog.hpp"
#include "tests/TemporaryDirectory.hpp"

namespace quillo {
namespace {

struct FileLogTest : testing::Test {
    TemporaryDirectory directory;
    const std::string name = "state/Quillo/quillo.log";
};

TEST_F(FileLogTest, AppendsOneLineAMessageReadableByItsOwnerOnly) {
    const mode_t before = umask(0);
    FileLog(directory / name).write("capture", LogLevel::info, "captured 2 apps, 3 windows");
    chmod((directory / name).c_str(), 0644);  // of a version that did not look
    FileLog(directory / name).write("restore", LogLevel::error, "two\nlines \x1b[2J\xff");
    umask(before);
    const std::regex expected(
        "[-0-9]{10}T[:0-9]{8}Z app.quillo capture info captured 2 apps, 3 windows\n"
        "[-0-9]{10}T[:0-9]{8}Z app.quillo restore error two\\\\nlines \\\\x1b\\[2J\\\\xff\n");
    EXPECT_TRUE(std::regex_match(directory.read(name), expected)) << directory.read(name);
    EXPECT_EQ(directory.mode(name), 0600U);
    for (const char* folder : {"state", "state/Quillo"}) EXPECT_EQ(directory.mode(folder), 0700U);
}

TEST_F(FileLogTest, IsBoundedByOneRotationThatKeepsTheLatest) {
    FileLog log(directory / name, 200);
    for (int i = 0; i < 50; ++i) log.write("restore", LogLevel::info, "message " + std::to_string(i));
    const std::string older = directory.read(name + ".1"), newer = directory.read(name);
    EXPECT_LE(std::max(older.size(), newer.size()), 200U);
    EXPECT_NE(newer.find("message 49\n"), std::string::npos);
    EXPECT_NE((older + newer).find("message 46\n"), std::string::npos);
    EXPECT_EQ(directory.mode(name + ".1"), 0600U);
}

TEST_F(FileLogTest, FollowsNoLinkAndNeverGetsInTheWay) {
    directory.write("target", "mine");
    std::filesystem::create_symlink("target", directory / "link");
    for (const char* file : {"link", "target/below a file/quillo.log"})
        FileLog(directory / file).write("restore", LogLevel::info, "message");
    EXPECT_EQ(directory.read("target"), "mine");
}

}  // namespace
}  // namespace quillo
