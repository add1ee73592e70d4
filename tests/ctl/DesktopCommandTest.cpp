// doctor, windows, displays, save, plan and restore over scenes: what a person sees and what a script gets.
#include "WindowEngine/capture/LeftOut.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "WindowEngine/support/Uuid.hpp"
#include "tests/ctl/Quilloctl.hpp"

namespace quillo::ctl {
namespace {

constexpr const char* arranged = R"({
  "displays": [{"id": "left", "frame": [0, 0, 1600, 1000], "desktops": 2}],
  "applications": [
    {"identifier": "org.editor", "name": "Editor", "windows": [
      {"title": "Letter", "frame": [100, 100, 600, 400]},
      {"title": "Notes\u001b[2J", "frame": [800, 100, 500, 400], "minimized": true, "desktop": 1}]},
    {"identifier": "org.term", "name": "Terminal", "windows": [
      {"title": "shell", "frame": [50, 600, 640, 300]}]},
    {"identifier": "com.bitwarden.desktop", "name": "Vault", "windows": [
      {"title": "secrets", "frame": [0, 0, 300, 300]}]}]})";

/// The same applications in disorder: one has been quit, and a desktop is gone. `more` is added to the scene.
std::string disturbed(std::string_view more = "",
                      std::string_view displays = R"({"id": "left", "frame": [0, 0, 1600, 1000]})") {
    return fmt::format(R"({{"displays": [{}], "applications": [
        {{"identifier": "org.editor", "name": "Editor", "windows": [
          {{"title": "Letter", "frame": [400, 300, 300, 200], "minimized": true}},
          {{"title": "Notes\u001b[2J", "frame": [0, 0, 500, 400]}}]}},
        {{"identifier": "org.term", "name": "Terminal", "running": false, "windows": [
          {{"title": "shell", "frame": [0, 0, 100, 100]}}]}}] {}}})",
                       displays, more);
}

class DesktopCommandTest : public QuilloctlTest {
  protected:
    DesktopCommandTest() {
        file("arranged", arranged);
        file("disturbed", disturbed());
        expectSteps({{on("arranged", {"save", " Work "}), 0, "Saved 3 windows of 2 applications as Work\n"}});
    }
    Texts on(const std::string& scene, Texts arguments) {
        arguments.insert(arguments.begin(), {"--desktop", "simulated:" + (home_ / scene).string()});
        return arguments;
    }
    Texts windows(const std::string& scene) {
        Texts found = lines(done(on(scene, {"windows"})));
        std::erase_if(found, [](const std::string& line) { return line.find("FRAME") != std::string::npos; });
        return found;
    }
};

TEST_F(DesktopCommandTest, WhatIsSeenIsWhatASaveRecords) {
    const Texts seen{"Editor       Letter        600 × 400 at 100, 100  left     Desktop 1",
                     "Editor       Notes\\x1b[2J  500 × 400 at 800, 100  left     Desktop 2, minimized",
                     "Terminal     shell         640 × 300 at 50, 600   left     Desktop 1"};
    EXPECT_EQ(windows("arranged"), seen) << "and nothing of applications that keep passwords";
    for (const std::string& line : seen) expectSteps({{{"show", "Work"}, 0, line}});
    EXPECT_EQ(members(done(on("arranged", {"windows", "--json"})), "title"),
              (Texts{"Letter", "Notes\x1b[2J", "shell"}));
    EXPECT_EQ(members(done(on("arranged", {"displays", "--json"})), "id"), Texts{"left"});
    expectSteps({{on("arranged", {"displays"}), 0, "1600 × 1000 at 0, 0"},
                 {on("arranged", {"save", "work"}), 0, "Saved 3 windows of 2 applications as \"work 2\"\n"}});
}

