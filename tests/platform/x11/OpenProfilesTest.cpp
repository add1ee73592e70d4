// Which session files are a process's own: those that it holds open, whatever else lies beside them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "platform/linux/OpenProfiles.hpp"
#include "platform/posix/Descriptor.hpp"
#include "tests/TemporaryDirectory.hpp"

namespace quillo {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

class OpenProfilesTest : public testing::Test {
  protected:
    /// As a browser has it that writes to it.
    void hold(const std::string& path, const std::string& bytes) {
        put(path, bytes);
        held_.emplace_back(::open(at(path).c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    }
    void put(const std::string& path, const std::string& bytes) {
        fs::create_directories(at(path).parent_path());
        home_.write(path, bytes);
    }
    fs::path at(const std::string& path) const { return home_.path() / path; }
    /// "Default: 0" for an open one with so many windows, "Default: why not" or "Default" for one that is
    /// closed.
    static std::vector<std::string> profiles(BrowserFamily family) {
        std::vector<std::string> all;
        for (const BrowserProfile& one : OpenProfiles::of(getpid(), family)) {
            all.push_back(one.name);
            if (!one.isOpen) continue;
            all.back() +=
                ": " + (one.session ? std::to_string(one.session->windows.size()) : one.session.error().text);
        }
        return all;
    }

    TemporaryDirectory home_;
    std::vector<Descriptor> held_;
};
using Names = std::vector<std::string>;

TEST_F(OpenProfilesTest, ChromiumsAreTheLogsThatItHolds) {
    const std::string empty = "SNSS\x01\0\0\0"s;
    EXPECT_EQ(profiles(BrowserFamily::chromium), Names{});
    put("c/Default/Sessions/Session_99", "a dead session's");
    put("c/Default/Preferences", "{}");
    put("c/Profile 2/Preferences", "{}");
    put("c/System Profile/Preferences", "{}");
    hold("c/Default/Sessions/Session_11", "not the last one");
    hold("c/Default/Sessions/Session_12", empty);
    hold("c/Default/Sessions/Tabs_12", empty);
    hold("c/Default/Sessions/Session_", "no number");
    EXPECT_EQ(profiles(BrowserFamily::chromium), (Names{"Default: 0", "Profile 2"}));
    const auto arguments = OpenProfiles::of(getpid(), BrowserFamily::chromium).at(1).arguments;
    EXPECT_EQ(arguments, (Names{"--user-data-dir=" + at("c").string(), "--profile-directory=Profile 2"}));
    held_.clear();
    EXPECT_EQ(profiles(BrowserFamily::chromium), Names{});
}

TEST_F(OpenProfilesTest, FirefoxsFileIsItsOwnAndNoLinkNorPipe) {
    const std::string file = "f/one.default/sessionstore-backups/recovery.jsonlz4";
    hold("f/one.default/.parentlock", "");
    EXPECT_EQ(profiles(BrowserFamily::firefox), Names{"one.default: its session file cannot be read"});
    put(file, "x");
    const auto written = [&](std::time_t when) {
        const timespec times[2] = {{when, 0}, {when, 0}};
        ASSERT_EQ(::utimensat(AT_FDCWD, at(file).c_str(), times, 0), 0);
    };
    written(std::time(nullptr) - 86'400);
    EXPECT_EQ(profiles(BrowserFamily::firefox), Names{"one.default: its session file is not written yet"});
    written(std::time(nullptr) + 60);
    EXPECT_EQ(profiles(BrowserFamily::firefox), Names{"one.default: its session file is none"});
    fs::resize_file(at(file), largestSessionFile + 1);
    EXPECT_EQ(profiles(BrowserFamily::firefox), Names{"one.default: its session file is too large"});
    fs::rename(at(file), at("elsewhere"));
    fs::create_symlink(at("elsewhere"), at(file));
    EXPECT_EQ(profiles(BrowserFamily::firefox), Names{"one.default: its session file cannot be read"});
    fs::remove(at(file));
    ASSERT_EQ(::mkfifo(at(file).c_str(), 0600), 0);
    EXPECT_EQ(profiles(BrowserFamily::firefox), Names{"one.default: its session file is none"});
}

}  // namespace
}  // namespace quillo
