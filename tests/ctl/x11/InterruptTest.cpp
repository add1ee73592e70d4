// What ends a restore that waits, on a real desktop: Ctrl-C, and another restore. It says what was done.
#include <cstdlib>

#include "tests/ctl/Quilloctl.hpp"
#include "tests/platform/x11/PrivateDesktop.hpp"

namespace quillo::ctl {
namespace {

class InterruptTest : public QuilloctlTest {
  protected:
    InterruptTest() {
        // Launches and never opens a window: the restore waits for it as long as it may.
        std::filesystem::create_directories(home_ / ".local/share/applications");
        file(".local/share/applications/silent.desktop",
             "[Desktop Entry]\nType=Application\nName=Silent\nExec=true\n");
        file("work.json",
             R"({"schemaVersion":2,"id":"6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60","name":"Work","icon":"i",)"
             R"("color":"teal","createdAt":"2025-03-14T09:26:53Z","updatedAt":"2025-03-14T09:26:53Z",)"
             R"("snapshot":{"capturedAt":"2025-03-14T09:26:50Z","displays":[],"applications":[)"
             R"({"bundleIdentifier":"silent","name":"Silent","windows":[{"frame":[[0,0],[9,9]],"index":0,)"
             R"("isFullscreen":false,"isMinimized":false,"normalizedFrame":[[0,0],[1,1]]}]}]}})");
        done({"import", home_ / "work.json"});
        EXPECT_TRUE(x11test::waitFor([this] {
            return runWith({"DISPLAY=" + desktop_.display()}, {QUILLOCTL, "doctor"}).status == 0;
        })) << "the window manager did not come up";
    }
    /// Sends the signal once the application has been launched; what quilloctl said, and its status.
    Ran interruptedBy(const std::string& signal) {
        static constexpr const char* script = R"(cd; rm -f out; "$0" restore Work --yes >out & restore=$!
            until grep -qs launched out; do kill -0 $restore || { cat out; exit 99; }; sleep 0.02; done
            kill -s "$1" $restore; wait $restore; status=$?; cat out; exit $status)";
        return runWith({"DISPLAY=" + desktop_.display()}, {"sh", "-c", script, QUILLOCTL, signal});
    }

    x11test::PrivateDesktop desktop_;
};

TEST_F(InterruptTest, EndsInGoodOrderWithWhatWasDone) {
    for (const auto& [signal, status] : {std::pair("INT", 130), {"TERM", 143}, {"HUP", 129}}) {
        const Ran ran = interruptedBy(signal);
        EXPECT_EQ(ran.status, status) << signal << ran.out << ran.err;
        ASSERT_EQ(lines(ran.out).size(), 3U) << ran.out;
        EXPECT_EQ(lines(ran.out)[0], "Silent            launched");
        EXPECT_EQ(lines(ran.out)[1], "Silent  Untitled  skipped: not reached");
        EXPECT_EQ(lines(ran.out)[2].rfind("Work stopped: 0 restored · 1 launched · 1 skipped · ", 0), 0U)
            << ran.out;
    }
    std::size_t finished = 0;
    for (const std::string& line : lines(log()))
        finished += line.find("restore finished: 1 items") != line.npos;
    EXPECT_EQ(finished, 3U);
    EXPECT_EQ(members(done({"list", "--json"}), "lastRestoredAt"), Texts{""}) << "a stopped restore is none";
}

TEST_F(InterruptTest, AnotherRestoreEndsTheWaitingForWindowsThatOpenLate) {
    static constexpr const char* script = R"(cd; "$0" restore Work --yes --late 40 >out & restore=$!
        until grep -qs "Waiting up to 40 s" out; do kill -0 $restore || exit 99; sleep 0.02; done
        "$0" restore Work --yes --arrange >other; wait $restore; status=$?; cat out; exit $status)";
    const Ran ran = runWith({"DISPLAY=" + desktop_.display()}, {"sh", "-c", script, QUILLOCTL});
    EXPECT_EQ(ran.status, 3) << ran.err;
    EXPECT_NE(ran.out.find("\nNo longer waiting: another restore has begun since"), std::string::npos)
        << ran.out;
    EXPECT_NE(members(done({"list", "--json"}), "lastRestoredAt"), Texts{""});
}

}  // namespace
}  // namespace quillo::ctl
