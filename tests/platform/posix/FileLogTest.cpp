#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <regex>
#include <sstream>

#include "WindowEngine/support/Uuid.hpp"
#include "platform/posix/FileLog.hpp"

namespace quillo {
namespace {

class FileLogTest : public testing::Test {
  protected:
    FileLogTest() : directory_(std::filesystem::temp_directory_path() / ("log-" + Uuid::random().lower())) {}
    ~FileLogTest() override { std::filesystem::remove_all(directory_); }

    static std::string contents(const std::filesystem::path& file) {
        std::stringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }
    static unsigned mode(const std::filesystem::path& file) {
        struct stat status{};
        return stat(file.c_str(), &status) == 0 ? status.st_mode & 0777U : 0U;
    }

    std::filesystem::path directory_;
    std::filesystem::path file_ = directory_ / "state" / "Quillo" / "quillo.log";
};

TEST_F(FileLogTest, AppendsOneLineAMessageReadableByItsOwnerOnly) {
    const mode_t before = umask(0);
    FileLog(file_).write("capture", LogLevel::info, "captured 2 apps, 3 windows");
    FileLog(file_).write("restore", LogLevel::error, "two\nlines");
    umask(before);
    EXPECT_TRUE(std::regex_match(
        contents(file_),
        std::regex("[-0-9]{10}T[:0-9]{8}Z app.quillo capture info captured 2 apps, 3 windows\n"
                   "[-0-9]{10}T[:0-9]{8}Z app.quillo restore error two lines\n")))
        << contents(file_);
    EXPECT_EQ(mode(file_), 0600U);
    EXPECT_EQ(mode(file_.parent_path()), 0700U);
    EXPECT_EQ(mode(file_.parent_path().parent_path()), 0700U);
}

TEST_F(FileLogTest, IsBoundedByOneRotationThatKeepsTheLatest) {
    FileLog log(file_, 200);
    for (int i = 0; i < 50; ++i) log.write("restore", LogLevel::info, "message " + std::to_string(i));
    const std::string older = contents(file_.string() + ".1");
    const std::string newer = contents(file_);
    EXPECT_LE(newer.size(), 200U);
    EXPECT_LE(older.size(), 200U);
    EXPECT_NE(newer.find("message 49\n"), std::string::npos);
    EXPECT_NE((older + newer).find("message 46\n"), std::string::npos);
    EXPECT_EQ(mode(file_.string() + ".1"), 0600U);
}

TEST_F(FileLogTest, FollowsNoLinkAndNeverGetsInTheWay) {
    std::filesystem::create_directories(file_.parent_path());
    const std::filesystem::path target = directory_ / "target";
    std::ofstream(target) << "mine";
    std::filesystem::create_symlink(target, file_);
    FileLog(file_).write("restore", LogLevel::info, "message");
    EXPECT_EQ(contents(target), "mine");
    FileLog(target / "below a file" / "quillo.log").write("restore", LogLevel::info, "message");
    EXPECT_EQ(contents(target), "mine");
}

}  // namespace
}  // namespace quillo
