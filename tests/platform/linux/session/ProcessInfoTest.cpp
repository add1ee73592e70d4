#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <thread>

#include "platform/linux/ProcessInfo.hpp"

namespace quillo {
namespace {

/// Any process of a desktop may end between the opening of what the system tells of it and the reading.
TEST(ProcessInfo, IsAskedOfProcessesThatEndMeanwhile) {
    for (int i = 0; i < 400; ++i) {
        const pid_t pid = fork();
        ASSERT_GE(pid, 0);
        if (pid == 0) _exit(0);
        const std::jthread buries([pid] { waitpid(pid, nullptr, 0); });
        for (int look = 0; look < 30; ++look) {
            EXPECT_NO_THROW((void)argumentsOf(pid));
            EXPECT_NO_THROW((void)childrenOf(pid));
            EXPECT_NO_THROW((void)processInfo(pid));
        }
    }
}

}  // namespace
}  // namespace quillo
