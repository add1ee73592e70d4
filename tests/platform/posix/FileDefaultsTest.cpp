#include <gtest/gtest.h>

#include "WindowEngine/services/ForwardingFileSystem.hpp"
#include "platform/posix/FileDefaults.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/platform/contract/DefaultsSuite.hpp"

namespace quillo {
namespace {

class FailingFiles final : public ForwardingFileSystem {
  public:
    using ForwardingFileSystem::ForwardingFileSystem;

    int failing = -1;      // which of the calls from now on
    bool refuses = false;  // or each of them
    ErrorKind readFailure{};

    Result<std::string> read(const Path& file) override {
        if (readFailure != ErrorKind{}) return quillo::fail(readFailure, "not readable");
        return ForwardingFileSystem::read(file);
    }
    Result<void> createDirectories(const Path& directory) override {
        return fails() ? full() : ForwardingFileSystem::createDirectories(directory);
    }
    Result<void> createFile(const Path& file, std::string_view bytes) override {
        return fails() ? full() : ForwardingFileSystem::createFile(file, bytes);
    }
    Result<void> rename(const Path& from, const Path& to) override {
        return fails() ? full() : ForwardingFileSystem::rename(from, to);
    }
    Result<void> syncDirectory(const Path& directory) override {
        return fails() ? full() : ForwardingFileSystem::syncDirectory(directory);
    }
    Result<std::unique_ptr<DirectoryLock>> lock(const Path& directory) override {
        if (fails()) return quillo::fail(ErrorKind::locked, "locked");
        return ForwardingFileSystem::lock(directory);
    }

  private:
    bool fails() { return refuses || failing-- == 0; }
    static Result<void> full() { return quillo::fail(ErrorKind::noSpace, "full"); }
};

struct FileDefaultsTest : testing::Test {
    const TemporaryDirectory directory;
    PosixFileSystem posix;
    FailingFiles files{posix};
    const std::filesystem::path file = directory / "config/defaults.json";
    FileDefaults defaults{files, file};
};

class KeptInAFile final : public DefaultsUnderTest {
  public:
    UserDefaults& defaults() override { return *defaults_; }
    void startAgain() override { defaults_.emplace(files_, file_); }
    void refuse(bool refuses) override { files_.refuses = refuses; }

