// Saves that fail or are killed at any call: a complete version is always there, and nothing grows.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>

#include "WindowEngine/library/SessionHistory.hpp"
#include "WindowEngine/services/ForwardingFileSystem.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

using Forward = ForwardingFileSystem;
using Found = std::vector<Workspace>;

enum class Fault { error, writeError, killedBefore, killedWithin };

/// Fails call (or write) number `at`; a killed program makes no call after it either, and may leave half a
/// file.
class FaultyFileSystem final : public ForwardingFileSystem {
  public:
    FaultyFileSystem(FileSystem& target, Fault fault, int at) : Forward(target), fault_(fault), at_(at) {}

    bool struck() const { return calls_ > at_; }
    /// Whether what was put in place would outlive a power failure: its directory was synced since.
    bool durable() const { return unsynced_.empty(); }

    Result<std::string> read(const Path& f) override { return strikes() ? failed() : Forward::read(f); }
    Result<void> createDirectories(const Path& d) override {
        return strikes() ? failed() : Forward::createDirectories(d);
    }
    Result<void> createFile(const Path& f, std::string_view bytes) override {
        const auto half = [&] { (void)Forward::createFile(f, bytes.substr(0, bytes.size() / 2)); };
        return strikes(true, half) ? failed() : Forward::createFile(f, bytes);
    }
    Result<void> copy(const Path& from, const Path& to) override {
        const auto half = [&] { (void)Forward::createFile(to, "{\"half"); };
        return strikes(true, half) ? failed() : Forward::copy(from, to);
    }
    Result<void> rename(const Path& a, const Path& b) override {
        if (strikes(true)) return failed();
        unsynced_.insert(b.parent_path());
        return Forward::rename(a, b);
    }
    Result<void> remove(const Path& f) override { return strikes(true) ? failed() : Forward::remove(f); }
    Result<std::vector<std::string>> list(const Path& d) override {
        return strikes() ? failed() : Forward::list(d);
    }
    bool exists(const Path& f) override { return !strikes() && Forward::exists(f); }
    Result<void> syncDirectory(const Path& d) override {
        if (strikes()) return failed();
        unsynced_.erase(d);
        return Forward::syncDirectory(d);
    }
    Result<std::unique_ptr<DirectoryLock>> lock(const Path& d) override {
        return strikes() ? failed() : Forward::lock(d);
    }

  private:
    static std::unexpected<Error> failed() { return fail(ErrorKind::noSpace, "no space", ENOSPC); }
    bool strikes(bool writes = false, const std::function<void()>& half = [] {}) {
        if (fault_ == Fault::writeError && !writes) return false;
        const int call = calls_++;
        if (call == at_ && fault_ == Fault::killedWithin) half();
        return fault_ <= Fault::writeError ? call == at_ : call >= at_;
    }

    Fault fault_;
    int at_;
    std::atomic<int> calls_ = 0;
    std::set<Path> unsynced_;
};

const Uuid id = *Uuid::parse("6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60");
const std::string primary = id.lower() + ".json", backup = primary + ".bak";

Workspace version(const std::string& content) {
    return samples::named(id, "Work", content);
}

class Faults : public ::testing::TestWithParam<Fault> {
  protected:
    /// Runs `act` with the fault at call 0, 1, 2, ... each in a directory of its own, until it is no longer
    /// reached. `check` looks at what is left, and after it a save works and leaves nothing over.
    void atEveryCall(auto prepare, auto act, auto check) {
        bool struck = true;
        int at = 0;
        for (; struck; ++at) {
            SCOPED_TRACE("call " + std::to_string(at));
            TemporaryDirectory directory;
            const WorkspaceStore sound(disk, directory.path());
            prepare(sound, directory);
            FaultyFileSystem faulty(disk, GetParam(), at);
            const bool done = act(WorkspaceStore(faulty, directory.path()));
            check(sound, directory, done);
            struck = faulty.struck();
            EXPECT_TRUE(struck || faulty.durable());
            ASSERT_TRUE(sound.save(version("after")));
            EXPECT_EQ(sound.load(id), version("after"));
            for (const std::string& name : directory.names())
                EXPECT_TRUE(name.ends_with(".json") || name.ends_with(".json.bak") ||
                            name.contains(".json.damaged"))
                    << name;
        }
        EXPECT_GT(at, 4);
    }

    PosixFileSystem disk;
};

/// Two versions, of which the second may be damaged in the primary.
void saveTwo(const WorkspaceStore& store, const TemporaryDirectory& directory, bool damaged) {
    ASSERT_TRUE(store.save(version("first")) && store.save(version("second")));
    if (damaged) directory.write(primary, "{\"damaged");
}

TEST_P(Faults, ASaveLeavesWhatWasThereOrTheNewVersionComplete) {
    enum World { nothing, twoVersions, damagedPrimary };
    const std::pair<World, Found> worlds[] = {
        {nothing, {}}, {twoVersions, {version("second")}}, {damagedPrimary, {version("first")}}};
    for (const auto& [world, before] : worlds) {
        SCOPED_TRACE(world);
        atEveryCall(
            [&](const WorkspaceStore& store, const TemporaryDirectory& directory) {
                if (world != nothing) saveTwo(store, directory, world == damagedPrimary);
            },
            [](const WorkspaceStore& store) { return store.save(version("new")).has_value(); },
            [&](const WorkspaceStore& store, const TemporaryDirectory& directory, bool done) {
                const auto [found, issues, failure, moved] = store.scan();
                EXPECT_TRUE(found == Found{version("new")} || (!done && found == before));
                EXPECT_TRUE(!failure && (issues.empty() || world == damagedPrimary));
                if (world != twoVersions) return;
                const auto backedUp = WorkspaceCoding::decode(directory.read(backup));
                EXPECT_TRUE(backedUp == version("first") || backedUp == version("second"));
                if (GetParam() == Fault::error) EXPECT_EQ(directory.names(), (std::set{primary, backup}));
            });
    }
}

