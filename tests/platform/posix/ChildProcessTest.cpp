// Real child processes, on both loops: on the virtual one they show that its clock waits for outside work.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <memory>
#include <optional>
#include <thread>

#include "WindowEngine/support/Loops.hpp"
#include "platform/posix/ChildProcess.hpp"
#include "tests/TemporaryDirectory.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;

std::ptrdiff_t openDescriptors() {
    return std::distance(std::filesystem::directory_iterator("/dev/fd"),
                         std::filesystem::directory_iterator());
}

ChildProcess::Arguments shell(std::string script, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {"-c", std::move(script), "sh"});
    return {.program = "sh", .arguments = std::move(arguments), .grace = 100ms};
}

class ChildProcessTest : public testing::TestWithParam<std::unique_ptr<Loop> (*)()> {
  protected:
    using Running = Job<Result<ChildProcess::Outcome>>;

    ChildProcessTest() {
        ::mkfifo(pipe.c_str(), 0600);
        descriptorsBefore = openDescriptors();
    }
    void TearDown() override {
        EXPECT_TRUE(executor.idle());
        EXPECT_EQ(openDescriptors(), descriptorsBefore);
        EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
    }

    Running start(ChildProcess::Arguments arguments, Duration limit = 20s) {
        return Running(executor, ChildProcess::run(std::move(arguments), limit));
    }
    Result<ChildProcess::Outcome> finish(Running& job) {
        EXPECT_TRUE(executor.runUntil([&] { return executor.idle(); }, 30s));
        return job.result();
    }
    Result<ChildProcess::Outcome> run(ChildProcess::Arguments arguments) {
        Running job = start(std::move(arguments));
        return finish(job);
    }
    /// Starts a group that holds the pipe open as a whole; it survives a polite request when `stubborn`.
    Running startLasting(bool stubborn, Duration limit = 20s) {
        alive = ::open(pipe.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        ownEnd = ::open(pipe.c_str(), O_WRONLY | O_CLOEXEC);  // or it would look gone already
        return start(shell(std::string(stubborn ? "trap '' TERM; " : "") + "exec 9>" + pipe +
                           "; sleep 60 & echo started >&9; sleep 60"),
                     limit);
    }
    /// What the group wrote next; nothing, once all of it is gone.
    std::string readAlive() const {
        pollfd watched{alive, POLLIN, 0};
        if (::poll(&watched, 1, 20'000) != 1) return "nothing happened";
        char text[100];
        return {text, static_cast<std::size_t>(std::max<ssize_t>(::read(alive, text, sizeof text), 0))};
    }
    void awaitStart() {
        std::optional<std::string> told;
        const std::jthread thread([&, work = executor.outsideWork()] {
            executor.post([&told, text = readAlive()] { told = text; });
        });
        EXPECT_TRUE(executor.runUntil([&] { return told.has_value(); }, 20s));
        EXPECT_EQ(told, "started\n");
    }
    void expectGroupGone() {
        ::close(ownEnd);
        const std::string rest = readAlive();
        EXPECT_EQ(rest == "started\n" ? readAlive() : rest, "");
        ::close(alive);
    }

    const TemporaryDirectory directory;
    const std::string pipe = directory / "alive";
    int alive = -1, ownEnd = -1;
    std::ptrdiff_t descriptorsBefore = 0;
    const std::unique_ptr<Loop> loop = GetParam()();
    Loop& executor = *loop;
};
template <class T>
std::unique_ptr<Loop> make() {
    return std::make_unique<T>();
}
INSTANTIATE_TEST_SUITE_P(Virtual, ChildProcessTest, testing::Values(&make<VirtualExecutor>));
INSTANTIATE_TEST_SUITE_P(Plain, ChildProcessTest, testing::Values(&make<LoopExecutor>));

TEST_P(ChildProcessTest, GivesStatusSignalAndBothStreams) {
    const std::pair<ChildProcess::Arguments, ChildProcess::Outcome> cases[] = {
        {shell("echo out; echo err >&2; exit 3"), {3, 0, "out\n", "err\n"}},
        {shell("printf '%s|' \"$@\"", {"a b", "", "$HOME 'x' \"y\" *"}),
         {0, 0, "a b||$HOME 'x' \"y\" *|", ""}},
        {shell("cat; echo end"), {0, 0, "end\n", ""}},
        {shell("echo first; kill -KILL $$"), {137, SIGKILL, "first\n", ""}},
        {{.program = "/bin/true", .arguments = {}}, {0, 0, "", ""}},
    };
    for (const auto& [arguments, expected] : cases) {
        const auto outcome = run(arguments);
        ASSERT_TRUE(outcome) << outcome.error().text;
        EXPECT_EQ(outcome->exitStatus, expected.exitStatus);
        EXPECT_EQ(outcome->signal, expected.signal);
        EXPECT_EQ(outcome->standardOutput, expected.standardOutput);
        EXPECT_EQ(outcome->standardError, expected.standardError);
    }
}

TEST_P(ChildProcessTest, SaysWhyAProgramCannotBeStarted) {
    for (const auto& [program, kind] : {std::pair{"/nowhere/at all", ErrorKind::notFound},
                                        {"no-such-program-in-path", ErrorKind::notFound},
                                        {"/etc", ErrorKind::permission}}) {
        const auto outcome = run({.program = program, .arguments = {}});
        ASSERT_FALSE(outcome);
        EXPECT_EQ(outcome.error().kind, kind) << program;
        EXPECT_EQ(outcome.error().text.find('/'), std::string::npos);
    }
}

TEST_P(ChildProcessTest, CollectsMegabytesFromBothStreamsOfManyChildren) {
    std::vector<Running> jobs;
    for (int i = 0; i < 4; ++i)
        jobs.push_back(start(shell("head -c 3000000 /dev/zero & head -c 2000001 /dev/zero >&2; wait")));
    for (auto& job : jobs) {
        const auto outcome = finish(job);
        ASSERT_TRUE(outcome);
        EXPECT_EQ(outcome->standardOutput.size(), 3'000'000U);
        EXPECT_EQ(outcome->standardError.size(), 2'000'001U);
    }
}

TEST_P(ChildProcessTest, DoesNotWaitForWhoElseHoldsThePipes) {
    const auto before = std::chrono::steady_clock::now();
    const auto outcome = run(shell("head -c 60000 /dev/zero; sleep 20 &"));
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->standardOutput.size(), 60'000U);
    EXPECT_LT(std::chrono::steady_clock::now() - before, 15s);
}

TEST_P(ChildProcessTest, EndsTheWholeGroupWhateverEndsTheWait) {
    for (const bool stubborn : {false, true}) {
        Running late = startLasting(stubborn, 300ms);
        EXPECT_EQ(finish(late).error().kind, ErrorKind::timedOut);
        expectGroupGone();

        Running cancelled = startLasting(stubborn);
        awaitStart();
        cancelled.cancel();
        EXPECT_THROW((void)finish(cancelled), Cancelled);
        expectGroupGone();

        std::optional destroyed = startLasting(stubborn);
        awaitStart();
        destroyed.reset();
        expectGroupGone();
        EXPECT_TRUE(executor.runUntil([this] { return executor.idle(); }, 1s));
    }
}

TEST_P(ChildProcessTest, InheritsNothingButTheStandardStreams) {
    const int careless = ::open("/dev/null", O_RDONLY);  // not closed on exec
    ::signal(SIGPIPE, SIG_IGN);
    const auto listed = run({.program = "ls", .arguments = {"/dev/fd"}});
    const auto killed = run(shell("kill -PIPE $$; echo ignored"));
    ::signal(SIGPIPE, SIG_DFL);
    ::close(careless);
    ASSERT_TRUE(listed && killed);
    EXPECT_EQ(listed->standardOutput, "0\n1\n2\n3\n");  // 3 is the listed directory
    EXPECT_EQ(killed->signal, SIGPIPE);
}

TEST_P(ChildProcessTest, LeaksNothingWhenDescriptorsRunOut) {
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    int started = 0;
    for (int spare = 0; spare < 14; ++spare) {
        auto job = start({.program = "/bin/true", .arguments = {}});
        const rlimit tight{static_cast<rlim_t>(descriptorsBefore + spare - 1), before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &tight);
        const auto outcome = finish(job);
        ::setrlimit(RLIMIT_NOFILE, &before);
        started += outcome.has_value();
        if (!outcome) EXPECT_EQ(outcome.error().kind, ErrorKind::unavailable);
        EXPECT_EQ(openDescriptors(), descriptorsBefore);
    }
    EXPECT_GT(started, 0);
    EXPECT_LT(started, 14);
}

}  // namespace
}  // namespace quillo
