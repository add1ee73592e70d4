// undo: what a restore changed goes back, what stays is named, and nothing is offered twice.
#include "tests/ctl/Quilloctl.hpp"

namespace quillo::ctl {
namespace {

constexpr const char* arranged = R"({
  "displays": [{"id": "left", "frame": [0, 0, 1600, 1000], "desktops": 2}],
  "applications": [
    {"identifier": "org.editor", "name": "Editor", "windows": [
      {"title": "Letter", "frame": [100, 100, 600, 400]},
      {"title": "Notes", "frame": [800, 100, 500, 400], "desktop": 1}]},
    {"identifier": "org.term", "name": "Terminal", "windows": [{"title": "shell", "frame": [50, 600, 640, 300]}]}]})";
constexpr const char* disturbed = R"({
  "displays": [{"id": "left", "frame": [0, 0, 1600, 1000]}],
  "applications": [
    {"identifier": "org.editor", "name": "Editor", "windows": [
      {"title": "Letter", "frame": [400, 300, 300, 200], "minimized": true},
      {"title": "Notes", "frame": [-60, 0, 500, 400]}]},
    {"identifier": "org.term", "name": "Terminal", "running": false, "windows": [
      {"title": "shell", "frame": [0, 0, 100, 100]}]}]})";

constexpr const char* emptied =
    R"({"displays": [{"id": "left", "frame": [0, 0, 1600, 1000]}], "applications": []})";

using UndoCommandTest = QuilloctlTest;

TEST_F(UndoCommandTest, PutsBackWhatARestoreChangedAndNamesWhatStays) {
    const std::string before = "simulated:" + file("arranged", arranged);
    const std::string desk = "simulated:" + file("desk", disturbed);
    const auto windows = [&] {
        const Texts shown = lines(done({"--desktop", desk, "windows"}));
        return Texts(shown.begin(), shown.begin() + 3);
    };
    done({"--desktop", before, "save", "Work"});
    expectSteps({{{"--desktop", desk, "undo"}, 1, "there is no restore to undo"}});
    const Texts was = windows();
    done({"--desktop", desk, "--keep-scene", "restore", "Work"});
    ASSERT_NE(windows(), was);
    const std::string record = home_ / ".local/share/Quillo/undo/simulated/desktop.json";
    EXPECT_EQ(std::filesystem::status(record).permissions(), std::filesystem::perms(0600));
    EXPECT_EQ(lines(done({"--json", "list"})).size(), 1U) << "it is no workspace";
    const Texts stays{"  Terminal was launched, and stays open until you quit it",
                      "  1 desktop that was made stays"};
    Texts plan = lines(done({"--desktop", desk, "undo", "--plan"}));
    EXPECT_NE(plan.front().find("2 windows to be put back"), std::string::npos) << plan.front();
    plan.erase(plan.begin());
    EXPECT_EQ(plan, stays);
    expectSteps({{{"--desktop", desk, "--keep-scene", "undo", "--quit-launched"},
                  0,
                  "Cannot be undone: 1 desktop that was made stays"}});
    EXPECT_EQ(windows(), was);
    expectSteps(
        {{{"--desktop", desk, "windows"}, 0, "Letter"}, {{"--desktop", desk, "undo"}, 1, "no restore"}});
}

TEST_F(UndoCommandTest, OneThatIsDamagedOrFromElsewhereIsRefused) {
    const std::string desk = "simulated:" + file("desk", arranged);
    done({"--desktop", desk, "save", "Work"});
    done({"--desktop", desk, "restore", "Work"});
    const std::string record = ".local/share/Quillo/undo/simulated/desktop.json";
    const std::string whole = home_.read(record), later = "simulated:" + file("later", emptied);
    std::string changed = whole;
    changed.replace(changed.find("Letter"), 6, "Lettre");
    home_.write(record, changed);
    expectSteps({{{"--desktop", desk, "undo"}, 1, "not written on this computer, or changed since"}});
    home_.write(record, "{}");
    expectSteps({{{"--desktop", desk, "undo"}, 1, "desktop.json: this is no record"}});
    home_.write(record, whole);
    expectSteps({{{"--desktop", later, "undo", "--plan"}, 1, "the last restore was in an earlier session"},
                 {{"--desktop", later, "undo"}, 1, "the last restore was in an earlier session"},
                 {{"--desktop", desk, "undo"}, 1, "there is no restore to undo"}});
}

}  // namespace
}  // namespace quillo::ctl
