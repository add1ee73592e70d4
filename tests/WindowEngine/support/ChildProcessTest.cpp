// Real child processes, on both loops: on the virtual one they show that its clock waits for outside work.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <filesystem>
#include <optional>
#include <thread>

#include "WindowEngine/support/ChildProcess.hpp"
#include "WindowEngine/support/Loops.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
namespace fs = std::filesystem;

std::ptrdiff_t openDescriptors() {
    return std::distance(fs::directory_iterator("/dev/fd"), fs::directory_iterator());
}

ChildProcess::Arguments shell(std::string script, std::vector<std::string> arguments = {}) {
    arguments.insert(arguments.begin(), {"-c", std::move(script), "sh"});
    return {.program = "sh", .arguments = std::move(arguments), .grace = 100ms};
}

template <class LoopUnderTest>
class ChildProcessTest : public testing::Test {
  protected:
    using Running = Job<Result<ChildProcess::Outcome>>;

    ChildProcessTest() {
        std::string name = fs::temp_directory_path() / "quillo-child-XXXXXX";
        directory = ::mkdtemp(name.data());
        ::mkfifo((directory / "alive").c_str(), 0600);
        descriptorsBefore = openDescriptors();
    }
    ~ChildProcessTest() override { fs::remove_all(directory); }
    void TearDown() override {
        EXPECT_TRUE(executor.idle());
        EXPECT_EQ(openDescriptors(), descriptorsBefore);
        EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child is left";
        EXPECT_EQ(errno, ECHILD);
    }

