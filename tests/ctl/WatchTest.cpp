// watch: another program's changes of the library, as they come.
#include "tests/ctl/Quilloctl.hpp"

namespace quillo::ctl {
namespace {

using WatchTest = QuilloctlTest;

TEST_F(WatchTest, TellsWhatOthersDoToTheLibraryAndNothingOfWhatItHolds) {
    const std::string path = file("in.json", document("Morning")), events = home_ / "events";
    const std::string script =
        file("watch.sh", fmt::format(R"sh(
quilloctl() {{ "{0}" --desktop simulated:{1} "$@"; }}
tell() {{ until [ "$(wc -l <{2})" -ge "$1" ]; do sleep 0.02; done; }}
: >{2}
quilloctl --json watch --count 5 >{2} & watching=$!
cd; tell 1; quilloctl import {3}
tell 2; quilloctl rename Morning Evening
tell 3; sed -i 's/"schemaVersion"/"lastRestoredAt":"2026-01-02T03:04:05Z",&/' .local/share/Quillo/workspaces/*.json
tell 4; quilloctl delete Evening
tell 5; quilloctl save Desk
wait $watching)sh",
                                     QUILLOCTL, QUILLO_SOURCE_DIR "/tests/scenes/desk.json", events, path));
    const Ran ran = runWith({}, {"sh", script});
    EXPECT_EQ(ran.status, 0) << ran.err;
    const std::string said = home_.read("events");
    EXPECT_EQ(members(said, "event"),
              (Texts{"watching", "saved", "renamed", "restored", "deleted", "saved"}));
    EXPECT_EQ(members(said, "name"), (Texts{"", "Morning", "Evening", "Evening", "Evening", "Desk"}));
    EXPECT_EQ(members(said, "formerName")[2], "Morning");
    for (const char* inside : {"Letter", "Editor", "x.example", "/tmp"})
        EXPECT_EQ(said.find(inside), std::string::npos) << inside;
}

TEST_F(WatchTest, EndsWhenItIsStoppedOrNobodyReads) {
    const std::string script = file("ends.sh", R"(
cd "$HOME"; mkfifo pipe; : >events
")" QUILLOCTL R"(" watch >events & watching=$!
until [ -s events ]; do sleep 0.02; done
kill -TERM $watching; wait $watching; echo $?
")" QUILLOCTL R"(" watch >pipe & watching=$!
head -n 1 <pipe >events
")" QUILLOCTL R"(" -q --desktop simulated:")" QUILLO_SOURCE_DIR R"(/tests/scenes/desk.json" save A
wait $watching; echo $?)");
    EXPECT_EQ(lines(runWith({}, {"sh", script}).out), (Texts{"143", "0"}));
}

}  // namespace
}  // namespace quillo::ctl
