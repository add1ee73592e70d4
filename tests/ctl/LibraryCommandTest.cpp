// The saved workspaces and workspace files, from outside: what is printed, the exit status, the files.
#include "tests/ctl/Quilloctl.hpp"

namespace quillo::ctl {
namespace {

constexpr const char* otherId = "00000000-0000-4000-8000-00000000000a";
const std::string workspaces = ".local/share/Quillo/workspaces";

class LibraryCommandTest : public QuilloctlTest {
  protected:
    void store(const std::string& name, const std::string& id = exampleId) {
        std::filesystem::create_directories(home_ / workspaces);
        home_.write(workspaces + "/" + id + ".json", document(name, id));
    }
    Texts names() {
        Texts names = members(done({"list", "--json"}), "name");
        std::ranges::sort(names);  // the order of one second is open
        return names;
    }
};

TEST_F(LibraryCommandTest, UsageErrorsNameTheArgument) {
    store("Work");
    expectSteps({
        {{}, 2, "a command is required"},
        {{"frobnicate"}, 2, "no command or option frobnicate"},
        {{"list", "--frobnicate"}, 2, "--frobnicate"},
        {{"history"}, 2, "history: a command is required"},
        {{"history", "forget"}, 2, "history: there is no command or option forget"},
        {{"show"}, 2, "W is required"},
        {{"lsit"}, 2, "no command or option lsit; did you mean list?"},
        {{"list", "--jsn"}, 2, "--jsn; did you mean --json?"},
        {{"help", "history", "sve"}, 2, "help: there is no command sve; did you mean save?"},
        {{"help", "history", "save"}, 0, "Usage: quilloctl history save"},
        {{"export", "Work"}, 2, "FILE is required"},
        {{"export", "Work", "Work", "x.json"}, 2, "FILE: several workspaces go into a folder, and x.json is"},
        {{"rename", "Work"}, 2, "rename: NAME is required\nSee quilloctl rename --help.\n"},
        {{"rename"}, 2, "rename: W and NAME are required"},
        {{"restore", "Work", "--adapter"}, 2, "--adapter: no ID is given"},
        {{"--desktop"}, 2, "--desktop: no DESKTOP is given"},
        {{"rename", "Work", " \t\n"}, 2, "NAME: the name is empty"},
        {{"rename", "Work", "\xff"}, 2, "NAME: not valid UTF-8"},
        {{"save", ""}, 2, "NAME: the name is empty"},
        {{"save"}, 2, "NAME"},
        {{"save", "A", "--update", "Work"}, 2, "excludes"},
        {{"export", "Work", ""}, 2, "FILE: the name is empty"},
        {{"validate", ""}, 2, "FILE: the name is empty"},
        {{"import", ""}, 2, "FILE: the name is empty"},
        {{"--desktop", "wayland", "list"}, 2, "--desktop: wayland"},
        {{"--desktop", "simulated:", "list"}, 2, "--desktop: simulated:"},
        {{"--keep-scene", "list"}, 2, "--keep-scene"},
    });
    EXPECT_EQ(names(), Texts{"Work"});
    EXPECT_EQ(runWith({"QUILLO_DESKTOP=wayland"}, {QUILLOCTL, "list"}).err,
              "quilloctl: QUILLO_DESKTOP: wayland is neither x11 nor simulated:FILE\n");
}

TEST_F(LibraryCommandTest, WorkspacesAreFoundByNameOrIdentifierAndNeverGuessed) {
    expectSteps({{{"list"}, 0, "quilloctl save NAME"}, {{"list", "--json"}, 0, ""}});
    EXPECT_FALSE(std::filesystem::exists(home_ / ".local")) << "a look must not create anything";
    store("Büro");
    for (const char* which : {"bÜRO", "6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60", exampleId})
        EXPECT_EQ(members(done({"show", which, "--json"}), "name"), Texts{"Büro"});
    expectSteps({{{"show", "büor"}, 1, "no workspace büor; did you mean Büro?\n"},
                 {{"show", ""}, 1, "no workspace \"\"\n"},
                 {{"show", "say \"a\""}, 1, R"(no workspace "say \"a\"")"},
                 {{"show", "6F1c"}, 0, "Büro"},
                 {{"show", "6f1"}, 1, "no workspace 6f1; of an identifier give 4 characters at least\n"},
                 {{"list", "--long"}, 0, exampleId}});
    store("BÜRO", otherId);
    for (const char* command : {"show", "delete", "duplicate"}) {
        expectSteps({{{command, "Work"}, 1, "quilloctl: there is no workspace Work\n"},
                     {{command, "büro"}, 1, "2 workspaces are named büro"},
                     {{command, "büro"}, 1, exampleId},
                     {{command, "büro"}, 1, otherId}});
    }
    store("Third", "6f1c2a9e-0000-4000-8000-000000000000");
    expectSteps({{{"delete", "6f1c"}, 1, "2 identifiers begin with 6f1c"},
                 {{"delete", otherId, "Thrid"}, 1, "did you mean Third?"}});  // then none goes
    EXPECT_EQ(done({"delete", otherId, "third", otherId}), "Deleted BÜRO\nDeleted Third\n");
    EXPECT_EQ(names(), Texts{"Büro"});
}

TEST_F(LibraryCommandTest, RenameDuplicateAndDeleteKeepNamesUnique) {
    store("Work");
    expectSteps({{{"duplicate", "work"}, 0, "Duplicated Work as \"Work copy\"\n"},
                 {{"duplicate", "work"}, 0, "Duplicated Work as \"Work copy 2\"\n"},
                 {{"rename", "Work copy 2", "  work  "}, 0, "Renamed \"Work copy 2\" to \"work 2\"\n"},
                 {{"rename", "work 2", "WORK 2"}, 0, "Renamed \"work 2\" to \"WORK 2 2\"\n"},
                 {{"rename", "Work", "Work"}, 0, "Unchanged: Work\n"},
                 {{"rename", "Work", "--", "-v"}, 0, "Renamed Work to -v\n"},
                 {{"delete", "work copy"}, 0, "Deleted \"Work copy\"\n"}});
    EXPECT_EQ(names(), (Texts{"-v", "WORK 2 2"}));
    home_.write(workspaces + "/by hand.json", document("Mine", otherId));
    expectSteps({{{"list"}, 0, std::string("quilloctl: by hand.json: renamed to ") + otherId + ".json\n"}});
    home_.write(workspaces + "/copy.json", document("Other", otherId));
    expectSteps({{{"delete", "Other"}, 1, "no workspace Other"}, {{"delete", otherId}, 0, "Deleted Mine\n"}});
    EXPECT_EQ(names(), (Texts{"-v", "WORK 2 2"}));
}

TEST_F(LibraryCommandTest, TextsFromElsewhereCannotDriveTheTerminal) {
    store("a\\u001b[31m\\nb");
    const std::string shown = done({"show", exampleId});
    EXPECT_EQ(shown.find('\x1b'), std::string::npos);
    for (const char* part : {"a\\x1b[31m\\nb\n", "Letter\\x1b[2J\\n\\u202e 日本  300 × 400 at 1, 2",
                             "Mar 14, 2025", "1 application, 1 window, 0 displays, 2 folders\n"})
        EXPECT_NE(shown.find(part), std::string::npos) << shown;
    EXPECT_EQ(lines(done({"list"})).size(), 2U) << "a line feed in a name must not make a line";
    EXPECT_EQ(names(), Texts{"a\x1b[31m\nb"});

    const std::string show = std::string("show ") + exampleId;
    const std::string plain = onTerminal("NO_COLOR=1", show);
    EXPECT_EQ(plain.find('\x1b'), std::string::npos) << plain;
    for (const std::string& line : lines(plain))
        EXPECT_LE(line.size(), 60U + 12U) << line;  // bytes, not columns
    EXPECT_NE(plain.find("…"), std::string::npos) << plain;
    EXPECT_NE(onTerminal("NO_COLOR=", show).find("\x1b[1ma"), std::string::npos) << "empty is not set";

    store("A name that is long enough to be cut", otherId);
    const std::string table = onTerminal("NO_COLOR=1", "list --long", 80);
    for (const std::string& line : lines(table)) EXPECT_LE(line.size(), 80U + 3U) << line;
    for (const char* part : {"A name that is lo…  ", "  3/14/25  never ", "  6f1c2a9e\r"})
        EXPECT_NE(table.find(part), std::string::npos) << table;
}

TEST_F(LibraryCommandTest, ExportWritesAtomicallyForItsOwnerAndOverwritesOnlyWhenForced) {
    store("Work");
    const std::string path = home_ / "work.json";
    expectSteps({{{"export", "work", path}, 0, "Exported Work to " + path + "\n"}});
    EXPECT_NE(home_.read("work.json").find(exampleId), std::string::npos) << "as show has it";
    EXPECT_EQ(home_.mode("work.json"), 0600U);
    home_.write("work.json", "mine");
    expectSteps({{{"export", "work", path}, 1, path + ": a file of this name exists; --force"}});
    EXPECT_EQ(home_.read("work.json"), "mine");
    expectSteps({{{"export", "work", path, "--force"}, 0, ""},
                 {{"validate", path}, 0, path + ": a sound workspace file, Work\n"},
                 {{"export", "work", home_ / "none/x.json"},
                  1,
                  "there is no folder " + (home_ / "none").string() + "\n"},
                 {{"export", "work", home_.path()}, 0, "Exported Work to " + (home_ / "Work.json").string()},
                 {{"export", "work", home_.path()}, 1, "Work.json: a file of this name exists; --force"}});
    store("a/b", otherId);
    std::filesystem::create_directory_symlink(home_.path(), home_ / "link");
    std::filesystem::create_symlink("later.json", home_ / "linked.json");
    expectSteps({{{"export", "work", home_ / "linked.json"}, 0, "Exported Work"},
                 {{"export", "work", "a/b", home_ / "link", "--force"},
                  0,
                  "Exported a/b to " + (home_ / "link/a-b.json").string()},
                 {{"validate", home_ / "link/a-b.json"}, 0, "a sound workspace file, a/b\n"}});
    EXPECT_EQ(done({"export", "Work", "a/b", home_ / "link", "--force", "-q"}), "");
    EXPECT_EQ(home_.names(), (std::set<std::string>{"work.json", "Work.json", "a-b.json", "link",
                                                    "linked.json", "later.json", ".local"}));
    const Ran piped = runWith({}, {"sh", "-c", "\"$0\" export Work - | \"$0\" import -", QUILLOCTL});
    EXPECT_EQ(piped.out, "Imported \"Work 2\"\n") << piped.err;
    EXPECT_NE(runWith({}, {"sh", "-c", "echo '{' | \"$0\" validate -", QUILLOCTL})
                  .err.find("quilloctl: standard input: "),
              std::string::npos);
}

TEST_F(LibraryCommandTest, ImportGivesAnIdentityOfItsOwnAndSaysWhatItLeftOut) {
    const std::string path = file("in.json", document("Work"));
    expectSteps({{{"import", path}, 0, "Imported Work\nquilloctl: 1 address left out: "},
                 {{"import", path}, 0, "Imported \"Work 2\"\nquilloctl: 1 address left out: "}});
    EXPECT_EQ(names(), (Texts{"Work", "Work 2"}));
    EXPECT_EQ(done({"list", "--json"}).find(exampleId), std::string::npos);
    EXPECT_EQ(done({"show", "Work", "--json"}).find("x.example"), std::string::npos);
    EXPECT_EQ(home_.mode(workspaces), 0700U);
}

TEST_F(LibraryCommandTest, ABadFileIsNamedWithItsFieldAndChangesNothing) {
    const std::string sound = document("Work");
    std::string wrongType = sound, version3 = sound;
    wrongType.replace(wrongType.find("[[1,2],[300,400]]"), 17, "\"everywhere\"");
    version3.replace(version3.find("Version\":2"), 10, "Version\":3");
    const struct {
        std::string bytes, complaint;
    } cases[] = {
        {"", ": "},
        {sound.substr(0, 300), ": "},
        {document("caf\xe9"), ": "},
        {std::string(5000, '['), ": "},
        {wrongType, ": snapshot.applications[0].windows[0].frame"},
        {version3, ": Unsupported workspace schema v3; this build supports v2.\n"},
    };
    for (const std::string command : {"validate", "import"}) {
        for (const auto& c : cases) {
            const std::string path = file("bad.json", c.bytes);
            expectSteps({{{command, path}, 1, "quilloctl: " + path + c.complaint}});
            EXPECT_EQ(lines(run({command, path}).err).size(), 1U) << c.complaint;
        }
        for (const std::string& path :
             {home_.path().string(), (home_ / "none").string(), std::string("/dev/zero")})
            expectSteps({{{command, path}, 1, path}});
    }
    EXPECT_FALSE(std::filesystem::exists(home_ / workspaces));
}

TEST_F(LibraryCommandTest, AStoreThatIsDamagedOrCannotBeWrittenIsSaid) {
    store("Work");
    const std::string blocked = file("blocked", "a file where a directory should be");
    const std::string path = file("in.json", document("Work"));
    expectSteps({{{"import", path, "--data-dir", blocked}, 1, "--data-dir: " + blocked + " is no folder"},
                 {{"history", "list", "--data-dir", blocked}, 1, "--data-dir: "}});
    EXPECT_EQ(home_.read("blocked"), "a file where a directory should be");

    home_.write(workspaces + "/broken.json", R"({"schemaVersion":2,"id":7})");
    const Ran ran = run({"list", "--json"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(members(ran.out, "name"), Texts{"Work"});
    EXPECT_EQ(ran.err, "quilloctl: Could not read broken.json or its backup. (color: missing)\n");
    const Ran full = runWith({}, {"sh", "-c", QUILLOCTL " list >/dev/full"});
    EXPECT_EQ(full.status, 1);
    EXPECT_NE(full.err.find("standard output"), std::string::npos);
}

TEST_F(LibraryCommandTest, LaunchersAreKeptWithTheSettingsOfThisMachine) {
    expectSteps(
        {{{"launcher", "list"}, 0, "No launchers."},
         {{"launcher", "add", "XClock", "xclok-that-is-not", "-update"}, 1, "there is no program xclok-"},
         {{"launcher", "add", "XClock"}, 2, "COMMAND is required"},
         {{"launcher", "add", " ", "env"}, 2, "APP: the name is empty"},
         {{"launcher", "add", "XClock", "--", "env", "--help", "it's"},
          0,
          R"(Starts xclock: env --help 'it'\''s')"},
         {{"--json", "launcher", "list"}, 0, R"({"application":"xclock","command":["env","--help","it's"]})"},
         {{"launcher", "remove", "xclok"}, 1, "no launcher for xclok; did you mean xclock?"}});
    EXPECT_NE(home_.read(".config/Quillo/defaults.json").find("\"launchers\""), std::string::npos);
    expectSteps({{{"launcher", "remove", "xCLOCK"}, 0, "No longer starts xclock"},
                 {{"launcher", "list"}, 0, "No launchers."}});
}

TEST_F(LibraryCommandTest, TheDataDirectoryComesFromOptionVariableAndStandard) {
    const std::string path = file("in.json", document("Work")), home = home_.path();
    const struct {
        Texts environment, arguments;
        std::string where;
    } cases[] = {
        {{}, {}, ".local/share/Quillo"},
        {{"XDG_DATA_HOME=relative"}, {}, ".local/share/Quillo"},
        {{"XDG_DATA_HOME=" + home + "/x"}, {}, "x/Quillo"},
        {{"QUILLO_DATA_DIR=" + home + "/v"}, {}, "v"},
        {{"QUILLO_DATA_DIR=" + home + "/v"}, {"--data-dir", home + "/o"}, "o"},
    };
    for (const auto& c : cases) {
        Texts arguments{QUILLOCTL, "import", path};
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        EXPECT_EQ(runWith(c.environment, arguments).status, 0);
        EXPECT_FALSE(std::filesystem::is_empty(home_ / c.where / "workspaces")) << c.where;
        std::filesystem::remove_all(home_ / c.where);
    }
}

}  // namespace
}  // namespace quillo::ctl
