// doctor, windows, displays, save, plan and restore over scenes: what a person sees and what a script gets.
#include <fmt/format.h>

#include "tests/ctl/Quilloctl.hpp"

namespace quillo::ctl {
namespace {

constexpr const char* arranged = R"({
  "displays": [{"id": "left", "frame": [0, 0, 1600, 1000], "desktops": 2}],
  "applications": [
    {"identifier": "org.editor", "name": "Editor", "windows": [
      {"title": "Letter", "frame": [100, 100, 600, 400]},
      {"title": "Notes\u001b[2J", "frame": [800, 100, 500, 400], "minimized": true}]},
    {"identifier": "org.term", "name": "Terminal", "windows": [
      {"title": "shell", "frame": [50, 600, 640, 300]}]},
    {"identifier": "com.bitwarden.desktop", "name": "Vault", "windows": [
      {"title": "secrets", "frame": [0, 0, 300, 300]}]}]})";

/// The same applications in disorder: one has been quit. `more` is added to the scene.
std::string disturbed(std::string_view more = "") {
    return fmt::format(R"({{
      "displays": [{{"id": "left", "frame": [0, 0, 1600, 1000], "desktops": 2}}],
      "applications": [
        {{"identifier": "org.editor", "name": "Editor", "windows": [
          {{"title": "Letter", "frame": [400, 300, 300, 200], "minimized": true}},
          {{"title": "Notes\u001b[2J", "frame": [0, 0, 500, 400]}}]}},
        {{"identifier": "org.term", "name": "Terminal", "running": false, "windows": [
          {{"title": "shell", "frame": [0, 0, 100, 100]}}]}}] {}}})",
                       more);
}

class DesktopCommandTest : public QuilloctlTest {
  protected:
    DesktopCommandTest() {
        file("arranged.json", arranged);
        file("disturbed.json", disturbed());
    }
    Ran on(const std::string& scene, std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(),
                         {QUILLOCTL, "--desktop", "simulated:" + (home_ / scene).string()});
        return runWith({}, arguments);
    }
    void save(const std::string& name) {
        const Ran ran = on("arranged.json", {"save", name});
        EXPECT_EQ(ran.status, 0) << ran.err;
    }
    Texts windows(const std::string& scene) {
        Texts found;
        for (const std::string& line : lines(on(scene, {"windows"}).out)) {
            if (line.find("FRAME") == std::string::npos) found.push_back(line);
        }
        return found;
    }
};

TEST_F(DesktopCommandTest, WhatIsSeenIsWhatASaveRecords) {
    const Texts seen{"Editor       Letter        600 × 400 at 100, 100  left     Desktop 1",
                     "Editor       Notes\\x1b[2J  500 × 400 at 800, 100  left     Desktop 1, minimized",
                     "Terminal     shell         640 × 300 at 50, 600   left     Desktop 1"};
    EXPECT_EQ(windows("arranged.json"), seen) << "and nothing of applications that keep passwords";
    EXPECT_EQ(on("arranged.json", {"save", " Work "}).out, "Saved 3 windows of 2 applications as Work\n");
    EXPECT_EQ(on("arranged.json", {"save", "work"}).out, "Saved 3 windows of 2 applications as work 2\n");
    const std::string shown = done({"show", "Work"});
    for (const std::string& line : seen) EXPECT_NE(shown.find(line), std::string::npos) << shown;
    EXPECT_EQ(members(on("arranged.json", {"windows", "--json"}).out, "title"),
              (Texts{"Letter", "Notes\x1b[2J", "shell"}));
    EXPECT_EQ(members(on("arranged.json", {"displays", "--json"}).out, "id"), Texts{"left"});
    EXPECT_NE(on("arranged.json", {"displays"}).out.find("1600 × 1000 at 0, 0"), std::string::npos);
}

TEST_F(DesktopCommandTest, AnUpdateKeepsIdentityAndLook) {
    save("Work");
    const auto kept = [this] {
        const std::string document = done({"show", "Work", "--json"});
        Texts values;
        for (const char* key : {"id", "name", "icon", "color", "createdAt"}) {
            values.push_back(members(document, key).front());
        }
        return values;
    };
    const Texts before = kept();
    EXPECT_EQ(before[2], "square.stack.3d.up");
    const Ran renewed = on("disturbed.json", {"save", "--update", "WORK"});
    EXPECT_EQ(renewed.out, "Saved 2 windows of 1 application in Work\n") << renewed.err;
    EXPECT_EQ(kept(), before);
    EXPECT_EQ(on("disturbed.json", {"save", "--update", "Other"}).status, 1);
    EXPECT_EQ(lines(done({"list"})).size(), 2U);
}

