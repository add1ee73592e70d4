// Noticing what other programs do to a directory.
#include <gtest/gtest.h>

#include "WindowEngine/library/DirectoryWatch.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "tests/app/MemoryFileSystem.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

TEST(DirectoryWatch, FindsADirectoryThatWasRemovedAndMadeAgain) {
    VirtualExecutor executor;
    MemoryFileSystem files;
    ASSERT_TRUE(files.createDirectories("/home/data/library"));
    int told = 0;
    DirectoryWatch watch(executor, files, "/home/data/library", [&] {
        ++told;
        watch.look();
    });
    watch.look();
    for (const char* removed : {"/home/data/library", "/home/data"}) {
        for (const char* made : {"/home/data/library", "/home/data"}) {
            SCOPED_TRACE(testing::Message() << removed << ", then " << made);
            told = 0;
            ASSERT_TRUE(files.removeTree(removed));
            executor.runFor(1s);
            EXPECT_EQ(told, 1);
            ASSERT_TRUE(files.createDirectories(made));
            executor.runFor(1s);
            ASSERT_TRUE(files.createDirectories("/home/data/library"));
            executor.runFor(1s);
            ASSERT_TRUE(files.createFile("/home/data/library/a.json", "{}"));
            executor.runFor(1s);
            EXPECT_EQ(told, 3) << "it is there again, and then something in it";
        }
    }
}

}  // namespace
}  // namespace quillo