TEST_F(DesktopCommandTest, AnUpdateKeepsIdentityAndLook) {
    const auto kept = [this] {
        Texts values;
        for (const char* key : {"id", "name", "icon", "color", "createdAt"})
            values.push_back(members(done({"show", "Work", "--json"}), key).front());
        return values;
    };
    const Texts before = kept();
    EXPECT_EQ(before[2], "square.stack.3d.up");
    expectSteps(
        {{on("disturbed", {"save", "--update", "WORK"}), 0, "Saved 2 windows of 1 application in Work\n"},
         {on("disturbed", {"save", "--update", "Other"}), 1, "there is no workspace Other"}});
    EXPECT_EQ(kept(), before);
    EXPECT_EQ(lines(done({"list"})).size(), 2U);
    // What was left out in the window stays left out: it is not counted, planned or saved again.
    Workspace work = WorkspaceCoding::decode(done({"show", "Work", "--json"})).value();
    const std::string left = work.snapshot.applications.front().bundleIdentifier;
    work.snapshot = LeftOut::without({work.snapshot, {.apps = {left}, .windows = {}, .contextURLs = {}}});
    home_.write(".local/share/Quillo/workspaces/" + work.id.lower() + ".json",
                WorkspaceCoding::encode(work).value());
    for (int i = 0; i < 2; ++i) {
        EXPECT_NE(done({"show", "Work"}).find("left out    1 application"), std::string::npos);
        EXPECT_EQ(done(on("disturbed", {"plan", "Work"})).find(left), std::string::npos);
        expectSteps(
            {{on("disturbed", {"save", "--update", "Work"}), 0, "nothing is open that a save records"}});
    }
}

TEST_F(DesktopCommandTest, TheHistoryKeepsChangedSessionsBesideTheLibrary) {
    const std::string sessions = ".local/share/Quillo/sessions", before = "Last session (",
                      later = "LAST SESSION";
    const auto listed = [this] {
        Texts names = members(done({"history", "list", "--json"}), "name");
        std::ranges::sort(names);  // the clock of both scenes stands at one second
        return names;
    };
    expectSteps(
        {{{"history", "list"}, 0, "quilloctl history save"},
         {{"history", "clear"}, 0, "Removed 0 sessions\n"},
         {{"show", later}, 1, "there is no workspace \"LAST SESSION\""},
         {{"history", "save"}, 4, "quilloctl: "},
         {on("arranged", {"history", "save"}), 0, "Saved 3 windows of 2 applications as \"Last session\"\n"},
         {on("arranged", {"history", "save"}), 0, ": 3 windows of 2 applications\n"},
         {on("arranged", {"history", "save", "--json"}), 0, "\"saved\":false"}});
    EXPECT_EQ(listed(), Texts{"Last session"});
    done(on("disturbed", {"history", "save"}));
    const Texts names = listed();
    ASSERT_EQ(names.size(), 2U);
    EXPECT_EQ(names[1].substr(0, before.size()), before);
    EXPECT_EQ(home_.mode(sessions), 0700U);
    file("locked", disturbed(R"(, "faults": [{"kind": "screenLocked"}])"));
    expectSteps(
        {{on("locked", {"history", "save"}), 3, "as it was: the screen is locked; quilloctl save NAME"},
         {on("locked", {"save", "Aside"}), 0, "desktop that you want back: the screen is locked.\n"},
         {on("locked", {"save", "--update", "Aside"}), 1, "Aside stays as it was: the screen is locked; --"},
         {on("locked", {"save", "--update", "Aside", "--force"}), 0, "in Aside"},
         {on("locked", {"layout", "save", "Aside"}), 1, "Aside stays as it was: the screen is locked; --"},
         {on("locked", {"layout", "save", "Aside", "--force"}), 0, "the screen is locked."},
         {{"delete", "Aside"}, 0, "Deleted"}});
    EXPECT_EQ(listed(), names);

    // The sessions are found where the library has no such name; only reading commands look there.
    expectSteps({{on("arranged", {"plan", names[1]}), 0, "600 × 400 at 100, 100"},
                 {on("disturbed", {"restore", names[1]}), 0, "3 restored"},
                 {{"export", later, home_ / "out.json"}, 0, "Exported \"Last session\" to "},
                 {{"import", home_ / "out.json"}, 0, "Imported \"Last session 2\"\n"},
                 {{"rename", later, "Mine"}, 1, "there is no workspace \"LAST SESSION\""},
                 {{"delete", later}, 1, "there is no workspace \"LAST SESSION\""}});
    EXPECT_EQ(members(done({"history", "list", "--json"}), "lastRestoredAt"), (Texts{"", ""}));
    expectSteps({{{"rename", "Work", "last session"}, 0, "Renamed Work to \"last session 3\""},
                 {{"show", later}, 0, "Last session\n"}});
    EXPECT_NE(done({"show", "03CC17F4-4EAF-47BB-9F08-13A4854D3F71"}).find("1 application, 2 windows"),
              std::string::npos);
    expectSteps({{{"history", "clear"}, 0, "Removed 2 sessions\n"}, {{"list"}, 0, "last session"}});
    EXPECT_FALSE(std::filesystem::exists(home_ / sessions));
}