TEST_P(Faults, ScansLoseNothingWhileTheyRepairAndMove) {
    const Workspace legacy = samples::named(Uuid::random(), "Legacy", "x", 2000);
    atEveryCall(
        [&](const WorkspaceStore& store, const TemporaryDirectory& directory) {
            saveTwo(store, directory, true);
            directory.write("legacy.json", WorkspaceCoding::encode(legacy).value());
            directory.write("legacy.json.bak", "{");
        },
        [](const WorkspaceStore& store) { return (void)store.scan(), true; },
        [&](const WorkspaceStore& store, const TemporaryDirectory& directory, bool) {
            EXPECT_EQ(store.scan().workspaces, (Found{legacy, version("first")}));
            EXPECT_EQ(store.load(id), version("first"));
            EXPECT_EQ(store.load(legacy.id), legacy);
            EXPECT_FALSE(directory.names().contains("legacy.json"))
                << "a move that was interrupted is finished";
        });
}

INSTANTIATE_TEST_SUITE_P(Store, Faults,
                         ::testing::Values(Fault::error, Fault::killedBefore, Fault::killedWithin));

/// The session number n, captured at that second.
WorkspaceSnapshot session(int n) {
    WorkspaceSnapshot snapshot = samples::example().snapshot;
    snapshot.capturedAt = Instant{std::chrono::seconds{n}};
    snapshot.displays[0].scale = n;
    return snapshot;
}

// What cannot be removed may stay; every other error ends the save and is handed on.
TEST(SessionHistoryFaults, AnErrorEndsASaveAndLosesNoSession) {
    const auto snapshots = [](const SessionHistory& history) {
        std::vector<WorkspaceSnapshot> found;
        for (const Workspace& entry : history.list()) found.push_back(entry.snapshot);
        found.erase(std::ranges::unique(found).begin(), found.end());  // archived, and still the latest
        return found;
    };
    const std::vector before{session(5), session(4), session(3), session(2), session(1)};
    PosixFileSystem disk;
    int at = 0, failures = 0;
    for (bool struck = true; struck; ++at) {
        SCOPED_TRACE(at);
        TemporaryDirectory directory;
        const SessionHistory history(disk, directory.path());
        for (int n = 1; n <= 5; ++n) ASSERT_EQ(history.save(session(n), {}), true);
        FaultyFileSystem faulty(disk, Fault::writeError, at);
        const auto saved = SessionHistory(faulty, directory.path()).save(session(6), {});
        struck = faulty.struck();
        auto found = snapshots(history);
        if (!saved) {
            ++failures;
            EXPECT_EQ(saved.error().text, "no space");
            if (found.front() == session(6)) found.erase(found.begin());  // pruning failed
            EXPECT_EQ(found, before);
        }
        EXPECT_EQ(history.save(session(7), {}), true);
        EXPECT_EQ(snapshots(history).front(), session(7));
        EXPECT_EQ(directory.names().size(), 5U);
    }
    EXPECT_EQ(failures, 11)
        << "two for the archive, four for the latest with its backup, five for the oldest";
}

/// Lists a file that another program has just deleted; nothing can be written.
class Stale final : public ForwardingFileSystem {
  public:
    using ForwardingFileSystem::ForwardingFileSystem;
    Result<std::vector<std::string>> list(const Path&) override {
        return std::vector<std::string>{primary, backup, "old name.json"};
    }
    Result<void> createFile(const Path&, std::string_view) override {
        return fail(ErrorKind::permission, "read-only");
    }
};

TEST(WorkspaceStoreFaults, ADeletedFileIsNoDamageAndAMoveThatCannotBeMadeIsReported) {
    PosixFileSystem disk;
    TemporaryDirectory directory;
    Stale stale(disk);
    EXPECT_EQ(WorkspaceStore(stale, directory.path()).scan(), WorkspaceScanResult());
    directory.write("old name.json", WorkspaceCoding::encode(version("x")).value());
    EXPECT_EQ(WorkspaceStore(stale, directory.path()).scan(),
              (WorkspaceScanResult{{version("x")},
                                   {{WorkspaceLoadIssue::Kind::migrationFailed, "old name.json",
                                     "Could not migrate Work to collision-safe storage.", "read-only"}}}));
    EXPECT_EQ(directory.names(), std::set<std::string>{"old name.json"});
}

TEST(WorkspaceStoreFaults, TwoProgramsSaveAtOnceAndAThirdAlwaysReads) {
    PosixFileSystem disk;
    TemporaryDirectory directory;
    std::atomic<int> failures = 0, running = 2;
    const auto writer = [&](const std::string& who) {
        for (int i = 0; i < 40; ++i)
            failures += !WorkspaceStore(disk, directory.path()).save(version(who + std::to_string(i)));
        --running;
    };
    const WorkspaceStore store(disk, directory.path());
    ASSERT_TRUE(store.save(version("start")));
    std::thread a(writer, "a"), b(writer, "b");
    while (running > 0) {
        const WorkspaceScanResult result = store.scan();
        failures += result.workspaces.size() != 1 || !result.issues.empty();
    }
    a.join();
    b.join();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(directory.names(), (std::set{primary, backup}));
}

}  // namespace
}  // namespace quillo
