#include <gtest/gtest.h>

#include "WindowEngine/library/AutoSnapshotPolicy.hpp"
#include "WindowEngine/library/SessionHistory.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

using std::chrono::minutes;
using namespace std::chrono_literals;

constexpr Instant nine{std::chrono::hours{9}};
const std::string latestFile = "03cc17f4-4eaf-47bb-9f08-13a4854d3f71.json";

const Url a = samples::url("https://a.example"), c = samples::url("https://c.example");

/// The n-th of several different sessions, captured n minutes after nine: a browser with two windows and the
/// context of both, and another application.
WorkspaceSnapshot session(int n = 0) {
    WorkspaceSnapshot snapshot = samples::example().snapshot;
    snapshot.capturedAt = nine + minutes{n};
    ApplicationSnapshot& browser = snapshot.applications.at(0);
    browser.windows.push_back(browser.windows.at(0));
    browser.windows[0].frame.x = n;
    browser.windows[1].index = 1;
    browser.context = AppContext{"safari", {{0, {a}, 11}, {1, {c}, 12}}};
    snapshot.applications.push_back({"org.B", "B", {}, {}, {}});
    return snapshot;
}

std::vector<WorkspaceSnapshot> sessions(std::initializer_list<int> numbers) {
    std::vector<WorkspaceSnapshot> list;
    for (const int n : numbers) list.push_back(session(n));
    return list;
}

std::vector<WorkspaceSnapshot> snapshotsIn(const SessionHistory& history) {
    std::vector<WorkspaceSnapshot> found;
    for (Workspace& entry : history.list()) found.push_back(std::move(entry.snapshot));
    return found;
}

class SessionHistoryTest : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_EQ(::setenv("TZ", "UTC", 1), 0); }
    void saveSessions(int count) {
        for (int n = 1; n <= count; ++n) EXPECT_EQ(history.save(session(n), nine + minutes{n}), true) << n;
    }

    TemporaryDirectory directory;
    PosixFileSystem files;
    SessionHistory history{files, directory / "sessions"};
};

TEST_F(SessionHistoryTest, OnlyAnotherSessionIsWritten) {
    const struct {
        const char* what;
        bool other;
        void (*change)(WorkspaceSnapshot&, ApplicationSnapshot& browser);
    } cases[] = {
        {"time and remarks", false, [](auto& s, auto&) { s.capturedAt = nine + 5min, s.notes = {{"x"}}; }},
        {"order of applications", false,
         [](auto& s, auto&) { std::swap(s.applications[0], s.applications[1]); }},
        {"order of windows", false, [](auto&, auto& b) { std::swap(b.windows[0], b.windows[1]); }},
        {"indices", false, [](auto&, auto& b) { b.windows[0].index = 7; }},
        {"order of context", false,
         [](auto&, auto& b) { std::swap(b.context->windows[0], b.context->windows[1]); }},
        {"sources", false, [](auto&, auto& b) { b.context->windows = {{9, {a}, 99}, {{}, {c}, {}}}; }},
        {"frame", true, [](auto&, auto& b) { b.windows[0].frame.x += 1; }},
        {"state", true, [](auto&, auto& b) { b.windows[1].isMinimized ^= true; }},
        {"address", true, [](auto&, auto& b) { b.context->windows[0].urls.pop_back(); }},
        {"display", true, [](auto& s, auto&) { s.displays[0].scale = 3; }},
    };
    for (const auto& [what, other, change] : cases) {
        ASSERT_TRUE(history.deleteAll());
        ASSERT_EQ(history.save(session(), nine), true);
        WorkspaceSnapshot snapshot = session();
        change(snapshot, snapshot.applications[0]);
        EXPECT_EQ(history.save(snapshot, nine), other) << what;
        EXPECT_EQ(files.list(directory / "sessions")->size(), other ? 2U : 1U) << what;
        EXPECT_EQ(history.store().load(SessionHistory::latestID)->snapshot, other ? snapshot : session())
            << what;
    }

    WorkspaceSnapshot listed;  // sorted by bytes; equals keep their order
    for (const auto& [identifier, name] : {std::pair{"é", ""}, {"b", "2"}, {"b", "1"}, {"B", ""}})
        listed.applications.push_back({identifier, name, {}, {}, {}});
    WorkspaceSnapshot sorted = listed;
    std::swap(sorted.applications[0], sorted.applications[3]);
    EXPECT_EQ(SessionHistory::signature(listed), WorkspaceCoding::encode(sorted));
}