TEST_F(DesktopCommandTest, EachSetOfDisplaysHasItsLayoutAndTwinsAreToldApart) {
    const auto desk = [this](const std::string& name, int x, const std::string& twins) {
        file(name,
             fmt::format(R"({{"displays": [{{"id": "lid", "frame": [0, 0, 1000, 800]}}{}], "applications": [
            {{"identifier": "org.pad", "name": "Pad", "windows": [
              {{"title": "Note", "frame": [{}, 50, 300, 200]}}]}}]}})",
                         twins, x));
    };
    const auto twin = [](const std::string& id, int x, int y) {
        return fmt::format(R"(, {{"id": "{}", "model": "M", "frame": [{}, {}, 1000, 800]}})", id, x, y);
    };
    desk("alone", 100, "");
    desk("docked", -900, twin("T1", -1000, 0) + twin("T2", 1000, 0));
    desk("stacked", 10, twin("T7", 0, -800) + twin("T8", 0, 800));
    const std::string onOther = "300 × 200 at 100, 850";
    expectSteps(
        {{on("alone", {"save", "Pad"}), 0, "Saved"},
         {on("docked", {"layout", "save", "Pad"}), 0, "Saved the layout for these displays in Pad\n"},
         {{"layout", "list", "Pad"}, 0, "lid, T1, T2"},
         {on("alone", {"plan", "Pad", "--exit-code"}), 0, "in place"},
         {on("stacked", {"restore", "--arrange", "Pad"}), 0, "the displays T1, T2 are alike"},
         {on("stacked", {"plan", "Pad", "--display", "T1"}), 2, "give the saved display"},
         {on("stacked", {"plan", "Pad", "--display", "T1=T0"}), 1, "no display attached is called T0"},
         {on("stacked", {"plan", "Pad", "--display", "T0=T8"}), 1, "saved with Pad is called T0"},
         {on("stacked", {"plan", "Pad", "--display", "T1=T8"}), 0, onOther}});
    EXPECT_NE(done(on("stacked", {"plan", "Pad"})).find(onOther), std::string::npos) << "it is remembered";
    expectSteps({{{"layout", "remove", "Pad", "2"}, 1, "NUMBER: Pad has no layout 2"},
                 {{"layout", "remove", "Pad", "1"}, 0, "Removed a layout of Pad\n"},
                 {{"layout", "remove", "Pad", "1"}, 1, "Pad has no layout 1"}});
}

