// Saves that fail or are killed at any call: a complete version is always there, and nothing grows.
#include <gtest/gtest.h>

#include <atomic>
#include <thread>

#include "WindowEngine/WorkspaceCoding.hpp"
#include "WindowEngine/WorkspaceStore.hpp"
#include "WindowEngine/services/ForwardingFileSystem.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

enum class Fault { error, killedBefore, killedWithin };

/// Fails call number `at`; a killed program makes no call after it either, and may leave half a file.
class FaultyFileSystem final : public ForwardingFileSystem {
  public:
    FaultyFileSystem(FileSystem& target, Fault fault, int at)
        : ForwardingFileSystem(target), fault_(fault), at_(at) {}

    bool struck() const { return calls_ > at_; }

    Result<std::string> read(const Path& f) override {
        return strikes() ? failed() : ForwardingFileSystem::read(f);
    }
    Result<void> createDirectories(const Path& d) override {
        return strikes() ? failed() : ForwardingFileSystem::createDirectories(d);
    }
    Result<void> createFile(const Path& f, std::string_view bytes) override {
        if (!strikes()) return ForwardingFileSystem::createFile(f, bytes);
        if (isFirstStrike() && fault_ == Fault::killedWithin)
            (void)ForwardingFileSystem::createFile(f, bytes.substr(0, bytes.size() / 2));
        return failed();
    }
    Result<void> copy(const Path& from, const Path& to) override {
        if (!strikes()) return ForwardingFileSystem::copy(from, to);
        if (isFirstStrike() && fault_ == Fault::killedWithin)
            (void)ForwardingFileSystem::createFile(to, "{\"half");
        return failed();
    }
    Result<void> rename(const Path& from, const Path& to) override {
        return strikes() ? failed() : ForwardingFileSystem::rename(from, to);
    }
    Result<void> remove(const Path& f) override {
        return strikes() ? failed() : ForwardingFileSystem::remove(f);
    }
    Result<std::vector<std::string>> list(const Path& d) override {
        return strikes() ? failed() : ForwardingFileSystem::list(d);
    }
    bool exists(const Path& f) override { return !strikes() && ForwardingFileSystem::exists(f); }
    Result<void> syncDirectory(const Path& d) override {
        return strikes() ? failed() : ForwardingFileSystem::syncDirectory(d);
    }
    Result<std::unique_ptr<DirectoryLock>> lock(const Path& d) override {
        return strikes() ? failed() : ForwardingFileSystem::lock(d);
    }

  private:
    static std::unexpected<Error> failed() { return fail(ErrorKind::noSpace, "no space", ENOSPC); }
    bool strikes() {
        const int call = calls_++;
        return fault_ == Fault::error ? call == at_ : call >= at_;
    }
    bool isFirstStrike() const { return calls_ == at_ + 1; }

    Fault fault_;
    int at_;
    std::atomic<int> calls_ = 0;
};

const Uuid id = *Uuid::parse("6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60");
const std::string primary = id.lower() + ".json";

Workspace version(const std::string& content) {
    return samples::named(id, "Work", content);
}

class Faults : public ::testing::TestWithParam<Fault> {
  protected:
    // Runs `act` with the fault at call 0, 1, 2, ... each in a directory of its own, until it is no longer
    // reached.
    void atEveryCall(auto prepare, auto act, auto check) {
        int reached = 0;
        for (int at = 0;; ++at) {
            SCOPED_TRACE("call " + std::to_string(at));
            TemporaryDirectory directory;
            const WorkspaceStore sound(disk, directory.path());
            prepare(sound, directory);
            FaultyFileSystem faulty(disk, GetParam(), at);
            const bool done = act(WorkspaceStore(faulty, directory.path()));
            check(sound, directory, done);
            if (!faulty.struck()) break;
            ++reached;
        }
        EXPECT_GE(reached, 4);
    }

    PosixFileSystem disk;
};

