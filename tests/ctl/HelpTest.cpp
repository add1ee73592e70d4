// Whatever the help offers, the man page explains and the shell completes.
#include <algorithm>
#include <regex>
#include <set>

#include "tests/ctl/Quilloctl.hpp"

namespace quillo::ctl {
namespace {

std::set<std::string> matches(const std::string& text, const char* expression) {
    const std::regex pattern(expression, std::regex::multiline);
    std::set<std::string> found;
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match) {
        found.insert((*match)[1]);
    }
    return found;
}

class HelpTest : public QuilloctlTest {
  protected:
    /// Commands stand indented by two with a text behind, options begin with a hyphen.
    std::set<std::string> commands() { return matches(done({"--help"}), "^  ([a-z]+) +[a-z]"); }
    std::set<std::string> optionsOf(const std::vector<std::string>& arguments) {
        return matches(done(arguments), "[ ,](--[a-z-]+)");
    }
};

TEST_F(HelpTest, TheManPageAndTheCompletionKnowEveryCommandAndOption) {
    std::string manual = contents(QUILLO_SOURCE_DIR "/packaging/quilloctl.1");
    std::erase(manual, '\\');
    const std::string completion = contents(QUILLO_SOURCE_DIR "/packaging/completions/quilloctl.bash");

    const std::set<std::string> expected{"doctor",  "windows", "displays", "save",    "plan",
                                         "restore", "list",    "show",     "rename",  "duplicate",
                                         "delete",  "export",  "import",   "validate"};
    EXPECT_EQ(commands(), expected);
    std::set<std::string> options = optionsOf({"--help"});
    EXPECT_TRUE(options.contains("--json"));
    for (const std::string& command : commands()) {
        options.merge(optionsOf({command, "--help"}));
        EXPECT_TRUE(std::regex_search(manual, std::regex("\n\\.(B|BI) \"?" + command + "\\b"))) << command;
        EXPECT_TRUE(std::regex_search(completion, std::regex("commands=.*\\b" + command + "\\b"))) << command;
    }
    EXPECT_TRUE(options.contains("--only") && options.contains("--force") && options.contains("--update"));
    for (const std::string& option : options) {
        EXPECT_NE(manual.find(option), std::string::npos) << option;
        EXPECT_NE(completion.find(option), std::string::npos) << option;
    }
}

TEST_F(HelpTest, BashCompletesCommandsOptionsAndNames) {
    file("ctl.sh", std::string(R"(
quilloctl() { ')") + QUILLOCTL +
                       R"(' "$@"; }
source ')" QUILLO_SOURCE_DIR R"(/packaging/completions/quilloctl.bash'
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
_quilloctl
printf '%s\n' "${COMPREPLY[@]}"
)");
    const auto completed = [&](std::vector<std::string> words) {
        words.insert(words.begin(), {"bash", (home_ / "ctl.sh").string(), "quilloctl"});
        Texts found = lines(runWith({}, words).out);
        std::ranges::sort(found);
        return found;
    };
    file("in.json",
         R"({"schemaVersion":2,"id":"6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60","name":"My \"work\"","icon":"i",)"
         R"("color":"teal","createdAt":"2025-03-14T09:26:53Z","updatedAt":"2025-03-14T09:26:53Z","snapshot":)"
         R"({"capturedAt":"2025-03-14T09:26:50Z","displays":[],"applications":[]}})");
    done({"import", home_ / "in.json"});

    EXPECT_EQ(completed({"d"}), (Texts{"delete", "displays", "doctor", "duplicate"}));
    EXPECT_EQ(completed({"--json", "re"}), (Texts{"rename", "restore"}));
    EXPECT_EQ(completed({"restore", "x", "--o"}), Texts{"--only"});
    EXPECT_EQ(completed({"save", "--update", "my"}), Texts{R"(My\ \"work\")"});
    EXPECT_EQ(completed({"restore", ""}), Texts{R"(My\ \"work\")"});
    EXPECT_EQ(completed({"restore", "other"}), Texts{""});
    EXPECT_EQ(completed({"import", (home_ / "in").string()}), Texts{(home_ / "in.json").string()});
}

TEST_F(HelpTest, VersionAndHelpSucceedAndNeedNothing) {
    EXPECT_EQ(done({"--version"}).rfind("quilloctl ", 0), 0U);
    EXPECT_NE(done({"restore", "--help"}).find("--only APP"), std::string::npos);
    const Ran homeless = runWith({"HOME=relative", "--unset=HOME"}, {QUILLOCTL, "--help"});
    EXPECT_EQ(homeless.status, 0);
}

}  // namespace
}  // namespace quillo::ctl