TEST_F(DesktopCommandTest, AKeptSceneIsRestoredOverSeveralCalls) {
    const std::string before = home_.read("disturbed"),
                      plan = done(on("disturbed", {"plan", "work", "--keep-scene"}));
    for (const char* part :
         {"Desktops: 1 desktop would be created on display left, which has 1\n",
          "Editor: runs, 2 windows\n  Letter\n",
          "why     same title, same kind, similar size, same place in the list (score ",
          "where   600 × 400 at 100, 100, display left, desktop 1\n",
          "change  300 × 200 at 400, 300 → 600 × 400 at 100, 100, minimized → shown\n",
          "shown → minimized, desktop 1 → desktop 2\n", "steps   unminimize, then move and resize\n",
          "move and resize, then minimize, then move to desktop 2 (to be created)\n",
          "Terminal: would be launched\n  shell\n      placed once the application is launched\n",
          "where   640 × 300 at 50, 600, display left, desktop 1\n",
          "\nWork: 0 in place · 2 would change · 1 yet to open · 1 launch · 1 new desktop\n"})
        EXPECT_NE(plan.find(part), std::string::npos) << part << "\n" << plan;
    expectSteps(
        {{on("disturbed", {"plan", "work", "--exit-code"}), 5, "2 would change"},
         {on("disturbed", {"plan", "work", "--only", "Terminal"}), 0, "Work: 0 in place · 1 yet to"}});
    done(on("disturbed", {"restore", "work", "--only", "editor"}));
    EXPECT_EQ(home_.read("disturbed"), before) << "without --keep-scene the file is left alone";
    const std::string restored = "\n" + done(on("disturbed", {"restore", "work", "--keep-scene"}));
    for (const char* line :
         {"\nQuillo                  created 1 desktop\n", "\nTerminal                launched\n",
          "\nEditor    Letter        restored (300 × 200 at 400, 300 → 600 × 400 at 100",
          "\nEditor    Notes\\x1b[2J  restored (", "desktop 1 → desktop 2)\n",
          "\nTerminal  shell         restored (100 × 100 at 0, 0 → 640 × 300 at 50, 600",
          "\nWork is back: 3 restored · 1 desktop created · 1 launched · "})
        EXPECT_NE(restored.find(line), std::string::npos) << line << restored;
    EXPECT_EQ(windows("disturbed"), windows("arranged"));
    EXPECT_EQ(members(done({"list", "--json"}), "lastRestoredAt"), Texts{""}) << "in memory is no use of it";
    const std::string again = done(on("disturbed", {"plan", "work", "--json"}));
    EXPECT_EQ(members(again, "presence"), (Texts{"running", "running", "running", ""}));
    EXPECT_EQ(members(again, "confidence"), (Texts{"high", "high", "high", ""}));
    expectSteps({{on("disturbed", {"plan", "work", "--exit-code"}), 0, "change  in place\n"},
                 {on("disturbed", {"plan", "work"}), 0, "\nWork: 3 in place\n"},
                 {on("disturbed", {"restore", "work"}), 0, "Editor    Letter        in place\n"},
                 {on("disturbed", {"restore", "work"}), 0, "Work is back: 3 in place · "}});
}

TEST_F(DesktopCommandTest, ExitStatusAndLinesSayWhatDidNotComeBack) {
    const std::string refused = R"(, "faults": [{"kind": "moveRefused", "title": "Letter"}])",
                      noLaunch = R"(, "faults": [{"kind": "launchRefused"}])",
                      clamped = R"(, "faults": [{"kind": "sizeClamped", "title": "Letter"}])",
                      hangs = R"(, "faults": [{"kind": "applicationHangs", "application": "org.editor"}])",
                      untrusted = R"(, "trusted": false)",
                      noPermission = "Accessibility permission not granted";
    std::string missing = disturbed();
    missing.replace(missing.find(R"("running": false)"), 16, R"("running": false, "installed": false)");
    const struct {
        std::string scene;
        Step step;
    } cases[] = {
        {disturbed(refused),
         {{"restore", "work"}, 3, "Letter        failed: window refused position or minimized state"}},
        {disturbed(noLaunch), {{"restore", "work"}, 3, "failed: couldn't launch: "}},
        {disturbed(noLaunch), {{"restore", "work", "--only", "EDITOR"}, 0, "2 restored"}},
        {disturbed(clamped),
         {{"restore", "work", "--only", "org.editor", "--only", "terminal"}, 0, "3 restored"}},
        {disturbed(), {{"restore", "work", "--only", "Mail"}, 1, "--only: Work holds no application Mail"}},
        {disturbed(), {{"restore", "work", "--only", "Editor/NOTES"}, 0, "1 restored"}},
        {disturbed(),
         {{"restore", "work", "--except", "terminal", "--except", "Editor/#2"}, 0, "1 restored"}},
        {disturbed(), {{"plan", "work", "--except", "Editor/#3"}, 1, "Editor has no saved window #3"}},
        {disturbed(), {{"plan", "work", "--only", "Editor/Leter"}, 1, "did you mean Letter?"}},
        {disturbed(), {{"plan", "work", "--except", "Mail"}, 1, "--except: Work holds no application Mail"}},
        {arranged, {{"plan", "work", "--clean-slate", "quit"}, 0, "Vault: would be asked to quit"}},
        {arranged, {{"plan", "work", "--clean-slate", "quit", "--except", "vault"}, 0, "Work: 3 in place\n"}},
        {disturbed(hangs),
         {{"plan", "work"},
          0,
          "Editor: runs, does not answer\n  Letter\n      the application does not answer"}},
        {disturbed("", ""), {{"plan", "work"}, 0, "where   nowhere: no display is attached\n"}},
        {disturbed("", ""), {{"displays"}, 0, "No display is attached.\n"}},
        {missing, {{"plan", "work"}, 0, "Terminal: not installed\n  shell\n      skipped: not installed\n"}},
        {missing, {{"plan", "work"}, 0, " · 1 skipped\n"}},
        {missing, {{"restore", "work"}, 3, " · 1 skipped · "}},
        {disturbed(untrusted), {{"restore", "work"}, 4, noPermission}},
        {disturbed(untrusted), {{"save", "x"}, 4, noPermission}},
        {disturbed(untrusted), {{"doctor"}, 4, "window access         no  "}},
        {disturbed(untrusted), {{"displays"}, 0, "left"}},
        {R"({"displays": [{"id": "left", "frame": [0, 0, 0, 0]}]})",
         {{"windows"}, 1, "scene: displays[0].frame"}},
    };
    for (const auto& c : cases) {
        file("scene", c.scene);
        expectSteps({{on("scene", c.step.arguments), c.step.status, c.step.says}});
    }
    EXPECT_NE(runWith({"XDG_SESSION_TYPE=wayland"}, {QUILLOCTL, "windows"}).err.find("a Wayland session"),
              std::string::npos);
    expectSteps({{on("none", {"windows"}), 1, "none"},  // and without any desktop only the store works
                 {{"save", "Work"}, 4, "quilloctl: "},
                 {{"doctor"}, 4, "window access         no  "},
                 {{"doctor"}, 4, home_ / ".local/share/Quillo"},
                 {{"list"}, 0, "Work"}});
}