void nothingGrows(const WorkspaceStore& store, const TemporaryDirectory& directory) {
    ASSERT_TRUE(store.save(version("after")));
    for (const std::string& name : directory.names())
        EXPECT_TRUE(name == primary || name == primary + ".bak") << name;
    EXPECT_EQ(store.load(id), version("after"));
}

TEST_P(Faults, ASaveLeavesTheOldOrTheNewVersionComplete) {
    atEveryCall(
        [](const WorkspaceStore& store, const TemporaryDirectory&) {
            ASSERT_TRUE(store.save(version("oldest")));
            ASSERT_TRUE(store.save(version("old")));
        },
        [](const WorkspaceStore& store) { return store.save(version("new")).has_value(); },
        [](const WorkspaceStore& store, const TemporaryDirectory& directory, bool done) {
            const auto loaded = store.load(id);
            ASSERT_TRUE(loaded) << loaded.error().text;
            EXPECT_TRUE(*loaded == version("new") || (!done && *loaded == version("old")));
            const auto backup = WorkspaceCoding::decode(directory.read(primary + ".bak"));
            ASSERT_TRUE(backup) << backup.error().text;
            EXPECT_TRUE(*backup == version("oldest") || *backup == version("old"));
            EXPECT_EQ(store.scan().issues.size(), 0u);
            if (GetParam() == Fault::error) {
                for (const auto& name : directory.names()) EXPECT_FALSE(name.ends_with(".next")) << name;
            }
            nothingGrows(store, directory);
        });
}

TEST_P(Faults, AFirstSaveLeavesNothingOrTheWholeWorkspace) {
    atEveryCall([](const WorkspaceStore&, const TemporaryDirectory&) {},
                [](const WorkspaceStore& store) { return store.save(version("new")).has_value(); },
                [](const WorkspaceStore& store, const TemporaryDirectory& directory, bool done) {
                    const WorkspaceScanResult result = store.scan();
                    EXPECT_EQ(result.issues.size(), 0u);
                    EXPECT_TRUE(result.workspaces == std::vector{version("new")} ||
                                (!done && result.workspaces.empty()));
                    nothingGrows(store, directory);
                });
}

TEST_P(Faults, ASaveOverADamagedPrimaryNeverLosesTheGoodBackup) {
    atEveryCall(
        [](const WorkspaceStore& store, const TemporaryDirectory& directory) {
            ASSERT_TRUE(store.save(version("good")));
            ASSERT_TRUE(store.save(version("damaged")));
            directory.write(primary, "{\"damaged");
        },
        [](const WorkspaceStore& store) { return store.save(version("new")).has_value(); },
        [](const WorkspaceStore& store, const TemporaryDirectory& directory, bool done) {
            const WorkspaceScanResult result = store.scan();
            ASSERT_EQ(result.workspaces.size(), 1u);
            EXPECT_TRUE(result.workspaces[0] == version("new") ||
                        (!done && result.workspaces[0] == version("good")));
            nothingGrows(store, directory);
        });
}

TEST_P(Faults, ScansLoseNothingWhileTheyRepairAndMove) {
    const Workspace legacy = samples::named(Uuid::random(), "Legacy", "x", 2000);
    atEveryCall(
        [&](const WorkspaceStore& store, const TemporaryDirectory& directory) {
            ASSERT_TRUE(store.save(version("good")));
            ASSERT_TRUE(store.save(version("damaged")));
            directory.write(primary, "{\"damaged");
            directory.write("legacy.json", WorkspaceCoding::encode(legacy).value());
            directory.write("legacy.json.bak", "{");
        },
        [](const WorkspaceStore& store) {
            (void)store.scan();
            return true;
        },
        [&](const WorkspaceStore& store, const TemporaryDirectory& directory, bool) {
            const std::vector<Workspace> found = store.scan().workspaces;
            EXPECT_EQ(found, (std::vector{legacy, version("good")}));
            EXPECT_EQ(store.load(id), version("good"));
            EXPECT_EQ(store.load(legacy.id), legacy);
            // Interrupted after the copy and before the removal, the old file stays: whole, and reported.
            if (directory.names().contains("legacy.json")) {
                EXPECT_EQ(WorkspaceCoding::decode(directory.read("legacy.json")), legacy);
                EXPECT_EQ(store.scan().issues.at(0).kind, WorkspaceLoadIssue::Kind::duplicateIdentity);
            }
        });
}