  private:
    const TemporaryDirectory directory_;
    PosixFileSystem posix_;
    FailingFiles files_{posix_};
    const std::filesystem::path file_ = directory_ / "config/defaults.json";
    std::optional<FileDefaults> defaults_{std::in_place, files_, file_};
};
INSTANTIATE_TEST_SUITE_P(File, DefaultsContract, testing::Values(+[]() -> std::unique_ptr<DefaultsUnderTest> {
                             return std::make_unique<KeptInAFile>();
                         }));

TEST_F(FileDefaultsTest, ValuesAreKeptInAFileThatPeopleCanRead) {
    ASSERT_TRUE(defaults.setData("settings", "{\"a\": [1, 2.50], \"b\": \"\\/\"}\n"));
    ASSERT_TRUE(defaults.setBoolean("flag", true));
    EXPECT_FALSE(defaults.setData("bytes", "\xff"));
    FileDefaults again(files, file);
    EXPECT_EQ(again.data("settings"), R"({"a":[1,2.5],"b":"/"})");  // the same value, spelt anew
    EXPECT_FALSE(again.data("bytes"));
    EXPECT_EQ(directory.mode("config/defaults.json"), 0600U);
    ASSERT_TRUE(again.setBoolean("flag", false));
    EXPECT_EQ(directory.read("config/defaults.json"), "{\n  \"settings\": {\"a\":[1,2.5],\"b\":\"/\"}\n}\n");
}

TEST_F(FileDefaultsTest, NoValueMakesTheFileUnreadable) {
    std::vector<std::string> values{"\xef\xbb\xbf{\"a\":1}", "{} {}", "{\"a\":1e999}", "[1]", "null", ""};
    std::string deep = "0";
    for (int depth = 1; depth <= 1025; ++depth) {  // past what any parser follows
        deep.insert(0, "{\"a\":").append("}");
        if (depth > 1020) values.push_back(deep);
    }
    for (const std::string& value : values) {
        ASSERT_TRUE(defaults.setData("key", value));
        const FileDefaults again(files, file);
        EXPECT_EQ(again.trouble(), std::nullopt) << value;
        EXPECT_EQ(again.data("key"), value);
    }
}

TEST_F(FileDefaultsTest, TwoProgramsDoNotLoseEachOthersValues) {
    FileDefaults other(files, file);
    EXPECT_FALSE(other.boolean("mine"));
    ASSERT_TRUE(defaults.setBoolean("mine", true));
    ASSERT_TRUE(other.setBoolean("others", true));
    ASSERT_TRUE(defaults.setData("more", "x"));
    EXPECT_TRUE(defaults.boolean("others") && other.boolean("mine"));
    EXPECT_FALSE(other.data("more"));
    other.refresh();
    EXPECT_EQ(other.data("more"), "x");
}

TEST_F(FileDefaultsTest, ADamagedFileIsKeptAside) {
    std::filesystem::create_directory(directory / "config");
    for (const char* name : {"defaults.json.damaged", "defaults.json.damaged-2"}) {
        const std::string damage = std::string("{\"settings\": {") + name;
        directory.write("config/defaults.json", damage);
        FileDefaults damaged(files, file);
        EXPECT_FALSE(damaged.data("settings"));
        ASSERT_TRUE(damaged.trouble());
        EXPECT_TRUE(damaged.trouble()->starts_with("defaults.json: ")) << *damaged.trouble();
        ASSERT_TRUE(damaged.setBoolean("flag", true));
        EXPECT_FALSE(damaged.trouble());
        EXPECT_EQ(directory.read(std::string("config/") + name), damage);
        EXPECT_EQ(directory.read("config/defaults.json"), "{\n  \"flag\": true\n}\n");
    }
    for (int number = 3; number <= 10; ++number) {
        directory.write("config/defaults.json", "[]");
        EXPECT_EQ(FileDefaults(files, file).setBoolean("flag", true).has_value(), number <= 9) << number;
    }
    // There is no tenth, and none of the nine is lost for it.
    EXPECT_EQ(directory.read("config/defaults.json"), "[]");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory / "config"), {}), 10);
    std::filesystem::remove(directory / "config/defaults.json.damaged-4");
    ASSERT_TRUE(FileDefaults(files, file).setBoolean("flag", true));
    // One that cannot be read may be sound: it stays.
    files.readFailure = ErrorKind::permission;
    FileDefaults locked(files, file);
    EXPECT_FALSE(locked.boolean("flag"));
    EXPECT_EQ(locked.trouble(), "not readable");
    EXPECT_FALSE(locked.setBoolean("other", true));
    files.readFailure = {};
    EXPECT_TRUE(FileDefaults(files, file).boolean("flag"));
}

TEST_F(FileDefaultsTest, AFailedSetLeavesEverythingAsItWas) {
    ASSERT_TRUE(defaults.setData("key", "before"));
    const std::string before = directory.read("config/defaults.json");
    int failures = 0;
    for (bool done = false; !done; ++failures) {
        directory.write("config/defaults.json", before);
        files.failing = failures;
        done = defaults.setData("key", "after").has_value();
        // The last call makes the rename durable: what fails there stands, and is said to stand.
        const bool stands = failures >= 4;
        EXPECT_EQ(defaults.data("key"), stands ? "after" : "before") << failures;
        EXPECT_EQ(directory.read("config/defaults.json") == before, !stands);
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(directory / "config"), {}), 1);
    }
    EXPECT_EQ(failures, 6);  // each of the five calls, and then none
}

TEST_F(FileDefaultsTest, ADamagedFileIsNeverLostToAFailedSet) {
    std::filesystem::create_directory(directory / "config");
    for (int failure = 0; failure < 6; ++failure) {
        directory.write("config/defaults.json", "{");
        FileDefaults damaged(files, file);
        files.failing = failure;
        EXPECT_FALSE(damaged.setData("key", "new")) << failure;
        const bool aside = failure > 2;  // directories, lock and the rename that keeps it
        EXPECT_EQ(directory.read(aside ? "config/defaults.json.damaged" : "config/defaults.json"), "{");
        EXPECT_EQ(damaged.trouble().has_value(), !aside);
        std::filesystem::remove(directory / "config/defaults.json.damaged");
    }
}

}  // namespace
}  // namespace quillo