TEST_F(DesktopCommandTest, AKeptSceneIsRestoredOverSeveralCalls) {
    save("Work");
    const std::string before = contents(home_ / "disturbed.json");
    const Ran plan = on("disturbed.json", {"plan", "work", "--keep-scene"});
    EXPECT_EQ(plan.status, 0) << plan.err;
    for (const char* part :
         {"Editor: runs, 2 windows\n  Letter\n",
          "why     same title, same kind, similar size, same place in the list (score ",
          "where   600 × 400 at 100, 100, display left\n", "steps   unminimize, then move and resize\n",
          "move and resize, then minimize\n",
          "Terminal: would be launched\n  shell\n      placed once the application is launched\n",
          "where   640 × 300 at 50, 600, display left\n"}) {
        EXPECT_NE(plan.out.find(part), std::string::npos) << part << "\n" << plan.out;
    }
    EXPECT_EQ(on("disturbed.json", {"restore", "work"}).status, 0);
    EXPECT_EQ(contents(home_ / "disturbed.json"), before) << "without --keep-scene the file is left alone";

    const Ran restored = on("disturbed.json", {"restore", "work", "--keep-scene"});
    EXPECT_EQ(restored.status, 0) << restored.err;
    const Texts report = lines(restored.out);
    for (const char* line : {"Terminal                launched", "Editor    Letter        restored",
                             "Editor    Notes\\x1b[2J  restored", "Terminal  shell         restored"}) {
        EXPECT_NE(std::ranges::find(report, line), report.end()) << line << "\n" << restored.out;
    }
    EXPECT_EQ(report.back().rfind("Work is back: 3 restored · 1 launched · ", 0), 0U) << report.back();
    EXPECT_EQ(windows("disturbed.json"), windows("arranged.json"));
    EXPECT_NE(members(done({"list", "--json"}), "lastRestoredAt").front(), "");

    const Ran again = on("disturbed.json", {"plan", "work", "--json"});
    EXPECT_EQ(members(again.out, "presence"), (Texts{"running", "running", "running"}));
    EXPECT_EQ(members(again.out, "confidence"), (Texts{"high", "high", "high"}));
}

TEST_F(DesktopCommandTest, ExitStatusAndLinesSayWhatDidNotComeBack) {
    save("Work");
    const struct {
        std::string more;
        std::vector<std::string> arguments;
        int status;
        std::string line;
    } cases[] = {
        {"", {"restore", "work"}, 0, "Work is back: 3 restored"},
        {R"(, "faults": [{"kind": "moveRefused", "title": "Letter"}])",
         {"restore", "work"},
         3,
         "Letter        failed: window refused position or minimized state"},
        {R"(, "faults": [{"kind": "launchRefused"}])", {"restore", "work"}, 3, "failed: couldn't launch: "},
        {R"(, "faults": [{"kind": "launchRefused"}])",
         {"restore", "work", "--only", "EDITOR"},
         0,
         "2 restored"},
        {R"(, "faults": [{"kind": "sizeClamped", "title": "Letter"}])",
         {"restore", "work", "--only", "org.editor", "--only", "terminal"},
         0,
         "3 restored"},
        {"", {"restore", "work", "--only", "Mail"}, 1, "--only: Work holds no application Mail"},
        {R"(, "trusted": false)", {"restore", "work"}, 4, "Accessibility permission not granted"},
        {R"(, "trusted": false)", {"save", "x"}, 4, "Accessibility permission not granted"},
        {R"(, "trusted": false)", {"doctor"}, 4, "window access         no  "},
        {R"(, "trusted": false)", {"displays"}, 0, "left"},
    };
    for (const auto& c : cases) {
        file("scene.json", disturbed(c.more));
        const Ran ran = on("scene.json", c.arguments);
        EXPECT_EQ(ran.status, c.status) << c.line << "\n" << ran.out << ran.err;
        EXPECT_NE((ran.out + ran.err).find(c.line), std::string::npos) << c.line << "\n"
                                                                       << ran.out << ran.err;
    }
}

TEST_F(DesktopCommandTest, APlanSaysWhatCannotBeToldNow) {
    save("Work");
    file("hangs.json",
         disturbed(R"(, "faults": [{"kind": "applicationHangs", "application": "org.editor"}])"));
    const std::string hangs = on("hangs.json", {"plan", "work"}).out;
    EXPECT_NE(hangs.find("Editor: runs, does not answer\n  Letter\n      the application does not answer"),
              std::string::npos)
        << hangs;
    std::string dark = disturbed();
    dark.replace(dark.find("{\"id\": \"left\""), dark.find("}]") + 1 - dark.find("{\"id\""), "");
    file("dark.json", dark);
    const std::string nowhere = on("dark.json", {"plan", "work"}).out;
    EXPECT_NE(nowhere.find("where   nowhere: no display is attached\n"), std::string::npos) << nowhere;
    EXPECT_EQ(on("dark.json", {"displays"}).out, "No display is attached.\n");
}