    Running start(ChildProcess::Arguments arguments, Duration limit = 20s) {
        return Running(executor, ChildProcess::run(std::move(arguments), limit));
    }
    Result<ChildProcess::Outcome> finish(Running& job) {
        EXPECT_TRUE(executor.runUntil([&] { return executor.idle(); }, 30s));
        return job.result();
    }
    /// A script whose whole group holds the pipe `alive` open; survives a polite request when `stubborn`.
    std::string lasting(bool stubborn) {
        alive = ::open((directory / "alive").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        ownEnd =
            ::open((directory / "alive").c_str(), O_WRONLY | O_CLOEXEC);  // or it would look gone already
        return std::string(stubborn ? "trap '' TERM; " : "") + "exec 9>" + (directory / "alive").string() +
               "; sleep 60 & echo started >&9; sleep 60";
    }
    /// What the group wrote next; nothing, once all of it is gone.
    std::string readAlive() const {
        pollfd watched{alive, POLLIN, 0};
        if (::poll(&watched, 1, 20'000) != 1) return "nothing happened";
        std::string text(100, '\0');
        text.resize(static_cast<std::size_t>(std::max<ssize_t>(::read(alive, text.data(), text.size()), 0)));
        return text;
    }
    void awaitStart() {
        std::optional<std::string> told;
        std::thread thread([&, work = executor.outsideWork()] {
            executor.post([&told, text = readAlive()] { told = text; });
        });
        EXPECT_TRUE(executor.runUntil([&] { return told.has_value(); }, 20s));
        thread.join();
        EXPECT_EQ(told, started);
    }
    void expectGroupGone() {
        ::close(ownEnd);
        std::string rest = readAlive();
        if (rest == started) rest = readAlive();
        EXPECT_EQ(rest, "");
        ::close(alive);
    }

    const std::string started = "started\n";
    fs::path directory;
    int alive = -1, ownEnd = -1;
    std::ptrdiff_t descriptorsBefore = 0;
    LoopUnderTest executor;
};
using Loops = testing::Types<VirtualExecutor, LoopExecutor>;
TYPED_TEST_SUITE(ChildProcessTest, Loops);

TYPED_TEST(ChildProcessTest, GivesStatusSignalAndBothStreams) {
    const struct {
        ChildProcess::Arguments arguments;
        int status, signal;
        const char *output, *error;
    } cases[] = {
        {shell("echo out; echo err >&2; exit 3"), 3, 0, "out\n", "err\n"},
        {shell("printf '%s|' \"$@\"", {"a b", "", "$HOME 'x' \"y\" *"}), 0, 0, "a b||$HOME 'x' \"y\" *|", ""},
        {shell("cat; echo end"), 0, 0, "end\n", ""},
        {shell("echo first; kill -KILL $$"), 137, SIGKILL, "first\n", ""},
        {shell("kill -PIPE $$"), 141, SIGPIPE, "", ""},
        {{.program = "/bin/true", .arguments = {}}, 0, 0, "", ""},
    };
    for (const auto& expected : cases) {
        auto job = this->start(expected.arguments);
        const auto outcome = this->finish(job);
        ASSERT_TRUE(outcome) << outcome.error().text;
        EXPECT_EQ(outcome->exitStatus, expected.status);
        EXPECT_EQ(outcome->signal, expected.signal);
        EXPECT_EQ(outcome->standardOutput, expected.output);
        EXPECT_EQ(outcome->standardError, expected.error);
    }
}

TYPED_TEST(ChildProcessTest, SaysWhyAProgramCannotBeStarted) {
    for (const auto& [program, kind] : {std::pair{"/nowhere/at all", ErrorKind::notFound},
                                        {"no-such-program-in-path", ErrorKind::notFound},
                                        {"/etc", ErrorKind::permission}}) {
        auto job = this->start({.program = program, .arguments = {}});
        const auto outcome = this->finish(job);
        ASSERT_FALSE(outcome);
        EXPECT_EQ(outcome.error().kind, kind) << program;
        EXPECT_EQ(outcome.error().text.find('/'), std::string::npos);
    }
}

TYPED_TEST(ChildProcessTest, CollectsMegabytesFromBothStreamsOfManyChildren) {
    std::vector<typename TestFixture::Running> jobs;
    for (int i = 0; i < 4; ++i)
        jobs.push_back(this->start(shell("head -c 3000000 /dev/zero & head -c 2000001 /dev/zero >&2; wait")));
    for (auto& job : jobs) {
        const auto outcome = this->finish(job);
        ASSERT_TRUE(outcome);
        EXPECT_EQ(outcome->standardOutput.size(), 3'000'000U);
        EXPECT_EQ(outcome->standardError.size(), 2'000'001U);
    }
}

TYPED_TEST(ChildProcessTest, DoesNotWaitForWhoElseHoldsThePipes) {
    const auto before = std::chrono::steady_clock::now();
    auto job = this->start(shell("head -c 60000 /dev/zero; sleep 20 &"));
    const auto outcome = this->finish(job);
    ASSERT_TRUE(outcome);
    EXPECT_EQ(outcome->standardOutput.size(), 60'000U);
    EXPECT_LT(std::chrono::steady_clock::now() - before, 15s);
}

TYPED_TEST(ChildProcessTest, EndsTheWholeGroupAtItsTimeLimit) {
    for (const bool stubborn : {false, true}) {
        auto job = this->start(shell(this->lasting(stubborn)), 300ms);
        const auto outcome = this->finish(job);
        ASSERT_FALSE(outcome);
        EXPECT_EQ(outcome.error().kind, ErrorKind::timedOut);
        this->expectGroupGone();
    }
}

TYPED_TEST(ChildProcessTest, IsGoneWhenACancelledTaskEnds) {
    for (const bool stubborn : {false, true}) {
        auto job = this->start(shell(this->lasting(stubborn)));
        this->awaitStart();
        job.cancel();
        EXPECT_THROW(this->finish(job), Cancelled);
        this->expectGroupGone();
    }
}

TYPED_TEST(ChildProcessTest, IsGoneWhenItsTaskIsDestroyed) {
    std::optional job = this->start(shell(this->lasting(true)));
    this->awaitStart();
    job.reset();
    this->expectGroupGone();
    EXPECT_TRUE(this->executor.runUntil([this] { return this->executor.idle(); }, 1s));
}

TYPED_TEST(ChildProcessTest, InheritsNothingButTheStandardStreams) {
    const int careless = ::open("/dev/null", O_RDONLY);  // not closed on exec
    ::signal(SIGPIPE, SIG_IGN);
    auto job = this->start({.program = "ls", .arguments = {"/dev/fd"}});
    auto ignoring = this->start(shell("kill -PIPE $$; echo ignored"));
    const auto listed = this->finish(job);
    const auto killed = this->finish(ignoring);
    ::signal(SIGPIPE, SIG_DFL);
    ::close(careless);
    ASSERT_TRUE(listed && killed);
    EXPECT_EQ(listed->standardOutput, "0\n1\n2\n3\n");  // 3 is the listed directory
    EXPECT_EQ(killed->signal, SIGPIPE);
}

TYPED_TEST(ChildProcessTest, LeaksNothingWhenDescriptorsRunOut) {
    rlimit before{};
    ::getrlimit(RLIMIT_NOFILE, &before);
    int started = 0;
    for (int spare = 0; spare < 14; ++spare) {
        auto job = this->start({.program = "/bin/true", .arguments = {}});
        const rlimit tight{static_cast<rlim_t>(this->descriptorsBefore + spare - 1), before.rlim_max};
        ::setrlimit(RLIMIT_NOFILE, &tight);
        const auto outcome = this->finish(job);
        ::setrlimit(RLIMIT_NOFILE, &before);
        started += outcome.has_value();
        if (!outcome) EXPECT_EQ(outcome.error().kind, ErrorKind::unavailable);
        EXPECT_EQ(openDescriptors(), this->descriptorsBefore);
    }
    EXPECT_GT(started, 0);
    EXPECT_LT(started, 14);
}

}  // namespace
}  // namespace quillo
