// Which documents windows show, and opening documents with real applications.
#include <signal.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <set>

#include "platform/linux/DocumentEvidence.hpp"
#include "platform/linux/Terminals.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/platform/x11/X11Test.hpp"

namespace quillo::x11test {
namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using Paths = std::multiset<std::string>;

class DocumentsTest : public X11Test {
  protected:
    DocumentsTest() {
        for (const auto* folder : {"Folder one", "two", "sub/two"}) fs::create_directories(folders / folder);
        for (const auto* file : {"a b.txt", "c.txt", "d.txt"}) folders.write(file, "x\n");
        // Its own default puts every document in a tab of one window.
        const auto settings = PrivateDesktop::home() / "config/glib-2.0/settings";
        fs::create_directories(settings);
        std::ofstream(settings / "keyfile")
            << "[org/xfce/mousepad/preferences/window]\nopening-mode='window'\n";
        setenv("GSETTINGS_BACKEND", "keyfile", 1);
    }
    /// Launched applications are not this test's children, and some hold something unsaved.
    void TearDown() override {
        for (const auto* identifier : {editor, manager, terminal, "konsole"}) {
            eventually([&] {
                const auto application = running(identifier);
                if (application) ::kill(application->pid, SIGKILL);
                return !application;
            });
        }
        setenv("GSETTINGS_BACKEND", "memory", 1);
        X11Test::TearDown();
    }

    Applications& applications() { return desktop->applications; }
    std::optional<RunningApplication> running(std::string_view identifier) {
        nextTurn();
        return applications().running(identifier);
    }
    std::vector<LiveWindow> windowsOf(std::string_view identifier) {
        const auto application = running(identifier);
        WindowHandleCache cache;
        DesktopAccess access{*desktop, cache};
        return application ? Accessibility::windows(access, application->pid, false)
                           : std::vector<LiveWindow>();
    }
    Paths documents(const std::vector<LiveWindow>& windows) {
        Paths paths;
        for (const auto& window : windows)
            paths.insert(window.info.documentURL ? window.info.documentURL->filePath().value() : "none");
        return paths;
    }
    bool shows(std::string_view identifier, const Paths& paths) {
        if (eventually([&] { return documents(windowsOf(identifier)) == paths; })) return true;
        ADD_FAILURE() << identifier << " shows " << testing::PrintToString(documents(windowsOf(identifier)));
        return false;
    }
    Url url(const std::string& name) { return Url::file(path(name)); }
    std::string path(const std::string& name) { return (folders / name).string(); }
    Url location(const char* identifier) { return applications().location(identifier).value(); }

