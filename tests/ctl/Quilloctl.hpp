// Runs the built quilloctl as a child, in a home directory of its own.
#pragma once
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <simdjson.h>

#include <algorithm>
#include <cstdlib>
#include <sstream>
#include <vector>

#include "WindowEngine/support/Job.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "platform/posix/ChildProcess.hpp"
#include "tests/LogWords.hpp"
#include "tests/TemporaryDirectory.hpp"

namespace quillo::ctl {

using Texts = std::vector<std::string>;

struct Ran {
    int status = 0;
    std::string out, err;
};
struct Step {
    Texts arguments;
    int status;
    std::string says;  // on either stream
};

class QuilloctlTest : public testing::Test {
  protected:
    std::string log() { return home_.read(".local/state/Quillo/quillo.log"); }
    void TearDown() override { expectOnlyKnownSentences(log()); }

    /// With nothing of the caller's environment but a sanitizer's options; `environment` holds NAME=value.
    Ran runWith(const Texts& environment, const Texts& arguments) {
        Texts all{"-i", "PATH=/usr/bin:/bin", "HOME=" + home_.path().string(), "TZ=UTC", "LC_ALL=en_US"};
        if (const char* sanitizer = std::getenv("TSAN_OPTIONS")) {
            all.push_back("TSAN_OPTIONS=" + std::string(sanitizer));
        }
        all.insert(all.end(), environment.begin(), environment.end());
        all.insert(all.end(), arguments.begin(), arguments.end());
        LoopExecutor loop;
        Job<Result<ChildProcess::Outcome>> job(
            loop, ChildProcess::run({.program = "env", .arguments = all}, std::chrono::seconds{60}));
        loop.runUntil([&job] { return job.done(); }, std::chrono::seconds{90});
        const Result<ChildProcess::Outcome> outcome = job.result();
        EXPECT_TRUE(outcome) << outcome.error().text;
        return outcome ? Ran{outcome->exitStatus, outcome->standardOutput, outcome->standardError} : Ran{};
    }
    Ran run(Texts arguments) {
        arguments.insert(arguments.begin(), QUILLOCTL);
        return runWith({}, arguments);
    }
    /// On a terminal.
    std::string onTerminal(const std::string& environment, const std::string& arguments, int columns = 60) {
        const std::string command = fmt::format("stty cols {}; exec " QUILLOCTL " {}", columns, arguments);
        return runWith({"TERM=xterm", "SHELL=/bin/sh", environment}, {"script", "-qec", command, "/dev/null"})
            .out;
    }
    /// A command that must succeed without a complaint; its output.
    std::string done(const Texts& arguments) {
        const Ran ran = run(arguments);
        EXPECT_EQ(ran.status, 0) << ran.out << ran.err;
        EXPECT_EQ(ran.err, "");
        return ran.out;
    }
    /// What fails altogether prints one complaint and nothing else.
    void expectSteps(const std::vector<Step>& steps) {
        for (const Step& step : steps) {
            const Ran ran = run(step.arguments);
            EXPECT_EQ(ran.status, step.status) << step.says << "\n" << ran.out << ran.err;
            EXPECT_NE((ran.out + ran.err).find(step.says), std::string::npos) << step.says << "\n"
                                                                              << ran.out << ran.err;
            if (ran.status != 1 && ran.status != 2) continue;
            EXPECT_EQ(ran.out, "");
            EXPECT_EQ(ran.err.find("quilloctl: "), 0U) << ran.err;
        }
    }
    std::string file(const std::string& name, std::string_view text) {
        home_.write(name, text);
        return home_ / name;
    }

    TemporaryDirectory home_;
};

inline Texts lines(const std::string& text) {
    Texts lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

/// One text member of every JSON line, "" where a line has none; fails the test on a line that is no object.
inline Texts members(const std::string& jsonLines, const char* key) {
    Texts values;
    simdjson::dom::parser parser;
    for (const std::string& line : lines(jsonLines)) {
        simdjson::dom::object object;
        EXPECT_EQ(parser.parse(line).get(object), simdjson::SUCCESS) << line;
        std::string_view value;
        values.emplace_back(object[key].get(value) == simdjson::SUCCESS ? value : "");
    }
    return values;
}

constexpr const char* exampleId = "6f1c2a9e-0b7d-4e51-9c3a-2d4b8e7f1a60";

/// A sound document; `name` as it stands in JSON.
inline std::string document(std::string_view name, std::string_view id = exampleId) {
    return fmt::format(
        R"({{"schemaVersion":2,"id":"{}","name":"{}","icon":"briefcase","color":"teal",)"
        R"("createdAt":"2025-03-14T09:26:53Z","updatedAt":"2025-03-14T09:26:53Z",)"
        R"("snapshot":{{"capturedAt":"2025-03-14T09:26:50Z","displays":[],"applications":[{{"bundleIdentifier":)"
        R"("org.editor","name":"Editor","windows":[{{"frame":[[1,2],[300,400]],"index":0,"isFullscreen":false,)"
        R"("isMinimized":false,"normalizedFrame":[[0,0],[1,1]],"title":"Letter\u001b[2J\n\u202e 日本"}}],"context":)"
        R"({{"adapter":"finder","windows":[{{"urls":["file:///tmp/","https://x.example/"]}}]}}}}]}}}})",
        id, name);
}

}  // namespace quillo::ctl