TEST_F(DesktopCommandTest, JsonStreamsOneObjectAnItemAndATotal) {
    save("Work");
    const Ran ran = on("disturbed.json", {"--json", "restore", "work"});
    EXPECT_EQ(ran.status, 0);
    const Texts statuses = members(ran.out, "status");
    ASSERT_EQ(statuses.size(), 5U) << ran.out;
    EXPECT_EQ(statuses.back(), "finished");
    EXPECT_EQ(std::ranges::count(statuses, "restored"), 3);
    EXPECT_EQ(std::ranges::count(statuses, "launched"), 1);
    EXPECT_NE(ran.out.find(R"("title":"Letter","savedIndex":0,"status":"restored")"), std::string::npos)
        << ran.out;
}

TEST_F(DesktopCommandTest, AReaderThatGoesAwayStopsNothing) {
    save("Work");
    const Ran ran =
        runWith({}, {"bash", "-c",
                     fmt::format("{} --desktop simulated:{} restore work --keep-scene | true; exit "
                                 "${{PIPESTATUS[0]}}",
                                 QUILLOCTL, (home_ / "disturbed.json").string())});
    EXPECT_EQ(ran.status, 0);
    EXPECT_EQ(ran.err.find("quilloctl:"), std::string::npos) << ran.err;
    EXPECT_EQ(windows("disturbed.json"), windows("arranged.json"));
}

TEST_F(DesktopCommandTest, OnlyPartOfAWorkspaceIsNoUseOfIt) {
    save("Work");
    EXPECT_EQ(on("disturbed.json", {"restore", "work", "--only", "editor"}).status, 0);
    EXPECT_EQ(members(done({"list", "--json"}), "lastRestoredAt"), Texts{""});
}

TEST_F(DesktopCommandTest, ABadSceneIsNamedWithItsField) {
    file("bad.json", R"({"displays": [{"id": "left", "frame": [0, 0, 0, 0]}]})");
    for (const char* command : {"windows", "displays"}) {
        const Ran ran = on("bad.json", {command});
        EXPECT_EQ(ran.status, 1);
        EXPECT_NE(ran.err.find((home_ / "bad.json").string() + ": displays[0].frame"), std::string::npos)
            << ran.err;
    }
    EXPECT_EQ(on("none.json", {"windows"}).status, 1);
}

TEST_F(DesktopCommandTest, WithoutAnyDesktopOnlyTheStoreWorks) {
    const Ran save = run({"save", "Work"});
    EXPECT_EQ(save.status, 4) << save.err;
    EXPECT_EQ(lines(save.err).size(), 1U);
    const Ran doctor = run({"doctor"});
    EXPECT_EQ(doctor.status, 4);
    EXPECT_NE(doctor.out.find("window access         no  "), std::string::npos) << doctor.out;
    EXPECT_NE(doctor.out.find((home_ / ".local/share/Quillo").string()), std::string::npos);
    EXPECT_EQ(run({"list"}).status, 0);
}

TEST_F(DesktopCommandTest, TheLogHoldsNoTitlesAndIsItsOwnersOnly) {
    save("Work");
    EXPECT_EQ(on("disturbed.json", {"restore", "work"}).status, 0);
    const auto log = home_ / ".local/state/Quillo/quillo.log";
    EXPECT_EQ(mode(log), 0600U);
    const std::string text = contents(log);
    EXPECT_NE(text.find("captured 2 apps, 3 windows"), std::string::npos) << text;
    EXPECT_NE(text.find("restore finished: "), std::string::npos) << text;
    for (const char* title : {"Letter", "Notes", "shell", "Work"})
        EXPECT_EQ(text.find(title), std::string::npos) << text;
}

TEST_F(DesktopCommandTest, ATerminalSeesProgressThatLeavesNoTrace) {
    save("Work");
    const std::string command =
        fmt::format("{} --desktop simulated:{} restore work", QUILLOCTL, (home_ / "disturbed.json").string());
    const std::string out = runWith({"TERM=xterm"}, {"script", "-qec", command, "/dev/null"}).out;
    EXPECT_NE(out.find("Resuming Work… 1 of 3 windows\r\x1b[K"), std::string::npos) << out;
    EXPECT_NE(out.find("\x1b[32mrestored\x1b[0m"), std::string::npos) << out;
    EXPECT_EQ(on("disturbed.json", {"restore", "work"}).out.find("Resuming"), std::string::npos);
}

}  // namespace
}  // namespace quillo::ctl