    static constexpr auto editor = "org.xfce.mousepad", manager = "thunar", terminal = "debian-xterm";
    TemporaryDirectory folders;
};

TEST_F(DocumentsTest, DocumentsTravelWithTheLaunchAndOpenInWhatRuns) {
    const SessionBus bus;
    ASSERT_TRUE(run(applications().launch(location(editor), {url("a b.txt"), url("c.txt")})));
    ASSERT_TRUE(run(applications().launch(location(manager), {url("Folder one"), url("two")})));
    ASSERT_TRUE(shows(editor, {path("a b.txt"), path("c.txt")})) << "and no empty window";
    ASSERT_TRUE(shows(manager, {path("Folder one"), path("two")}));
    ASSERT_TRUE(run(applications().open(editor, {url("d.txt")})));
    ASSERT_TRUE(run(applications().open(manager, {url("sub/two")})));
    EXPECT_TRUE(shows(editor, {path("a b.txt"), path("c.txt"), path("d.txt")}));
    EXPECT_TRUE(shows(manager, {path("Folder one"), path("two"), path("sub/two")}))
        << "two folders of one name are told apart";

    // A file manager that hangs holds nobody up, and what was known of its windows stands.
    const auto pid = running(manager)->pid;
    ::kill(pid, SIGSTOP);
    for (int pass = 0; pass < 3; ++pass) {
        nextTurn();
        const auto before = std::chrono::steady_clock::now();
        EXPECT_EQ(documents(windowsOf(manager)).count("none"), 0u);
        EXPECT_LT(std::chrono::steady_clock::now() - before, 2s);
    }
    ::kill(pid, SIGCONT);
}

TEST_F(DocumentsTest, WithoutASessionBusToo) {
    ASSERT_TRUE(run(applications().launch(location(editor), {url("a b.txt"), url("c.txt")})));
    ASSERT_TRUE(run(applications().launch(location(manager), {url("Folder one"), url("two")})));
    EXPECT_TRUE(shows(editor, {path("a b.txt"), path("c.txt")}));
    // Its arguments tell of the first window's folder; nothing tells of the others'.
    EXPECT_TRUE(shows(manager, {path("Folder one"), "none"}));
}

TEST_F(DocumentsTest, ATerminalIsInTheFolderOfItsShellAndOpensThere) {
    fs::create_directories(folders / "-dash");
    ASSERT_TRUE(
        run(applications().launch(location(terminal), {url("Folder one"), url("-dash"), url("-dash")})));
    ASSERT_TRUE(shows(terminal, {path("Folder one"), path("-dash"), path("-dash")}));
    EXPECT_EQ(applications().shells(terminal), 3);
    EXPECT_FALSE(applications().shells(editor));
    EXPECT_FALSE(applications().openable(terminal, url("c.txt")));
    EXPECT_FALSE(run(applications().open(terminal, {url("missing")})));
    ASSERT_TRUE(run(applications().openWindow(terminal)));
    EXPECT_TRUE(shows(terminal, {path("Folder one"), path("-dash"), path("-dash"), fs::current_path()}));
}

TEST_F(DocumentsTest, ATerminalIsToldItsFolderAsOneArgumentWhateverItsName) {
    const std::string name = "it's %f \"$(touch RAN)\"; `x`";
    fs::create_directories(folders / name);
    const auto program = folders / "konsole";
    folders.write("konsole",
                  "#!/bin/sh\nexec " QUILLO_TEST_CLIENT " --class=Konsole --title \"$# $1 $2 in $(pwd)\"\n");
    fs::permissions(program, fs::perms(0755));
    installed.push_back(PrivateDesktop::home() / "data/applications/konsole.desktop");
    std::ofstream(installed.back())
        << "[Desktop Entry]\nType=Application\nName=x\nActions=Tab;NewWindow;\nExec=" << program.string()
        << "\n[Desktop Action Tab]\nName=t\nExec=false\n[Desktop Action NewWindow]\nName=w\nExec="
        << program.string() << " more %F\n";
    nextTurn();
    ASSERT_TRUE(run(applications().launch(location("konsole"), {url(name)})));
    EXPECT_TRUE(eventually(
        [&] { return windowTitled("2 --workdir " + path(name) + " in " + path(name)).has_value(); }));
    ASSERT_TRUE(run(applications().openWindow("konsole")));
    EXPECT_TRUE(
        eventually([&] { return windowTitled("1 more  in " + fs::current_path().string()).has_value(); }));
}

TEST(Terminals, AreKnownByTheirProgramAndRunNothingElse) {
    const struct {
        const char *program, *command;
        std::optional<std::string_view> option;
    } cases[] = {
        {"/usr/bin/xterm", "xterm", ""},
        {"/usr/bin/ghostty", "ghostty --gtk-single-instance=true", "--working-directory=%f"},
        {"/usr/bin/xterm", "xterm -e htop", std::nullopt},
        {"/usr/bin/gnome-terminal", "gnome-terminal -- mc", std::nullopt},
        {"/usr/bin/xfce4-terminal", "xfce4-terminal --drop-down mc", std::nullopt},
        {"/usr/bin/mousepad", "mousepad", std::nullopt},
    };
    for (const auto& one : cases)
        EXPECT_EQ(Terminals::folderOption(one.program, one.command), one.option) << one.command;
}

TEST(Terminals, WindowsOfOneProcessAreToldApartOnlyWithCertainty) {
    using Folders = std::vector<std::optional<std::string>>;
    const std::optional<std::string> none, home = "/home/u", a = "/home/u/a", deep = "/home/u/a/b",
                                           etc = "/etc";
    const struct {
        const char* what;
        std::vector<std::string> titles;
        Folders shells, folders;
    } cases[] = {
        {"one window, one shell, whatever its title", {"vi"}, {a}, {a}},
        {"one window, a shell of another user", {"root@desk: ~/a"}, {none}, {none}},
        {"a window with two tabs", {"u@desk: ~/a"}, {etc, a}, {a}},
        {"each by its title", {"u@desk:~/a - T", "T - /etc", "~"}, {etc, home, a}, {a, etc, home}},
        {"a longer path is another one", {"~/a/b", "~/a"}, {a, deep}, {deep, a}},
        {"one is left", {"u@desk: ~/a", "vi"}, {a, etc}, {a, etc}},
        {"on another machine it is another folder", {"u@far: ~/a", "vi"}, {a, etc}, {none, none}},
        {"with a tab it may be that one's", {"u@desk: ~/a", "vi"}, {a, etc, etc}, {a, none}},
        {"the last part alone may be any folder's", {"a : bash", "etc : bash"}, {a, etc}, {none, none}},
        {"two windows name what one shell shows", {"~/a", "~/a", "vi"}, {a, etc, etc}, {none, none, none}},
        {"two shells in one folder", {"u@desk: ~/a", "u@desk: ~/a"}, {a, a}, {a, a}},
        {"both named", {"~/a (/etc) and /etc", "x"}, {a, etc}, {none, none}},
    };
    for (const auto& one : cases)
        EXPECT_EQ(Terminals::windowFolders(one.titles, one.shells, {"/home/u", "desk.example"}), one.folders)
            << one.what;
}

TEST_F(DocumentsTest, ATitleNamesADocumentOnlyWhereOneCanBeOpened) {
    const auto file = path("c.txt");
    install("editor", "MimeType=text/plain;\n", "edit %F");
    install("manager", "NoDisplay=true\nMimeType=inode/directory;\n", "--manage %F");
    install("menu", "", "");  // what menus show of the manager
    install("browser", "MimeType=text/html;x-scheme-handler/http;\n", "%U");
    install("terminal", "", "shell");
    struct Case {
        const char* application;
        std::string title, document;
        std::vector<std::string> arguments;
    };
    const std::vector<Case> cases{
        {"editor", file + " - Editor 1", file, {}},
        {"editor", path("two") + " - Editor 2", "none", {}},  // it opens no folders
        {"manager", path("two") + " - Manager", path("two"), {}},
        {"menu", path("two") + " - Menu", path("two"), {}},
        {"browser", file + " - Browser", "none", {}},
        {"terminal", file + " - Terminal", "none", {}},
        {"editor", "c.txt - Editor 3", file, {file}},
        {"editor", "d.txt - Editor 4", "none", {file}},
        {"editor", "window - Editor 5", "none", {file}},
    };
    for (const auto& one : cases) {
        std::vector<std::string> options{"--silent", "--class", one.application, "--title", one.title};
        options.insert(options.end(), one.arguments.begin(), one.arguments.end());
        open(std::move(options));
        const auto titled = [&] {
            const auto all = windows();
            return std::ranges::any_of(all, [&](const LiveWindow& window) {
                return window.info.title->starts_with(one.title) &&
                       documents({window}) == Paths{one.document};
            });
        };
        EXPECT_TRUE(eventually(titled)) << one.title;
    }
    // Of what a process was started with, only its first window can speak.
    open({"--silent", "--class", "editor", "--title", "first", "--title", "c.txt again", file});
    ASSERT_TRUE(eventually([&] { return windowTitled("c.txt again").has_value(); }));
    EXPECT_FALSE(windowTitled("c.txt again")->info.documentURL);
}

TEST(DocumentEvidence, OfATitle) {
    const TemporaryDirectory home;
    fs::create_directories(home / "letters (old)");
    for (const auto* name : {"a.txt", "a - b.txt", "letters (old)/c (2).txt"}) home.write(name, "x");
    const auto at = [&](const std::string& name) { return (home / name).string(); };
    const struct {
        std::string title, path;
    } cases[] = {
        {at("a.txt"), at("a.txt")},
        {"*" + at("a.txt") + " - Mousepad", at("a.txt")},
        {"● ~/a.txt — Editor", at("a.txt")},
        {"~/a.txt* - Editor", at("a.txt")},
        {"~/a.txt [Read Only] - Editor", at("a.txt")},
        {"~/a - b.txt - Editor", at("a - b.txt")},
        {"~ - Files", at("")},
        {"~/letters (old)/ - Files", at("letters (old)")},
        {"*a.txt (~/) - gedit", at("a.txt")},
        {"c (2).txt (~/letters (old)) - gedit", at("letters (old)/c (2).txt")},
        {"a.txt - ~ - Geany", at("a.txt")},
        {"*a - b.txt - " + at("") + " - Geany", at("a - b.txt")},
        {"c (2).txt - ~/letters (old) - Geany", at("letters (old)/c (2).txt")},
        {"missing.txt - ~ - Geany", ""},
        {"a.txt", ""},
        {"Mail: ~/a.txt", ""},
        {"what " + at("a.txt") + " holds", ""},
        {"~/a.txt.old - Editor", ""},
        {"~/missing.txt (" + at("a.txt") + ") - Editor", ""},
        {"/dev/null - Editor", ""},
        {"missing.txt (~/) - gedit", ""},
        {"../a.txt (~/letters (old)) - gedit", ""},
        {"~root/a.txt", ""},
        {std::string(100'000, '/') + " - x", ""},
        {"", ""},
    };
    for (const auto& one : cases) {
        const auto found = DocumentEvidence::inTitle(one.title, home.path().string());
        auto expected = one.path;
        while (expected.ends_with('/')) expected.pop_back();
        EXPECT_EQ(found ? found->path : "", expected) << one.title.substr(0, 100);
    }
}

TEST(DocumentEvidence, OfArgumentsByTheirNamesOrOneAlone) {
    const TemporaryDirectory home;
    for (const auto* name : {"a.pdf", "a.png", "b.v2.pdf"}) home.write(name, "x");
    const struct {
        std::string title;
        std::vector<std::string> arguments;
        std::string name;
    } cases[] = {
        {"see a.png", {"-f", "a.pdf", "a.png"}, "a.png"},
        {"[a] (imported)-1.0 - Editor", {"a.png"}, "a.png"},
        {"*b.v2 - Viewer", {"a.pdf", "b.v2.pdf", "./b.v2.pdf"}, "b.v2.pdf"},
        {"a - Viewer", {"a.pdf", "a.png"}, ""},  // either
        {"a.txt - Viewer", {"a.pdf"}, ""},
        {"not a", {"a.pdf"}, ""},
    };
    for (const auto& [title, arguments, name] : cases) {
        const auto found = DocumentEvidence::inArguments(arguments, home.path().string(), title);
        EXPECT_EQ(found ? found->path : "", name.empty() ? "" : (home / name).string()) << title;
    }
}

TEST(DocumentEvidence, OfTheFilesThatAProgramHasOpen) {
    const TemporaryDirectory home;
    for (const auto* folder : {"one", "two"}) fs::create_directories(home / folder);
    for (const auto* name : {"a.odt", "one/b.odt", "two/b.odt", "c - d.odt", "run"}) home.write(name, "x");
    fs::permissions(home / "run", fs::perms(0755));
    std::vector<std::string> files;
    for (const auto* name :
         {"a.odt", "a.odt", "one/b.odt", "two/b.odt", "c - d.odt", "run", "gone.odt", "one"})
        files.push_back((home / name).string());
    const std::pair<std::string, std::string> cases[] = {
        {"a.odt — Writer", "a.odt"},
        {"*a.odt", "a.odt"},
        {"c - d.odt - Writer", "c - d.odt"},
        {"b.odt — Writer", ""},  // two are named so
        {"About a.odt — Writer", ""},
        {"a.odt.bak — Writer", ""},
        {"run", ""},
        {"one", ""},
    };
    for (const auto& [title, name] : cases) {
        const auto found = DocumentEvidence::inOpenFiles(files, title);
        EXPECT_EQ(found ? found->path : "", name.empty() ? "" : (home / name).string()) << title;
    }
}

}  // namespace
}  // namespace quillo::x11test
