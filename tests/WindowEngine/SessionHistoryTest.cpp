#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "WindowEngine/AutoSnapshotPolicy.hpp"
#include "WindowEngine/SessionHistory.hpp"
#include "WindowEngine/services/ForwardingFileSystem.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

using std::chrono::minutes;

constexpr Instant nine{std::chrono::hours{9}};
const std::string latestFile = "03cc17f4-4eaf-47bb-9f08-13a4854d3f71.json";

/// Two applications; a browser with two windows and the context of both.
WorkspaceSnapshot session(Instant capturedAt = nine) {
    WorkspaceSnapshot snapshot = samples::example().snapshot;
    snapshot.capturedAt = capturedAt;
    ApplicationSnapshot& browser = snapshot.applications.at(0);
    browser.bundleIdentifier = "org.browser";
    browser.windows = {browser.windows.at(0), browser.windows.at(0)};
    browser.windows[1].title = "Second";
    browser.windows[1].index = 1;
    browser.context = AppContext{
        "safari",
        {{0, {samples::url("https://a.example")}, 11}, {1, {samples::url("https://b.example")}, 12}}};
    snapshot.applications.push_back({"org.Editor", "Editor", {}, {}, {}});
    return snapshot;
}

/// The n-th of several different sessions, captured n minutes after nine.
WorkspaceSnapshot session(int n) {
    WorkspaceSnapshot snapshot = session(nine + minutes{n});
    snapshot.applications[0].windows[0].frame.x = n;
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

TEST_F(SessionHistoryTest, TheSameSessionIsWrittenOnceWhateverTheOrderAndTheNumbers) {
    const std::pair<const char*, std::function<void(WorkspaceSnapshot&)>> same[] = {
        {"time and remarks", [](auto& s) { s.capturedAt = nine + minutes{5}, s.notes = {{"a note"}}; }},
        {"applications", [](auto& s) { std::swap(s.applications[0], s.applications[1]); }},
        {"windows", [](auto& s) { std::ranges::reverse(s.applications[0].windows); }},
        {"indices", [](auto& s) { s.applications[0].windows[0].index = 7; }},
        {"context windows", [](auto& s) { std::ranges::reverse(s.applications[0].context->windows); }},
        {"numbers",
         [](auto& s) {
             s.applications[0].context->windows[0].sourceWindowID = 99;
             s.applications[0].context->windows[1].sourceWindowIndex.reset();
         }},
    };
    ASSERT_EQ(history.save(session(), nine), true);
    const std::string written = directory.read("sessions/" + latestFile);
    for (const auto& [what, change] : same) {
        WorkspaceSnapshot other = session();
        change(other);
        EXPECT_EQ(history.save(other, nine), false) << what;
    }
    EXPECT_EQ(directory.read("sessions/" + latestFile), written);
    EXPECT_EQ(files.list(directory / "sessions")->size(), 1U);

    const std::pair<const char*, std::function<void(WorkspaceSnapshot&)>> different[] = {
        {"frame", [](auto& s) { s.applications[0].windows[0].frame.x += 1; }},
        {"state", [](auto& s) { s.applications[0].windows[1].isMinimized ^= true; }},
        {"desktop", [](auto& s) { s.applications[0].windows[0].desktop->index += 1; }},
        {"address", [](auto& s) { s.applications[0].context->windows[0].urls.pop_back(); }},
        {"display", [](auto& s) { s.displays[0].scale = 3; }},
        {"application", [](auto& s) { s.applications.pop_back(); }},
    };
    for (const auto& [what, change] : different) {
        WorkspaceSnapshot other = session();
        change(other);
        EXPECT_NE(SessionHistory::signature(other), SessionHistory::signature(session())) << what;
    }
}

TEST_F(SessionHistoryTest, TheSignatureIsSortedByBytesAndKeepsTheOrderOfEquals) {
    WorkspaceSnapshot snapshot;
    const std::pair<const char*, const char*> listed[] = {
        {"é", ""}, {"b", "second"}, {"b", "first"}, {"a", ""}, {"B", ""}};
    for (const auto& [identifier, name] : listed)
        snapshot.applications.push_back({identifier, name, {}, {}, {}});
    const auto& of = snapshot.applications;
    WorkspaceSnapshot sorted;
    sorted.applications = {of[4], of[3], of[1], of[2], of[0]};
    EXPECT_EQ(SessionHistory::signature(snapshot), WorkspaceCoding::encode(sorted));
}

TEST_F(SessionHistoryTest, KeepsTheLatestAndFourArchivesNamedAfterTheirTime) {
    EXPECT_TRUE(history.list().empty());
    saveSessions(7);
    const std::vector<Workspace> list = history.list();
    EXPECT_EQ(snapshotsIn(history), sessions({7, 6, 5, 4, 3}));
    EXPECT_EQ(files.list(directory / "sessions")->size(), 5U) << "and no backup of the latest";

    Workspace latest = Workspace::create(SessionHistory::latestID, "Last session", "clock.arrow.circlepath",
                                         "sky", session(7), nine + minutes{7});
    EXPECT_EQ(list[0], latest);
    EXPECT_EQ(SessionHistory::latestID.upper(), "03CC17F4-4EAF-47BB-9F08-13A4854D3F71");
    EXPECT_EQ(history.store().url(SessionHistory::latestID).filename(), latestFile);
    Workspace archive = Workspace::create(list[1].id, "Last session (09:06)", "square.stack.3d.up", "sky",
                                          session(6), nine + minutes{6});
    EXPECT_EQ(list[1], archive);

    // An archive keeps both times of the entry it was, and is named on the person's clock.
    ASSERT_EQ(::setenv("TZ", "Asia/Kolkata", 1), 0);
    const Instant late = nine + minutes{90};
    ASSERT_EQ(history.save(session(8), late), true);
    ASSERT_EQ(history.save(session(9), late + minutes{1}), true);
    archive = history.list().at(1);
    EXPECT_EQ(archive.name, "Last session (14:38)");
    EXPECT_EQ(archive.createdAt, late);
    EXPECT_EQ(archive.updatedAt, session(8).capturedAt);

    EXPECT_TRUE(history.deleteAll());
    EXPECT_FALSE(files.exists(directory / "sessions"));
    EXPECT_TRUE(history.deleteAll());
}

/// Fails the write number `at`: a new file, one put in place, or one of the history removed for good.
class FailingWrites final : public ForwardingFileSystem {
  public:
    FailingWrites(FileSystem& target, int at) : ForwardingFileSystem(target), left_(at) {}

    bool struck() const { return left_ < 0; }

    Result<void> createFile(const Path& f, std::string_view bytes) override {
        return strikes() ? failed() : ForwardingFileSystem::createFile(f, bytes);
    }
    Result<void> rename(const Path& from, const Path& to) override {
        return strikes() ? failed() : ForwardingFileSystem::rename(from, to);
    }
    Result<void> remove(const Path& f) override {
        return f.extension() == ".json" && strikes() ? failed() : ForwardingFileSystem::remove(f);
    }

  private:
    static std::unexpected<Error> failed() { return fail(ErrorKind::noSpace, "no space"); }
    bool strikes() { return left_-- == 0; }
    int left_;
};

TEST_F(SessionHistoryTest, AnErrorEndsASaveAndLosesNoSession) {
    int at = 0;
    for (bool struck = true; struck; ++at) {
        SCOPED_TRACE(at);
        ASSERT_TRUE(history.deleteAll());
        saveSessions(5);
        FailingWrites failing(files, at);
        const auto saved = SessionHistory(failing, directory / "sessions").save(session(6), nine);
        struck = failing.struck();
        EXPECT_EQ(saved.has_value(), !struck);
        auto found = snapshotsIn(history);
        const auto [first, last] = std::ranges::unique(found);  // archived already, and still the latest
        found.erase(first, last);
        if (struck) {
            EXPECT_EQ(saved.error().text, "no space");
            EXPECT_TRUE(found == sessions({5, 4, 3, 2, 1}) || found == sessions({6, 5, 4, 3, 2, 1}));
        }
        EXPECT_TRUE(history.save(session(7), nine));
        EXPECT_EQ(files.list(directory / "sessions")->size(), 5U);
        EXPECT_EQ(snapshotsIn(history).front(), session(7));
    }
    EXPECT_GE(at, 7) << "archive and latest are each written and renamed, the latest is backed up, one goes";
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
