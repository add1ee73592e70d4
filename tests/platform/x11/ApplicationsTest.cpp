// Which application a window belongs to, and what can be asked of it.
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <algorithm>
#include <fstream>
#include <thread>

#include "WindowEngine/capture/Capture.hpp"
#include "platform/linux/ProcessInfo.hpp"
#include "tests/platform/x11/X11Test.hpp"

namespace quillo::x11test {
namespace {

class ApplicationsTest : public X11Test {
  protected:
    Applications& applications() { return desktop->applications; }

    std::optional<RunningApplication> running(std::string_view identifier) {
        nextTurn();
        return applications().running(identifier);
    }

    /// Launched applications are not this test's children: they are asked to quit.
    void TearDown() override {
        for (const auto* identifier : {"launched", "picky", "bare", "quillo_test_client"}) {
            if (running(identifier)) applications().terminate(identifier);
            EXPECT_TRUE(eventually([&] { return !running(identifier); }));
        }
        X11Test::TearDown();
    }

    WorkspaceSnapshot capture(Capture::Options options) {
        WindowHandleCache cache;
        DesktopAccess access{*desktop, cache};
        return run(Capture::snapshot(access, std::move(options)));
    }
    static std::vector<std::string> identifiers(const WorkspaceSnapshot& snapshot) {
        std::vector<std::string> found;
        for (const auto& application : snapshot.applications) found.push_back(application.bundleIdentifier);
        return found;
    }