INSTANTIATE_TEST_SUITE_P(Store, Faults,
                         ::testing::Values(Fault::error, Fault::killedBefore, Fault::killedWithin));

TEST(WorkspaceStoreFaults, TheFailureOfASaveReachesTheCaller) {
    PosixFileSystem disk;
    TemporaryDirectory directory;
    for (int at = 0; at < 3; ++at) {  // directory, lock, list (which may fail), then the file itself
        FaultyFileSystem faulty(disk, Fault::killedBefore, at);
        const auto saved = WorkspaceStore(faulty, directory.path()).save(version("new"));
        ASSERT_FALSE(saved);
        EXPECT_EQ(saved.error().kind, ErrorKind::noSpace);
    }
}

TEST(WorkspaceStoreFaults, AFileDeletedDuringTheScanIsNoDamage) {
    // The listing is older than the deletion by another program.
    class Stale final : public ForwardingFileSystem {
      public:
        using ForwardingFileSystem::ForwardingFileSystem;
        Result<std::vector<std::string>> list(const Path&) override {
            return std::vector<std::string>{primary, primary + ".bak"};
        }
    };
    PosixFileSystem disk;
    TemporaryDirectory directory;
    Stale stale(disk);
    EXPECT_EQ(WorkspaceStore(stale, directory.path()).scan(), WorkspaceScanResult());
}

TEST(WorkspaceStoreFaults, AMoveThatCannotBeMadeIsReported) {
    PosixFileSystem disk;
    class ReadOnly final : public ForwardingFileSystem {
      public:
        using ForwardingFileSystem::ForwardingFileSystem;
        Result<void> createFile(const Path&, std::string_view) override {
            return fail(ErrorKind::permission, "read-only");
        }
    };
    ReadOnly readOnly(disk);
    TemporaryDirectory directory;
    directory.write("old name.json", WorkspaceCoding::encode(version("x")).value());
    const WorkspaceScanResult result = WorkspaceStore(readOnly, directory.path()).scan();
    EXPECT_EQ(result.workspaces, std::vector{version("x")});
    EXPECT_EQ(result.issues, (std::vector<WorkspaceLoadIssue>{
                                 {WorkspaceLoadIssue::Kind::migrationFailed, "old name.json",
                                  "Could not migrate Work to collision-safe storage.", "read-only"}}));
    EXPECT_EQ(directory.names(), std::set<std::string>{"old name.json"});
}

TEST(WorkspaceStoreFaults, TwoProgramsSaveAtOnceAndAThirdAlwaysReads) {
    TemporaryDirectory directory;
    std::atomic<int> failures = 0, running = 2;
    const auto writer = [&](const std::string& who) {
        PosixFileSystem disk;
        for (int i = 0; i < 40; ++i) {
            if (!WorkspaceStore(disk, directory.path()).save(version(who + std::to_string(i)))) ++failures;
        }
        --running;
    };
    PosixFileSystem disk;
    const WorkspaceStore store(disk, directory.path());
    ASSERT_TRUE(store.save(version("start")));
    std::thread a(writer, "a"), b(writer, "b");
    while (running > 0) {
        const WorkspaceScanResult result = store.scan();
        if (result.workspaces.size() != 1 || !result.issues.empty()) ++failures;
    }
    a.join();
    b.join();
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(directory.names(), (std::set<std::string>{primary, primary + ".bak"}));
}

}  // namespace
}  // namespace quillo