TEST_F(SessionHistoryTest, KeepsTheLatestAndFourArchivesNamedAfterTheirTime) {
    EXPECT_TRUE(history.list().empty());
    saveSessions(7);
    const std::vector<Workspace> list = history.list();
    EXPECT_EQ(snapshotsIn(history), sessions({7, 6, 5, 4, 3}));
    EXPECT_EQ(files.list(directory / "sessions")->size(), 5U) << "and no backup of the latest";

    EXPECT_EQ(list[0], Workspace::create(SessionHistory::latestID, "Last session", "clock.arrow.circlepath",
                                         "sky", session(7), nine + 7min));
    EXPECT_EQ(history.store().url(SessionHistory::latestID).filename(), latestFile);
    EXPECT_EQ(list[1], Workspace::create(list[1].id, "Last session (09:06)", "square.stack.3d.up", "sky",
                                         session(6), nine + 6min));

    // An archive keeps both times of the entry it was, and is named on the person's clock.
    ASSERT_EQ(::setenv("TZ", "Asia/Kolkata", 1), 0);
    ASSERT_EQ(history.save(session(8), nine + 90min), true);
    ASSERT_EQ(history.save(session(9), nine + 91min), true);
    const Workspace archive = history.list().at(1);
    EXPECT_EQ(archive.name, "Last session (14:38)");
    EXPECT_EQ(archive.createdAt, nine + 90min);
    EXPECT_EQ(archive.updatedAt, session(8).capturedAt);

    EXPECT_TRUE(history.deleteAll());
    EXPECT_FALSE(files.exists(directory / "sessions"));
    EXPECT_TRUE(history.deleteAll());
}

TEST_F(SessionHistoryTest, ASessionThatCannotBeComparedOrReadIsHandledByTheStore) {
    saveSessions(2);
    WorkspaceSnapshot broken = session(3);
    broken.applications[0].windows[1].frame.x = 1.0 / 0.0;
    EXPECT_EQ(history.save(broken, nine).error().text,
              "applications[0].windows[1].frame: not a finite number");
    EXPECT_EQ(snapshotsIn(history), sessions({2, 1}));
    directory.write("sessions/" + latestFile, "{");
    EXPECT_EQ(snapshotsIn(history), sessions({1})) << "no backup of the latest is kept";
    EXPECT_EQ(history.save(session(3), nine), true);
    EXPECT_EQ(snapshotsIn(history), sessions({3, 1}));
}

TEST(AutoSnapshotPolicy, CapturesByItselfOnlyWhenAsked) {
    using namespace AutoSnapshotPolicy;
    const std::pair<std::optional<std::int64_t>, std::int64_t> settings[] = {
        {0, 0}, {5, 5}, {10, 10}, {30, 30}, {60, 60}, {1, 0}, {15, 0}, {45, 0}, {120, 0}, {-5, 0}, {{}, 0}};
    for (const auto& [stored, counts] : settings) EXPECT_EQ(interval(stored), counts);
    for (const auto& [minutes, counts] : settings) {
        for (const int flags : {0, 1, 2, 3, 4, 5, 6, 7}) {
            const Situation now{minutes.value_or(0), (flags & 1) != 0, (flags & 2) != 0, (flags & 4) != 0};
            EXPECT_EQ(shouldCapture(now), counts > 0 && flags == 3) << now.minutes << " " << flags;
        }
    }
    EXPECT_TRUE(captureImmediately(0, 10));
    const std::pair<std::int64_t, std::int64_t> quiet[] = {{0, 0}, {0, 15}, {10, 30}, {7, 10}, {10, 0}};
    for (const auto& [before, after] : quiet) EXPECT_FALSE(captureImmediately(before, after)) << before;
}

}  // namespace
}  // namespace quillo