    static Url entry(const std::string& id) {
        return Url::file((PrivateDesktop::home() / "data/applications" / (id + ".desktop")).string());
    }
};

TEST_F(ApplicationsTest, WhatAPersonRemovedIsNotInstalled) {
    EXPECT_TRUE(applications().location("org.xfce.mousepad"));
    install("org.xfce.mousepad", "Hidden=true\n", "");
    nextTurn();
    EXPECT_FALSE(applications().location("org.xfce.mousepad"));
}

TEST_F(ApplicationsTest, TheBestEvidenceNamesTheApplication) {
    install("by-hint", "", "");
    install("org.example.ByGtk", "", "");
    install("by-startup-class", "StartupWMClass=Odd Class\n", "");
    install("ByBaseName", "", "");
    const std::pair<std::string, std::vector<std::string>> cases[] = {
        {"by-hint", {"--desktop-file", "/usr/share/applications/by-hint.desktop", "--class", "ByBaseName"}},
        {"org.example.ByGtk", {"--gtk-application-id", "org.example.ByGtk", "--class", "ByBaseName"}},
        {"by-startup-class", {"--class", "ODD class"}},
        {"ByBaseName", {"--class", "BYBASENAME"}},
    };
    for (const auto& [identifier, options] : cases) {
        openWindow(identifier, options);
        const auto found = running(identifier);
        ASSERT_TRUE(found) << identifier;
        EXPECT_EQ(found->localizedName, identifier + " name");
        EXPECT_EQ(found->bundleURL, entry(identifier));
        EXPECT_EQ(applications().location(identifier), entry(identifier));
        EXPECT_EQ(applications().identifierAt(entry(identifier)), identifier);
        clients.clear();
        EXPECT_TRUE(eventually([&] { return !running(identifier); }))
            << "an application that ended is not listed";
    }
}

TEST_F(ApplicationsTest, AnEntryThatNoMenuShowsTakesNoWindowsOfAShownOnesProgram) {
    install("importer", "NoDisplay=true\nStartupWMClass=quillo_test_client\n", "");
    install("viewer", "", "");
    openWindow("a picture", {"--class", "quillo_test_client"});
    EXPECT_TRUE(running("viewer"));
    EXPECT_FALSE(running("importer"));
}

TEST_F(ApplicationsTest, WithoutADesktopFileItsClassAndProgramStandFor) {
    openWindow("nameless", {"--class", "Unheard-Of", "--pid", "0"});
    const auto found = running("unheard-of");
    ASSERT_TRUE(found);
    EXPECT_EQ(found->pid, clients.back().pid())
        << "the X server knows the process where the window does not say";
    EXPECT_EQ(found->localizedName, "Unheard-Of");
    EXPECT_FALSE(found->bundleURL) << "a program is not an installed application";
    EXPECT_FALSE(applications().location("unheard-of"));
}

TEST_F(ApplicationsTest, TwoProcessesOfOneIdentityAreOneApplication) {
    openWindow("first", {"--class", "Twins"});
    openWindow("second", {"--class", "Twins"});
    nextTurn();
    const auto oldest = clients.front().pid(), youngest = clients.back().pid();
    EXPECT_EQ(applications().running(youngest)->pid, oldest);
    for (const auto pid : {oldest, youngest}) {
        EXPECT_EQ(std::get<std::vector<Element>>(*attribute(ax().application(pid), ax::windows)).size(), 2u);
    }
    clients.front().kill();
    EXPECT_TRUE(eventually([&] { return running("twins") && running("twins")->pid == youngest; }));
}

TEST_F(ApplicationsTest, LaunchesAreDetachedAndRememberTheirIdentity) {
    install("launched", "MimeType=text/plain;\n", "--class=Misleading --title=started %F");
    const auto before = executor.wallNow();
    const auto first = PrivateDesktop::home() / "a b", second = PrivateDesktop::home() / "c";
    for (const auto& file : {first, second}) std::ofstream(file) << "text";
    setenv("XDG_ACTIVATION_TOKEN", std::string(200'000, 'x').c_str(), 1);  // more than a process may inherit
    ASSERT_TRUE(run(
        applications().launch(entry("launched"), {Url::file(first.string()), Url::file(second.string())})));
    unsetenv("XDG_ACTIVATION_TOKEN");
    ASSERT_TRUE(running("launched")) << "known before its first window";
    ASSERT_TRUE(eventually(
        [&] { return windowTitled("started|" + first.string() + "|" + second.string()).has_value(); }));
    const auto found = running("launched");
    ASSERT_TRUE(found) << "its windows name another class";
    EXPECT_EQ(getsid(found->pid), found->pid) << "a session of its own: no terminal's hang-up reaches it";
    EXPECT_NE(processInfo(found->pid)->parent, getpid());
    EXPECT_LT(std::chrono::abs(*found->launchDate - before), std::chrono::seconds(5));
}

TEST_F(ApplicationsTest, ThePersonsCommandStartsWhatNoMenuEntryStarts) {
    EXPECT_FALSE(applications().location("bare"));
    commands = {{"bare", {QUILLO_TEST_CLIENT, "--class=Other", "--title=no; shell $HOME"}},
                {"gone", {"/nonexistent/secret-program"}}};
    const auto location = applications().location("bare"), gone = applications().location("gone");
    ASSERT_TRUE(location && gone);
    EXPECT_EQ(location->string().find("client"), std::string::npos) << "a workspace may hold it";
    EXPECT_EQ(applications().identifierAt(*location), "bare");
    ASSERT_TRUE(run(applications().launch(*location, {})));
    ASSERT_TRUE(eventually([&] { return windowTitled("no; shell $HOME").has_value(); }));
    ASSERT_TRUE(running("bare")) << "whatever its window says";
    EXPECT_FALSE(running("bare")->bundleURL);
    const auto refused = run(applications().launch(*gone, {}));
    ASSERT_FALSE(refused);
    EXPECT_EQ(refused.error().text.find('/'), std::string::npos);
}

TEST_F(ApplicationsTest, HowDocumentsAreHandedOverIsReadFromTheEntry) {
    using enum DocumentHanding;
    const std::string types = "MimeType=text/plain;image/png;\n", pictures = "MimeType=image/png;\n";
    const std::string action = "Actions=new-window;\n[Desktop Action new-window]\nName=w\nExec=false\n";
    const struct {
        std::string id, lines, options;
        DocumentHanding ofText, ofPicture;
    } cases[] = {
        {"office", types, "--office %U", together, oneByOne},
        {"list", types, "--list %F", oneByOne, oneByOne},
        {"single", types, "--single %f", together, together},
        {"tabbed", types + action, "--tabbed %U", intoNewWindows, intoNewWindows},
        {"viewer", pictures + action, "--viewer %U", together, oneByOne},
    };
    const auto text = PrivateDesktop::home() / "a.txt", picture = PrivateDesktop::home() / "a.png";
    std::ofstream(text) << "text";
    std::ofstream(picture) << "\x89PNG\r\n\x1a\n";
    const std::vector texts{Url::file(text.string())}, images{Url::file(picture.string())};
    for (const auto& one : cases) {
        install(one.id, one.lines, one.options);
        nextTurn();
        EXPECT_EQ(applications().handing(one.id, texts), one.ofText) << one.id;
        EXPECT_EQ(applications().handing(one.id, images), one.ofPicture) << one.id;
    }
}

TEST_F(ApplicationsTest, ARefusedLaunchSaysWhyWithoutAPath) {
    install("picky", "", "--title=picky");
    installed.push_back(PrivateDesktop::home() / "data/applications/broken.desktop");
    std::ofstream(installed.back())
        << "[Desktop Entry]\nType=Application\nName=broken\nExec=/nonexistent/secret-program\n";
    const auto check = [&](const Result<void>& result, ErrorKind kind) {
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error().kind, kind);
        EXPECT_EQ(result.error().text.find('/'), std::string::npos) << result.error().text;
        EXPECT_FALSE(result.error().text.empty());
    };
    check(run(applications().launch(Url::file("/nonexistent/program"), {})), ErrorKind::notFound);
    check(run(applications().launch(entry("broken"), {})), ErrorKind::notFound);
    check(run(applications().launch(*Url::parse("https://example.org/app"), {})), ErrorKind::notFound);
    check(run(applications().launch(entry("picky"), {Url::file("/etc/passwd")})), ErrorKind::refused);
    check(run(applications().open("never-installed", {})), ErrorKind::notFound);
}

TEST_F(ApplicationsTest, AnApplicationIsKnownAsSoonAsItIsInstalled) {
    // Several within one tick of the clock that the file system stamps folders with.
    for (int i = 0; i < 40; ++i) {
        const auto id = "quick-" + std::to_string(i);
        install(id, "", "");
        EXPECT_EQ(applications().location(id), entry(id));
    }
}

TEST_F(ApplicationsTest, TheServerKnowsTheProcessWhateverAWindowSaysOfItself) {
    open({"--class", "Editor", "--pid", "2", "--machine", "renamed-since"});
    open({"--class", "Diary", "--pid", "2", "--machine", "container"});
    open({"--class", "Elsewhere", "--machine", "far-away", "--process-name", "sshd-session"});
    ASSERT_TRUE(eventually([&] { return windows().size() == 2 && applications().remoteWindows() == 1; }));
    EXPECT_EQ(running("editor")->pid, clients.front().pid());
    const auto captured = capture({.excludedBundleIdentifiers = {"diary"}});
    EXPECT_EQ(identifiers(captured), std::vector<std::string>{"editor"});
    EXPECT_EQ(captured.notes,
              std::vector<std::string>{"1 window of a program on another machine was left out."});
}

TEST_F(ApplicationsTest, WhatIsKeptOutIsKnownByAnythingAWindowSays) {
    install("org.keepassxc.KeePassXC", "", "");
    install("plain", "", "");
    install("appimagekit_0123456789abcdef-KeePassXC", "", "");
    const std::string appImage = "appimagekit_0123456789abcdef-KeePassXC.desktop";
    open({"--class", "KeePassXC", "--desktop-file", "org.keepassxc.KeePassXC"});
    open({"--class", "Pinentry-gtk-2"});
    open({"--class", "Odd", "--desktop-file", appImage});
    open({"--class", "Secret-Diary", "--desktop-file", "plain", "--title", "diary"});
    open({"--class", "Plain", "--title", "plain"});
    ASSERT_TRUE(eventually([&] { return windows().size() == 5; }));
    ASSERT_TRUE(running("org.keepassxc.KeePassXC"));
    const auto captured = capture({.excludedBundleIdentifiers = {"Secret-Diary"}});
    EXPECT_EQ(identifiers(captured), std::vector<std::string>{"plain"});
    ASSERT_EQ(captured.windowCount(), 1);
    EXPECT_EQ(captured.applications[0].windows[0].title, "plain");
}

TEST_F(ApplicationsTest, WindowsOnTopOfEachOtherAreNoTabs) {
    open({"--class", "Terminal", "--gtk-application-id", "com.mitchellh.ghostty", "--title", "a", "--title",
          "b"});
    install("com.mitchellh.ghostty", "", "");
    ASSERT_TRUE(eventually([&] { return windows().size() == 2; }));
    EXPECT_EQ(capture({}).windowCount(), 2);
}

TEST_F(ApplicationsTest, HidingMinimizesEveryWindow) {
    open({"--class", "Hideable", "--title", "a", "--title", "b", "--title", "c"});
    ASSERT_TRUE(eventually([&] { return windows().size() == 3; }));
    EXPECT_TRUE(applications().hide("hideable"));
    EXPECT_TRUE(eventually(
        [&] { return std::ranges::all_of(windows(), [](auto& w) { return w.info.isMinimized; }); }));
}

TEST_F(ApplicationsTest, QuittingAsksAndNeverForces) {
    auto& polite = open({"--class", "Polite", "--dialog", "question"});
    auto& stubborn = open({"--class", "Stubborn", "--refuse-close"});
    auto& deaf = open({"--class", "Deaf", "--no-protocols"});
    ASSERT_TRUE(eventually([&] { return windows().size() == 4; }));
    EXPECT_TRUE(applications().terminate("stubborn"));
    EXPECT_FALSE(applications().terminate("deaf")) << "closing it would break its connection";
    EXPECT_TRUE(applications().terminate("polite"));
    EXPECT_TRUE(eventually([&] { return !polite.lives(); }));
    EXPECT_TRUE(stubborn.lives() && deaf.lives());
}

/// Until it is killed.
[[noreturn]] void showAWindowOfThisProgram(std::string_view name) {
    auto* xcb = xcb_connect(nullptr, nullptr);
    const auto root = xcb_setup_roots_iterator(xcb_get_setup(xcb)).data->root;
    const auto window = xcb_generate_id(xcb);
    xcb_create_window(xcb, XCB_COPY_FROM_PARENT, window, root, 0, 0, 200, 100, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, 8,
                        static_cast<std::uint32_t>(name.size()), name.data());
    xcb_map_window(xcb, window);
    xcb_flush(xcb);
    for (;;) pause();
}

TEST_F(ApplicationsTest, TheTerminalThisRunsInIsOneOfUs) {
    EXPECT_EQ(applications().ownIdentifiers(), std::vector<std::string>{"app.quillo.Quillo"});
    const auto terminal = openWindow("terminal", {"--class", "My-Terminal"});
    setenv("WINDOWID", std::to_string(*terminal.windowID).c_str(), 1);
    nextTurn();
    EXPECT_EQ(applications().ownIdentifiers(),
              (std::vector<std::string>{"app.quillo.Quillo", "my-terminal"}));
    unsetenv("WINDOWID");
    nextTurn();

    // Its window is not listed yet, but one of another process of the same program is.
    const pid_t twin = fork();
    if (twin == 0) showAWindowOfThisProgram("Sister");
    ASSERT_TRUE(eventually([&] { return running("sister").has_value(); }));
    EXPECT_EQ(applications().ownIdentifiers(), (std::vector<std::string>{"app.quillo.Quillo", "sister"}));
    kill(twin, SIGKILL);
    waitpid(twin, nullptr, 0);
}

/// Any process may end between the opening of what the system tells of it and the reading.
TEST(ProcessInfo, IsAskedOfProcessesThatEndMeanwhile) {
    for (int i = 0; i < 400; ++i) {
        const pid_t pid = fork();
        if (pid == 0) _exit(0);
        const std::jthread buries([pid] { waitpid(pid, nullptr, 0); });
        for (int look = 0; look < 30; ++look)
            EXPECT_NO_THROW(((void)argumentsOf(pid), (void)childrenOf(pid), (void)processInfo(pid)));
    }
}

}  // namespace
}  // namespace quillo::x11test