TEST_F(DesktopCommandTest, DiffTellsHowTheDesktopDiffersAndEndsAsDiffDoes) {
    const auto diff = [&](const std::string& scene, const Texts& more) {
        Texts arguments{"diff", "Work"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return run(on(scene, arguments));
    };
    file("game",
         disturbed("").insert(
             disturbed("").find(R"({"identifier": "org.term")"),
             R"({"identifier": "org.game", "windows": [{"title": "Level", "frame": [0, 0, 9, 9]}]},)"));
    EXPECT_EQ(done(on("arranged", {"diff", "Work"})), "") << "nothing of what is never saved";
    const Ran differs = diff("game", {});
    EXPECT_EQ(differs.status, 1) << differs.err;
    for (const char* line : {"differs Editor: Letter: 300 × 200 at 400, 300 → 600 × 400 at 100, 100, mini",
                             "missing Terminal: shell\n", "extra   org.game: Level\n"})
        EXPECT_NE(differs.out.find(line), std::string::npos) << line << differs.out;
    EXPECT_EQ(diff("game", {"--only", "Terminal"}).out, "missing Terminal: shell\n");
    EXPECT_EQ(diff("game", {"--only", "Termnal"}).status, 2);
    EXPECT_EQ(run(on("game", {"diff", "Wrok"})).err,
              "quilloctl: there is no workspace Wrok; did you mean Work?\n");
}

TEST_F(DesktopCommandTest, ARestoreCanWaitForTheDesktop) {
    file("dark", disturbed("", ""));
    file("untrusted", disturbed(R"(, "trusted": false)"));
    expectSteps(
        {{on("disturbed", {"restore", "Work", "--wait"}), 0, "3 restored"},
         {on("disturbed", {"restore", "Work", "--wait-limit", "1"}), 2, "--wait-limit"},
         {on("dark", {"restore", "Work", "--wait"}), 3, "quilloctl: --wait: no display is attached\n"},
         {on("untrusted", {"restore", "Work", "--wait", "--wait-limit", "0.1"}), 4, "not granted"}});
}

TEST_F(DesktopCommandTest, WhatNothingCouldLaunchIsNamed) {
    file("empty", R"({"displays": [{"id": "left", "frame": [0, 0, 1600, 1000]}]})");
    file("bare", R"({"displays": [{"id": "left", "frame": [0, 0, 1600, 1000]}], "applications": [
        {"identifier": "xclock", "name": "XClock", "installed": false, "windows": [
          {"title": "clock", "frame": [0, 0, 100, 100]}]}]})");
    expectSteps(
        {{on("empty", {"save", "Empty"}), 0, "quilloctl: nothing is open that a save records"},
         {on("bare", {"save", "Bare"}), 0, "quilloctl: XClock (xclock): not installed, so a restore will"},
         {on("bare", {"history", "save"}), 0, "launcher add xclock COMMAND..."},
         {on("bare", {"doctor"}), 0, "not launchable        XClock (xclock)\n"},
         {on("arranged", {"doctor"}), 0, "not launchable        none\n"}});
}

