#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <condition_variable>
#include <csignal>
#include <mutex>

#include "platform/posix/PosixFileSystem.hpp"
#include "tests/TemporaryDirectory.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using Names = std::set<std::string>;

class PosixFileSystemTest : public ::testing::Test {
  protected:
    ErrorKind kindOf(const auto& result) {
        EXPECT_FALSE(result.has_value());
        return result ? ErrorKind::invalidArgument : result.error().kind;
    }
    TemporaryDirectory directory;
    PosixFileSystem files;
};

TEST_F(PosixFileSystemTest, WritesReadsAndCopiesForTheOwnerOnly) {
    std::string bytes("a\0b\xff", 4);
    bytes.append(200'000, 'x');
    for (const ::mode_t mask : {0u, 0777u}) {
        const ::mode_t before = ::umask(mask);
        EXPECT_TRUE(files.createDirectories(directory / "one/two"));
        EXPECT_TRUE(files.createDirectories(directory / "one/two/"));  // there already
        EXPECT_TRUE(files.createFile(directory / "one/two/a", bytes));
        EXPECT_TRUE(files.copy(directory / "one/two/a", directory / "one/b"));
        ::umask(before);
        EXPECT_EQ(files.read(directory / "one/b"), bytes);
        for (const char* folder : {"one", "one/two"}) EXPECT_EQ(directory.mode(folder), 0700u) << mask;
        for (const char* file : {"one/two/a", "one/b"}) EXPECT_EQ(directory.mode(file), 0600u) << mask;
        EXPECT_TRUE(files.removeTree(directory / "one"));
    }
    EXPECT_TRUE(files.syncDirectory(directory.path()));
    EXPECT_NE(files.read("/proc/self/cmdline").value(), "");  // says it is empty and is not
}

TEST_F(PosixFileSystemTest, ClosesAnOpenDirectoryButNoneThatIsShared) {
    for (const auto& [name, mode, then] :
         {std::tuple{"open", 0755u, 0700u}, {"group", 02770u, 02700u}, {"shared", 01777u, 01777u}}) {
        std::filesystem::create_directory(directory / name);
        ASSERT_EQ(::chmod((directory / name).c_str(), mode), 0);
        EXPECT_TRUE(files.createDirectories(directory / (name + std::string("/below"))));
        EXPECT_EQ(directory.mode(name), mode) << "a parent, that others may need";
        EXPECT_TRUE(files.createDirectories(directory / name));
        EXPECT_EQ(directory.mode(name), then);
    }
}

TEST_F(PosixFileSystemTest, CreatingNeverReplacesAndRenamingDoes) {
    directory.write("a", "old");
    EXPECT_FALSE(files.createFile(directory / "a", "new"));
    EXPECT_FALSE(files.copy(directory / "a", directory / "a"));
    EXPECT_EQ(directory.read("a"), "old");
    ASSERT_TRUE(files.createFile(directory / "b", "new"));
    ASSERT_TRUE(files.rename(directory / "b", directory / "a"));
    EXPECT_EQ(directory.read("a"), "new");
    EXPECT_EQ(directory.names(), Names{"a"});
}

TEST_F(PosixFileSystemTest, AFileThatCannotBeWrittenWholeDoesNotStay) {
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const auto ignoredBefore = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{.rlim_cur = 1000, .rlim_max = before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    const auto created = files.createFile(directory / "a", std::string(5000, 'x'));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    std::signal(SIGXFSZ, ignoredBefore);
    EXPECT_EQ(created.error().code, EFBIG);
    EXPECT_EQ(directory.names(), Names{});
}

TEST_F(PosixFileSystemTest, FollowsNoLinkAndReadsNothingButRegularFiles) {
    directory.write("target", "secret");
    std::filesystem::create_symlink("target", directory / "link");
    std::filesystem::create_symlink("nowhere", directory / "dangling");
    ASSERT_EQ(::mkfifo((directory / "pipe").c_str(), 0600), 0);
    for (const char* name : {"link", "dangling", "pipe", "."}) {
        const auto read = files.read(directory / name);
        ASSERT_FALSE(read) << name;
        EXPECT_NE(read.error().text.find((directory / name).string()), std::string::npos);
        EXPECT_FALSE(files.copy(directory / name, directory / "copy")) << name;
        EXPECT_FALSE(files.createFile(directory / name, "x")) << name;
    }
    EXPECT_NE(files.read(directory / "link").error().text.find("symbolic link"), std::string::npos);
    EXPECT_EQ(directory.names(), (Names{"target", "link", "dangling", "pipe"}));
    EXPECT_TRUE(files.exists(directory / "dangling"));
    EXPECT_TRUE(files.remove(directory / "link"));  // the link itself
    EXPECT_EQ(directory.read("target"), "secret");
}

TEST_F(PosixFileSystemTest, RemovesTreesWithoutLeavingThem) {
    TemporaryDirectory outside;
    outside.write("kept", "x");
    ASSERT_TRUE(files.createDirectories(directory / "tree/deep"));
    directory.write("tree/deep/file", "x");
    std::filesystem::create_directory_symlink(outside.path(), directory / "tree/link");
    EXPECT_TRUE(files.removeTree(directory / "tree"));
    EXPECT_TRUE(files.removeTree(directory / "tree"));
    EXPECT_EQ(directory.names(), Names{});
    EXPECT_EQ(outside.names(), Names{"kept"});
}

TEST_F(PosixFileSystemTest, ListsEveryEntryAndSaysWhatWentWrong) {
    directory.write(".hidden", "");
    directory.write("file", "");
    const auto names = files.list(directory.path()).value();
    EXPECT_EQ(Names(names.begin(), names.end()), (Names{".hidden", "file"}));
    const auto missing = directory / "missing";
    for (const ErrorKind kind :
         {kindOf(files.list(missing)), kindOf(files.read(missing)), kindOf(files.remove(missing)),
          kindOf(files.createFile(missing / "a", "")), kindOf(files.lock(missing)),
          kindOf(files.watch(missing, [] {})), kindOf(files.rename(missing, directory / "file")),
          kindOf(files.createDirectories("/proc/quillo"))})
        EXPECT_EQ(kind, ErrorKind::notFound);
    EXPECT_EQ(files.read(missing).error().code, ENOENT);
    EXPECT_EQ(kindOf(files.createFile("/dev/full", "x")), ErrorKind::io);  // exists: never written to
    EXPECT_EQ(kindOf(files.createDirectories(directory / "file/below")), ErrorKind::io);
    std::filesystem::resize_file(directory / "file", (std::uintmax_t{32} << 20) + 1);
    EXPECT_EQ(files.read(directory / "file").error().code, EFBIG);
}

TEST_F(PosixFileSystemTest, TheLockExcludesOtherHoldersUntilItIsReleased) {
    auto held = files.lock(directory.path());
    ASSERT_TRUE(held);
    EXPECT_EQ(kindOf(PosixFileSystem(20ms).lock(directory.path())), ErrorKind::locked);
    held->reset();
    EXPECT_TRUE(PosixFileSystem(0ms).lock(directory.path()));
    EXPECT_EQ(directory.names(), Names{});  // no lock file
}

TEST_F(PosixFileSystemTest, TheWatchReportsChangesUntilItIsDropped) {
    std::mutex mutex;
    std::condition_variable changed;
    int changes = 0;
    auto watch = files.watch(directory.path(), [&] {
        const std::lock_guard lock(mutex);
        ++changes;
        changed.notify_all();
    });
    ASSERT_TRUE(watch);
    const auto happens = [&](auto act) {
        std::unique_lock lock(mutex);
        const int before = changes;
        act();
        return changed.wait_for(lock, 5s, [&] { return changes > before; });
    };
    EXPECT_TRUE(happens([&] { ASSERT_TRUE(files.createFile(directory / "a", "x")); }));
    EXPECT_TRUE(happens([&] { ASSERT_TRUE(files.rename(directory / "a", directory / "b")); }));
    EXPECT_TRUE(happens([&] { ASSERT_TRUE(files.remove(directory / "b")); }));
    watch->reset();  // joins its thread: `changes` is ours now
    const int before = changes;
    directory.write("c", "x");
    EXPECT_EQ(changes, before);
}

}  // namespace
}  // namespace quillo
