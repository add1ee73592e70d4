// Whatever the help offers, the man page explains and the shell completes.
#include <regex>

#include "WindowEngine/restore/RestoreReport.hpp"
#include "tests/ctl/Quilloctl.hpp"

namespace quillo::ctl {
namespace {

using Names = std::set<std::string>;

Names matches(const std::string& text, const char* expression) {
    const std::regex pattern(expression, std::regex::multiline);
    Names found;
    for (std::sregex_iterator match(text.begin(), text.end(), pattern), end; match != end; ++match)
        found.insert((*match)[1]);
    return found;
}

using HelpTest = QuilloctlTest;

TEST_F(HelpTest, TheManPageAndTheCompletionsKnowEveryCommandAndOption) {
    std::string manual = home_.read(QUILLO_SOURCE_DIR "/packaging/quilloctl.1");
    std::erase(manual, '\\');
    const std::string folder = QUILLO_SOURCE_DIR "/packaging/completions/";
    const std::string completion = home_.read(folder + "quilloctl.bash");
    const std::string zsh = home_.read(folder + "_quilloctl"), fish = home_.read(folder + "quilloctl.fish");
    // Commands stand indented by two with a text behind, options begin with a hyphen.
    const Names commands = matches(done({"--help"}), "^  ([a-z]+) +[a-z]");
    EXPECT_EQ(commands,
              (Names{"doctor",   "windows", "displays", "save",      "plan",   "diff",   "restore", "undo",
                     "list",     "show",    "rename",   "duplicate", "delete", "layout", "watch",   "history",
                     "launcher", "export",  "import",   "validate",  "report", "help"}));
    std::string help = done({"--help"});
    for (const std::string& command : commands) {
        help += done({command, "--help"});
        EXPECT_TRUE(std::regex_search(manual, std::regex("\n\\.(B|BI) \"?" + command + "\\b"))) << command;
        EXPECT_TRUE(std::regex_search(completion, std::regex("commands=.*\\b" + command + "\\b"))) << command;
        EXPECT_NE(zsh.find("'" + command + ":"), std::string::npos) << command;
        EXPECT_NE(fish.find("'" + command + " "), std::string::npos) << command;
    }
    const std::string inFamilies[][2] = {{"layout", "list"},  {"layout", "save"},   {"layout", "remove"},
                                         {"history", "list"}, {"history", "save"},  {"history", "clear"},
                                         {"launcher", "add"}, {"launcher", "list"}, {"launcher", "remove"}};
    for (const auto& [family, command] : inFamilies) {
        help += done({family, command, "--help"});
        EXPECT_TRUE(
            std::regex_search(manual, std::regex(fmt::format("\n\\.(B|BI) \"?{} {}", family, command))))
            << family << command;
    }
    const Names options = matches(help, "[ ,](--[a-z-]+)");
    for (const char* option : {"--json", "--only", "--force", "--update"})
        EXPECT_TRUE(options.contains(option));
    for (const std::string& option : options) {
        EXPECT_NE(manual.find(option), std::string::npos) << option;
        for (const std::string& shell : {completion, zsh})
            EXPECT_NE(shell.find(option), std::string::npos) << option;
        EXPECT_NE(fish.find("-l " + option.substr(2)), std::string::npos) << option;
    }
}

TEST_F(HelpTest, BashCompletesCommandsOptionsAndNames) {
    const std::string script = file("ctl.sh", "quilloctl() { '" QUILLOCTL R"(' "$@"; }
source ')" QUILLO_SOURCE_DIR R"(/packaging/completions/quilloctl.bash'
COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
_quilloctl
printf '%s\n' "${COMPREPLY[@]}"
)");
    const std::string path = file("in.json", document(R"(My \"work\")"));
    EXPECT_EQ(run({"import", path}).status, 0);
    done({"--desktop", "simulated:" QUILLO_SOURCE_DIR "/tests/scenes/desk.json", "history", "save"});
    const std::pair<Texts, Texts> cases[] = {
        {{"d"}, {"delete", "diff", "displays", "doctor", "duplicate"}},
        {{"--json", "re"}, {"rename", "report", "restore"}},
        {{"restore", "x", "--o"}, {"--only"}},
        {{"save", "--update", "my"}, {R"(My\ \"work\")"}},
        {{"rename", ""}, {R"(My\ \"work\")"}},
        {{"restore", ""}, {"Last\\ session", R"(My\ \"work\")"}},
        {{"restore", "other"}, {""}},
        {{"history", ""}, {"clear", "list", "save"}},
        {{"help", "launcher", ""}, {"add", "list", "remove"}},
        {{"import", home_ / "in"}, {path}},
        {{"show", "\"my"}, {R"(My \"work\"")"}},
        {{"show", "My\\ "}, {R"(My\ \"work\")"}},
        {{"restore", "My\\ \\\"work\\\"", "--only", ""}, {"Editor"}},
        {{"--desktop", "simulated", ":", home_ / "in"}, {path}},
    };
    for (auto [words, completed] : cases) {
        words.insert(words.begin(), {"bash", script, "quilloctl"});
        Texts found = lines(runWith({}, words).out);
        std::ranges::sort(found);
        EXPECT_EQ(found, completed);
    }
}

TEST_F(HelpTest, VersionAndHelpSucceedAndNeedNothing) {
    expectSteps({{{"--version"}, 0, "quilloctl "},
                 {{"help"}, 0, "--keep-scene"},
                 {{"--data-dir", "", "list"}, 2, "no folder is named"},
                 {{"restore", "--help"}, 0, "--only APP"}});
    EXPECT_EQ(runWith({"HOME=relative", "--unset=HOME"}, {QUILLOCTL, "--help"}).status, 0);
}

}  // namespace
}  // namespace quillo::ctl