TEST_F(DesktopCommandTest, WhatThePersonChoseInTheSettingsHolds) {
    const std::string window = R"("frame": [100, 100, 600, 400], "title": )";
    file("web", R"({"displays": [{"id": "left", "frame": [0, 0, 1600, 1000]}], "applications": [
        {"identifier": "org.secret", "name": "Secret", "windows": [{)" +
                    window + R"("Diary"}]},
        {"identifier": "com.google.Chrome", "name": "Chrome", "windows": [{)" +
                    window + R"("News",
          "tabs": ["https://news.example/", "https://www.bank.example/"]}]}]})");
    std::filesystem::create_directories(home_ / ".config/Quillo");
    home_.write(".config/Quillo/defaults.json",
                R"({"settings": {"enabledAdapters": ["chromium"], "excludedDomains": ["bank.example"],
                                 "excludedBundleIdentifiers": ["org.secret"]}})");
    done(on("web", {"save", "Web"}));
    const std::string saved = done({"show", "Web", "--json"});
    EXPECT_NE(saved.find("news.example"), std::string::npos);
    for (const char* kept : {"bank", "Secret", "Diary"}) EXPECT_EQ(saved.find(kept), std::string::npos);
    done(on("web", {"history", "save"}));
    done(on("web", {"save", "--update", "Web"}));
    for (const char* name : {"Last session", "Web"}) {
        const std::string again = done({"show", name, "--json"});
        EXPECT_NE(again.find("news.example"), std::string::npos);
        for (const char* kept : {"bank", "Secret"}) EXPECT_EQ(again.find(kept), std::string::npos) << name;
    }
    file("closed", R"({"displays": [{"id": "left", "frame": [0, 0, 1600, 1000]}],
                       "applications": [{"identifier": "com.google.Chrome", "name": "Chrome"}]})");
    expectSteps({{on("web", {"doctor"}), 0, "integrations          chromium\n"},
                 {on("web", {"doctor"}), 0, "excluded websites     1\n"},
                 {on("closed", {"plan", "Web"}), 0, "in a new window: https://news.example/\n"},
                 {on("closed", {"restore", "Web"}), 0, "1 reopened"}});
    const struct {
        const char *stored, *complaint;
    } damages[] = {
        {"{", "defaults.json: the document: not valid JSON in line 1"},
        {R"({"settings": {"excludedBundleIdentifiers": "org.secret"}})", "defaults.json: settings: "},
        {R"({"settings": "{"})", "defaults.json: settings: "},
    };
    for (const auto& damage : damages) {
        home_.write(".config/Quillo/defaults.json", damage.stored);
        const Ran damaged = run(on("web", {"windows"}));
        EXPECT_EQ(damaged.err.find(
                      std::string("quilloctl: the settings cannot be read, the usual ones are used: ") +
                      damage.complaint),
                  0U)
            << damaged.err;
        EXPECT_NE(damaged.out.find("Diary"), std::string::npos);
        EXPECT_EQ(run(on("web", {"doctor"})).err, damaged.err);
        done({"list"});  // which does not ask them
    }
    Texts doctor = on("web", {"doctor"});
    doctor.insert(doctor.begin(), QUILLOCTL);
    const Ran other = runWith({"XDG_CONFIG_HOME=" + (home_ / "other").string()}, doctor);
    EXPECT_NE(other.out.find("integrations          none\n"), std::string::npos) << other.out;
    EXPECT_EQ(other.err, "");
}

