// The saved workspaces and workspace files, from outside: what is printed, the exit status, the files.
#include <fmt/format.h>

#include <algorithm>

#include "tests/ctl/Quilloctl.hpp"

namespace quillo::ctl {
namespace {

constexpr const char* exampleId = "6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60";

/// A sound document; `name` as it stands in JSON.
std::string document(std::string_view name, std::string_view id = exampleId, std::string_view more = "") {
    return fmt::format(
        R"({{"schemaVersion":2,"id":"{}","name":"{}","icon":"briefcase","color":"teal",)"
        R"("createdAt":"2025-03-14T09:26:53Z","updatedAt":"2025-03-14T09:26:53Z",{})"
        R"("snapshot":{{"capturedAt":"2025-03-14T09:26:50Z","displays":[],"applications":[{{"bundleIdentifier":)"
        R"("org.editor","name":"Editor","windows":[{{"frame":[[1,2],[300,400]],"index":0,"isFullscreen":false,)"
        R"("isMinimized":false,"normalizedFrame":[[0,0],[1,1]],"title":"Letter\u001b[2J\n\u202e 日本"}}],"context":)"
        R"({{"adapter":"finder","windows":[{{"urls":["file:///tmp/","https://x.example/"]}}]}}}}]}}}})",
        id, name, more);
}

class LibraryCommandTest : public QuilloctlTest {
  protected:
    void store(const std::string& name, std::string_view id = exampleId) {
        std::filesystem::create_directories(workspaces());
        std::string lower(id);
        for (char& c : lower) c = static_cast<char>(std::tolower(c));
        std::ofstream(workspaces() / (lower + ".json")) << document(name, id);
    }
    Texts names() {
        Texts names = members(done({"list", "--json"}), "name");
        std::ranges::sort(names);  // the order of one second is open
        return names;
    }
};

TEST_F(LibraryCommandTest, AnEmptyLibrarySaysWhatToDoNext) {
    EXPECT_NE(done({"list"}).find("quilloctl save NAME"), std::string::npos);
    EXPECT_EQ(done({"list", "--json"}), "");
    EXPECT_FALSE(std::filesystem::exists(home_ / ".local")) << "a look must not create anything";
}

TEST_F(LibraryCommandTest, UsageErrorsNameTheArgument) {
    store("Work");
    const struct {
        std::vector<std::string> arguments;
        std::string complaint;
    } cases[] = {
        {{}, "a command is required"},
        {{"frobnicate"}, "no command or option frobnicate"},
        {{"list", "--frobnicate"}, "--frobnicate"},
        {{"show"}, "W is required"},
        {{"rename", "Work"}, "NAME is required"},
        {{"rename", "Work", " \t\n"}, "NAME: the name is empty"},
        {{"rename", "Work", "\xff"}, "NAME: not valid UTF-8"},
        {{"save", ""}, "NAME: the name is empty"},
        {{"save"}, "NAME"},
        {{"save", "A", "--update", "Work"}, "excludes"},
        {{"export", "Work", ""}, "FILE: the name is empty"},
        {{"validate", ""}, "FILE: the name is empty"},
        {{"import", ""}, "FILE: the name is empty"},
        {{"--desktop", "wayland", "list"}, "--desktop: wayland"},
        {{"--desktop", "simulated:", "list"}, "--desktop: simulated:"},
        {{"--keep-scene", "list"}, "--keep-scene"},
    };
    for (const auto& c : cases) {
        const Ran ran = run(c.arguments);
        EXPECT_EQ(ran.status, 2) << c.complaint << ": " << ran.err;
        EXPECT_NE(ran.err.find(c.complaint), std::string::npos) << ran.err;
        EXPECT_EQ(ran.out, "");
    }
    EXPECT_EQ(names(), Texts{"Work"});
}

TEST_F(LibraryCommandTest, AWorkspaceIsFoundByNameIgnoringCaseOrByIdentifier) {
    store("Ärger im Büro");
    for (const char* which : {"ärger IM büro", exampleId, "6f1c2a9e-0b7d-4e51-9c3a-2d4b8e7f1a60"}) {
        EXPECT_EQ(members(done({"show", which, "--json"}), "name"), Texts{"Ärger im Büro"});
    }
    const Ran none = run({"show", "Work"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.err, "quilloctl: there is no workspace Work\n");
}

TEST_F(LibraryCommandTest, OfSeveralWithOneNameNoneIsTaken) {
    const std::string other = "00000000-0000-4000-8000-00000000000A";
    store("Work");
    store("WORK", other);
    for (const char* command : {"show", "delete", "duplicate"}) {
        const Ran ran = run({command, "work"});
        EXPECT_EQ(ran.status, 1);
        EXPECT_NE(ran.err.find("2 workspaces are named work"), std::string::npos) << ran.err;
        EXPECT_NE(ran.err.find("00000000-0000-4000-8000-00000000000a"), std::string::npos) << ran.err;
        EXPECT_NE(ran.err.find("6f1c2a9e-0b7d-4e51-9c3a-2d4b8e7f1a60"), std::string::npos) << ran.err;
    }
    done({"delete", other});
    EXPECT_EQ(names(), Texts{"Work"});
}

TEST_F(LibraryCommandTest, RenameDuplicateAndDeleteKeepNamesUnique) {
    store("Work");
    EXPECT_EQ(done({"duplicate", "work"}), "Duplicated Work as Work copy\n");
    EXPECT_EQ(done({"duplicate", "work"}), "Duplicated Work as Work copy 2\n");
    EXPECT_EQ(done({"rename", "Work copy 2", "  work  "}), "Renamed Work copy 2 to work 2\n");
    EXPECT_EQ(done({"rename", "work 2", "WORK 2"}), "Renamed work 2 to WORK 2 2\n");
    EXPECT_EQ(done({"rename", "Work", "Work"}), "Unchanged: Work\n");
    EXPECT_EQ(done({"rename", "Work", "--", "-v"}), "Renamed Work to -v\n");
    EXPECT_EQ(done({"delete", "work copy"}), "Deleted Work copy\n");
    EXPECT_EQ(names(), (Texts{"-v", "WORK 2 2"}));
    EXPECT_EQ(run({"delete", "work copy"}).status, 1);
}

TEST_F(LibraryCommandTest, TextsFromElsewhereCannotDriveTheTerminal) {
    store("a\\u001b[31m\\nb");
    const std::string shown = done({"show", exampleId});
    EXPECT_EQ(shown.find('\x1b'), std::string::npos);
    EXPECT_NE(shown.find("a\\x1b[31m\\nb\n"), std::string::npos) << shown;
    EXPECT_NE(shown.find("Letter\\x1b[2J\\n\\u202e 日本  300 × 400 at 1, 2"), std::string::npos) << shown;
    EXPECT_NE(shown.find("Mar 14, 2025"), std::string::npos) << shown;
    EXPECT_NE(shown.find("1 application, 1 window, 0 displays, 2 folders\n"), std::string::npos) << shown;
    EXPECT_EQ(lines(done({"list"})).size(), 2U) << "a line feed in a name must not make a line";
    EXPECT_EQ(members(done({"--json", "list"}), "name"), Texts{"a\x1b[31m\nb"});
}

TEST_F(LibraryCommandTest, ATerminalGetsColoursAndLinesThatFit) {
    store("Work");
    const std::string command = std::string("stty cols 60; exec ") + QUILLOCTL + " show " + exampleId;
    const auto onTerminal = [&](const char* setting) {
        return runWith({"TERM=xterm", setting}, {"script", "-qec", command, "/dev/null"}).out;
    };
    const std::string plain = onTerminal("NO_COLOR=1");
    EXPECT_EQ(plain.find('\x1b'), std::string::npos) << plain;
    for (const std::string& line : lines(plain))
        EXPECT_LE(line.size(), 60U + 12U) << line;  // bytes, not columns
    EXPECT_NE(plain.find("…"), std::string::npos) << plain;
    EXPECT_NE(onTerminal("COLOUR=yes").find("\x1b[1mWork"), std::string::npos);
}

TEST_F(LibraryCommandTest, ExportWritesAtomicallyForItsOwnerAndOverwritesOnlyWhenForced) {
    store("Work");
    const auto file = home_ / "work.quillo.json";
    EXPECT_EQ(done({"export", "work", file}), "Exported Work\n");
    EXPECT_EQ(mode(file), 0600U);
    EXPECT_EQ(contents(file).substr(0, 2), "{\n");

    std::ofstream(file) << "mine";
    const Ran refused = run({"export", "work", file});
    EXPECT_EQ(refused.status, 1);
    EXPECT_NE(refused.err.find(file.string() + ": a file of this name exists; --force"), std::string::npos);
    EXPECT_EQ(contents(file), "mine");
    done({"export", "work", file, "--force"});
    EXPECT_EQ(done({"validate", file}), file.string() + ": a sound workspace file, Work\n");

    const Ran nowhere = run({"export", "work", home_ / "none" / "x.json"});
    EXPECT_EQ(nowhere.status, 1);
    EXPECT_NE(nowhere.err.find("Couldn't export Work: "), std::string::npos) << nowhere.err;
    EXPECT_EQ(run({"export", "work", home_, "--force"}).status, 1);
    std::size_t left = 0;
    for (const auto& entry : std::filesystem::directory_iterator(home_))
        left += entry.path().extension() == ".next";
    EXPECT_EQ(left, 0U);
}

TEST_F(LibraryCommandTest, ImportGivesAnIdentityOfItsOwnAndSaysWhatItLeftOut) {
    const auto path = file("in.json", document("Work"));
    for (const char* name : {"Imported Work\n", "Imported Work 2\n"}) {
        const Ran ran = run({"import", path});
        EXPECT_EQ(ran.status, 0);
        EXPECT_EQ(ran.out, name);
        EXPECT_EQ(ran.err.rfind("quilloctl: 1 address left out: ", 0), 0U) << ran.err;
    }
    EXPECT_EQ(names().size(), 2U);
    for (const std::string& id : members(done({"list", "--json"}), "id")) EXPECT_NE(id, exampleId);
    EXPECT_EQ(done({"show", "Work", "--json"}).find("x.example"), std::string::npos);
    EXPECT_EQ(mode(workspaces()), 0700U);
}

TEST_F(LibraryCommandTest, ABadFileIsNamedWithItsFieldAndChangesNothing) {
    const std::string sound = document("Work");
    std::string wrongType = sound, version3 = sound;
    wrongType.replace(wrongType.find("[[1,2],[300,400]]"), 17, "\"everywhere\"");
    version3.replace(version3.find("Version\":2"), 10, "Version\":3");
    const struct {
        std::string name, bytes, complaint;
    } cases[] = {
        {"empty.json", "", "empty.json: "},
        {"cut.json", sound.substr(0, 300), "cut.json: "},
        {"latin1.json", document("caf\xe9"), "latin1.json: "},
        {"deep.json", std::string(5000, '['), "deep.json: "},
        {"array.json", "[]", "array.json: "},
        {"type.json", wrongType, "type.json: snapshot.applications[0].windows[0].frame"},
        {"v3.json", version3, "v3.json: Unsupported workspace schema v3; this build supports v2.\n"},
    };
    for (const auto& c : cases) {
        const auto path = file(c.name, c.bytes);
        for (const char* command : {"validate", "import"}) {
            const Ran ran = run({command, path});
            EXPECT_EQ(ran.status, 1) << c.name;
            EXPECT_EQ(ran.out, "");
            EXPECT_EQ(lines(ran.err).size(), 1U) << ran.err;
            EXPECT_EQ(ran.err.rfind("quilloctl: " + home_.string() + "/" + c.complaint, 0), 0U) << ran.err;
        }
    }
    for (const std::string& path :
         {home_.string(), (home_ / "none.json").string(), std::string("/dev/zero")}) {
        const Ran ran = run({"import", path});
        EXPECT_EQ(ran.status, 1);
        EXPECT_NE(ran.err.find(path), std::string::npos) << ran.err;
    }
    EXPECT_FALSE(std::filesystem::exists(workspaces()));
}

TEST_F(LibraryCommandTest, DamagedFilesAreSaidOnStandardErrorAndTheOthersListed) {
    store("Work");
    std::ofstream(workspaces() / "broken.json") << R"({"schemaVersion":2,"id":7})";
    const Ran ran = run({"list", "--json"});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(members(ran.out, "name"), Texts{"Work"});
    EXPECT_EQ(lines(ran.err).size(), 1U);
    EXPECT_EQ(ran.err.rfind("quilloctl: Could not read broken.json or its backup.", 0), 0U) << ran.err;
    EXPECT_NE(ran.err.find("(color: missing)"), std::string::npos) << ran.err;
}

TEST_F(LibraryCommandTest, AStoreThatCannotBeWrittenFailsAndSaysSo) {
    const auto path = file("in.json", document("Work"));
    const auto blocked = file("blocked", "a file where a directory should be");
    const Ran ran = run({"import", path, "--data-dir", blocked});
    EXPECT_EQ(ran.status, 1);
    EXPECT_NE(ran.err.find("Couldn't import Work: "), std::string::npos) << ran.err;
    EXPECT_EQ(contents(blocked), "a file where a directory should be");
}

TEST_F(LibraryCommandTest, AFullOutputIsAFailure) {
    store("Work");
    const Ran ran = runWith({}, {"sh", "-c", std::string(QUILLOCTL) + " list >/dev/full"});
    EXPECT_EQ(ran.status, 1);
    EXPECT_NE(ran.err.find("standard output"), std::string::npos);
}

TEST_F(LibraryCommandTest, TheDataDirectoryComesFromOptionVariableAndStandard) {
    const auto path = file("in.json", document("Work"));
    const struct {
        std::vector<std::string> environment, arguments;
        std::string where;
    } cases[] = {
        {{}, {}, ".local/share/Quillo"},
        {{"XDG_DATA_HOME=relative"}, {}, ".local/share/Quillo"},
        {{"XDG_DATA_HOME=" + home_.string() + "/x"}, {}, "x/Quillo"},
        {{"QUILLO_DATA_DIR=" + home_.string() + "/v"}, {}, "v"},
        {{"QUILLO_DATA_DIR=" + home_.string() + "/v"}, {"--data-dir", home_ / "o"}, "o"},
    };
    for (const auto& c : cases) {
        std::vector<std::string> arguments{QUILLOCTL, "import", path};
        arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
        EXPECT_EQ(runWith(c.environment, arguments).status, 0);
        EXPECT_FALSE(std::filesystem::is_empty(home_ / c.where / "workspaces")) << c.where;
        std::filesystem::remove_all(home_ / c.where);
    }
}

}  // namespace
}  // namespace quillo::ctl
