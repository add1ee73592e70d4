// The script runner over real child processes: stand-ins for the interpreter, which shell scripts are.
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include "WindowEngine/integrations/AppleScript.hpp"
#include "WindowEngine/integrations/AppleScriptText.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "platform/posix/ScriptProcess.hpp"
#include "tests/TemporaryDirectory.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using AppleScript::Rows;
using Outcome = std::expected<Rows, AppleScript::Failure>;

class ScriptRunner : public testing::Test {
  protected:
    ~ScriptRunner() override { EXPECT_EQ(::waitpid(-1, nullptr, WNOHANG), -1) << "a child is left"; }

    Job<Outcome> start(const std::string& commands, double timeout = 20) {
        directory.write("interpreter", "#!/bin/sh\n" + commands + "\n");
        ::chmod((directory / "interpreter").c_str(), 0700);
        return Job<Outcome>(loop, AppleScript::run(interpreter, script, timeout));
    }
    Task<void> untilThereIs(std::string name) {
        while (!directory.names().contains(name)) co_await sleepFor(10ms);
    }
    Outcome run(const std::string& commands, double timeout = 20) {
        auto job = start(commands, timeout);
        EXPECT_TRUE(loop.runUntil([&] { return job.done(); }, 30s));
        return job.result();
    }

    const Script script{"com.apple.finder", ScriptRequest::OpenFolder{"/a \"b\" $(c)"}};
    TemporaryDirectory directory;
    ScriptProcess interpreter{directory / "interpreter"};
    LoopExecutor loop;
};

TEST_F(ScriptRunner, GivesRowsOrTheScriptsOwnWords) {
    EXPECT_EQ(run(R"([ "$#$1" = 2-e ] && printf %s "$2")"), AppleScript::rows(AppleScript::text(script)));
    EXPECT_EQ(run(R"(printf 'a\tb\n\nc\n')"), (Rows{{"a", "b"}, {}, {"c"}}));
    EXPECT_EQ(run(R"(printf '\t\tx\n')"), (Rows{{"x"}}));
    EXPECT_EQ(run("true"), Rows{});
    EXPECT_EQ(run(R"(printf '\377\n')"), Rows{}) << "no text";
    EXPECT_EQ(run(R"(echo lost; printf ' \n not allowed \n\n' >&2; exit 1)").error().description,
              "not allowed");
    EXPECT_EQ(run("head -c 3000000 /dev/zero | tr '\\0' x").value().front().front().size(), 3000000u);
    ScriptProcess none(directory / "missing");
    EXPECT_TRUE(interpreter.scripting());
    EXPECT_FALSE(none.scripting());
}

TEST_F(ScriptRunner, EndsAtItsLimitAndWhenCancelled) {
    EXPECT_EQ(run("sleep 60", 0.2).error().description, "Automation timed out.");
    auto job = start("echo begun > " + std::string(directory / "begun") + "; sleep 60");
    Job<void> seen(loop, untilThereIs("begun"));
    EXPECT_TRUE(loop.runUntil([&] { return seen.done(); }, 30s));
    job.cancel();
    EXPECT_TRUE(loop.runUntil([&] { return job.done(); }, 30s));
    EXPECT_THROW(static_cast<void>(job.result()), Cancelled);
}

}  // namespace
}  // namespace quillo