TEST_F(DesktopCommandTest, FoldersTabsDocumentsAndOtherApplicationsArePlannedAndDone) {
    const std::string display = R"("displays": [{"id": "left", "frame": [0, 0, 1600, 1000]}])";
    const std::string window = R"("frame": [100, 100, 600, 400])";
    file("rich", "{" + display + R"(, "applications": [
        {"identifier": "org.editor", "name": "Editor", "windows": [
          {"title": "a.txt", "document": "file:///d/a.txt", )" +
                     window + R"(}]},
        {"identifier": "com.google.Chrome", "name": "Chrome", "windows": [
          {"title": "News", "tabs": ["https://news.example/"], )" +
                     window + R"(}]}]})");
    file("poor", "{" + display + R"(, "applications": [
        {"identifier": "org.editor", "name": "Editor", "running": false},
        {"identifier": "org.game", "name": "Game"},
        {"identifier": "com.google.Chrome", "name": "Chrome"}]})");
    file("refusing", home_.read("rich").replace(0, 1, R"({"faults": [{"kind": "automationRefused"}], )"));
    const Texts chromium{"--adapter", "chromium"};
    const auto with = [&](Texts arguments, const Texts& more) {
        arguments.insert(arguments.end(), more.begin(), more.end());
        return arguments;
    };
    expectSteps(
        {{on("rich", with({"save", "Rich"}, chromium)), 0, "Saved"},
         {on("poor", {"plan", "Rich", "--clean-slate", "hide"}), 0, "Game: would be hidden\n"},
         {on("poor", {"plan", "Rich"}), 0, "opens   /d/a.txt\n"},
         {on("poor", {"plan", "Rich"}), 0, "integration is disabled or unavailable\n"},
         {on("poor", with({"plan", "Rich"}, chromium)), 0, "in a new window: https://news.example/\n"},
         {on("rich", with({"restore", "Rich"}, chromium)), 0, "Rich is back: 2 in place · 0.1 s"},
         {on("poor", {"plan", "Rich", "--clean-slate", "hide", "--only", "Editor"}), 0, " · 1 other applic"},
         {on("poor", {"restore", "Rich", "--clean-slate", "quit", "--adapter", "chromium"}), 0,
          "2 restored \xc2\xb7 1 launched \xc2\xb7 2 reopened"},
         {on("poor", {"restore", "Rich", "--adapter", "opera"}), 2, "--adapter"}});
    const std::string part =
        done(on("poor", {"restore", "Rich", "--clean-slate", "quit", "--only", "Editor"}));
    EXPECT_NE(part.find("  quit\n"), std::string::npos) << part;
    EXPECT_EQ(part.find("Chrome"), std::string::npos) << "the workspace holds it: " << part;
    const std::string note = "Chrome: Browser automation was unavailable.\n";
    expectSteps({{on("poor", with({"plan", "Rich", "--json"}, chromium)), 0, R"("newWindow":true,"urls":[")"},
                 {on("refusing", with({"save", "Poor"}, chromium)), 0, "quilloctl: " + note},
                 {{"show", "Poor"}, 0, "note        " + note}});
}

TEST_F(DesktopCommandTest, WhatWasNotSavedHereIsAskedAboutOnce) {
    const std::string gift = home_ / "gift.json",
                      refused = "\"Work 2\" was not saved on this computer; look at it";
    done({"export", "Work", gift});
    done({"import", gift});
    const auto answered = [&](const std::string& answer, const std::string& options = "") {
        const std::string command = QUILLOCTL " --desktop simulated:" + (home_ / "disturbed").string() +
                                    " restore \\\"work 2\\\" " + options;
        return runWith({"TERM=dumb"},
                       {"bash", "-c", "printf '" + answer + "' | script -qec \"" + command + "\" /dev/null"});
    };
    const std::string shown =
        " was not saved on this computer. Restoring it would do this:\r\n"
        "  Launches\r\n    Terminal\r\n  Launches another time (open now)\r\n    Editor\r\n  Makes 1 "
        "desktop\r\nRestore it? "
        "[y/N] ";
    expectSteps({{on("disturbed", {"restore", "work 2"}), 1, refused},
                 {on("disturbed", {"restore", "work 2", "--json"}), 1, "--yes"},
                 {on("disturbed", {"plan", "work 2"}), 0, "not saved on this computer; restore asks first\n"},
                 {on("disturbed", {"plan", "work 2", "--json"}), 0, R"("savedHere":false,"agreed":false)"},
                 {on("disturbed", {"restore", "work 2", "--only", "Editor", "--yes"}), 0, "2 restored"},
                 {on("disturbed", {"restore", "work 2"}), 1, refused}});  // what was agreed to was a part
    for (const char* no : {"n\\n", "\\n", ""}) {
        const Ran ran = answered(no);
        EXPECT_EQ(ran.status, 130) << no;
        EXPECT_NE(ran.out.find(shown), std::string::npos) << ran.out;
        EXPECT_EQ(ran.out.find("restored"), std::string::npos) << ran.out;
    }
    EXPECT_NE(answered("y\\n").out.find("3 restored"), std::string::npos);
    expectSteps({{on("disturbed", {"restore", "work 2"}), 0, "3 restored"},
                 {on("disturbed", {"plan", "work 2"}), 0, "you agreed to restore it\n"},
                 {{"rename", "work 2", "Mine"}, 0, "Renamed"},
                 {{"duplicate", "Mine"}, 0, "Duplicated"},
                 {on("disturbed", {"restore", "Mine copy"}), 0, "3 restored"}});

    // A file that was changed in its place is another one, and its wish to quit does not survive a renewal.
    const std::string id = members(done({"show", "Work", "--json"}), "id").front();
    const std::string stored = ".local/share/Quillo/workspaces/" + Uuid::parse(id)->lower() + ".json";
    std::string document = home_.read(stored);
    document.insert(document.find('{') + 1, R"("cleanSlate": "quit",)");
    home_.write(stored, document);
    expectSteps({{on("disturbed", {"restore", "Work"}), 1, "not saved on this computer"},
                 {on("disturbed", {"restore", "Work", "--clean-slate", "keep", "-y"}), 0, "3 restored"},
                 {on("disturbed", {"restore", "Work"}), 1, "not saved on this computer"},
                 {on("arranged", {"save", "--update", "Work"}), 0, "Saved"},
                 {on("disturbed", {"restore", "Work"}), 0, "3 restored"}});
    EXPECT_EQ(done({"show", "Work", "--json"}).find("cleanSlate"), std::string::npos);
}

TEST_F(DesktopCommandTest, EveryReaderGetsItsForm) {
    const std::string json = done(on("disturbed", {"--json", "restore", "work"}));
    Texts statuses = members(json, "status");
    EXPECT_EQ(statuses.back(), "finished");
    std::ranges::sort(statuses);
    EXPECT_EQ(statuses,
              (Texts{"createdDesktops", "finished", "launched", "restored", "restored", "restored"}));
    EXPECT_NE(json.find(R"("title":"Letter","savedIndex":0,"status":"restored")"), std::string::npos) << json;

    const std::string simulated = "--desktop simulated:" + (home_ / "disturbed").string() + " restore work ";
    const std::string terminal = onTerminal("A=b", simulated);
    EXPECT_NE(terminal.find("Resuming Work… 1 of 3 windows\r\x1b[K"), std::string::npos) << terminal;
    EXPECT_NE(terminal.find("\x1b[32mrestored\x1b[0m"), std::string::npos) << terminal;
    EXPECT_EQ(done(on("disturbed", {"restore", "work"})).find("Resuming"), std::string::npos);

    const Ran gone = runWith(  // one that goes away stops nothing
        {}, {"bash", "-c", QUILLOCTL " " + simulated + "--keep-scene | true; exit ${PIPESTATUS[0]}"});
    EXPECT_EQ(gone.status, 0);
    EXPECT_EQ(gone.err.find("quilloctl:"), std::string::npos) << gone.err;
    EXPECT_EQ(windows("disturbed"), windows("arranged"));

    const std::string log = ".local/state/Quillo/quillo.log", text = home_.read(log);
    EXPECT_EQ(home_.mode(log), 0600U);
    EXPECT_NE(text.find("captured 2 apps, 3 windows"), std::string::npos) << text;
    EXPECT_NE(text.find("restore finished: "), std::string::npos) << text;
    for (const char* title : {"Letter", "Notes", "shell", "Work"})
        EXPECT_EQ(text.find(title), std::string::npos) << text;
}

}  // namespace
}  // namespace quillo::ctl
