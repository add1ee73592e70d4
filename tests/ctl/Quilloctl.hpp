// Runs the built quilloctl as a child, in a home directory of its own.
#pragma once
#include <gtest/gtest.h>
#include <simdjson.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "WindowEngine/support/ChildProcess.hpp"
#include "WindowEngine/support/Job.hpp"
#include "WindowEngine/support/Loops.hpp"
#include "WindowEngine/support/Uuid.hpp"

namespace quillo::ctl {

struct Ran {
    int status = 0;
    std::string out;
    std::string err;
};

class QuilloctlTest : public testing::Test {
  protected:
    QuilloctlTest()
        : home_(std::filesystem::temp_directory_path() / ("quilloctl-" + Uuid::random().lower())) {
        std::filesystem::create_directories(home_);
    }
    ~QuilloctlTest() override { std::filesystem::remove_all(home_); }

    /// With nothing of the caller's environment but PATH; `environment` holds NAME=value.
    Ran runWith(const std::vector<std::string>& environment, const std::vector<std::string>& arguments) {
        std::vector<std::string> all{"-i", "PATH=/usr/bin:/bin", "HOME=" + home_.string(), "TZ=UTC",
                                     "LC_ALL=en_US"};
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
    Ran run(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), QUILLOCTL);
        return runWith({}, arguments);
    }
    /// A command that must succeed without a complaint; its output.
    std::string done(const std::vector<std::string>& arguments) {
        const Ran ran = run(arguments);
        EXPECT_EQ(ran.status, 0) << ran.out << ran.err;
        EXPECT_EQ(ran.err, "");
        return ran.out;
    }

    std::filesystem::path file(const std::string& name, std::string_view text) {
        std::ofstream(home_ / name) << text;
        return home_ / name;
    }
    static std::string contents(const std::filesystem::path& file) {
        std::stringstream text;
        text << std::ifstream(file).rdbuf();
        return text.str();
    }
    static unsigned mode(const std::filesystem::path& file) {
        struct stat status{};
        return stat(file.c_str(), &status) == 0 ? status.st_mode & 0777U : 0U;
    }
    std::filesystem::path workspaces() const { return home_ / ".local/share/Quillo/workspaces"; }

    std::filesystem::path home_;
};

inline std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

/// One text member of every JSON line, "" where a line has none; fails the test on a line that is no object.
inline std::vector<std::string> members(const std::string& jsonLines, const char* key) {
    std::vector<std::string> values;
    simdjson::dom::parser parser;
    for (const std::string& line : lines(jsonLines)) {
        simdjson::dom::object object;
        EXPECT_EQ(parser.parse(line).get(object), simdjson::SUCCESS) << line;
        std::string_view value;
        values.emplace_back(object[key].get(value) == simdjson::SUCCESS ? value : "");
    }
    return values;
}

using Texts = std::vector<std::string>;

}  // namespace quillo::ctl
