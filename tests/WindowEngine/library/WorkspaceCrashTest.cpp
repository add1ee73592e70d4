// Power that fails at any moment: what a file system had not been told to keep may be lost in any
// combination.
#include <gtest/gtest.h>

#include <algorithm>

#include "WindowEngine/library/SessionHistory.hpp"
#include "WindowEngine/services/ForwardingFileSystem.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"
#include "tests/app/MemoryFileSystem.hpp"

namespace quillo {
namespace {

using Files = std::map<std::string, std::string>;  // name to content
using Path = std::filesystem::path;

const Path place = "/quillo/store";

/// Notes every state that the disk may be found in. Contents are synced when written; names are only when the
/// directory is.
class Recorder final : public ForwardingFileSystem {
  public:
    using Forward = ForwardingFileSystem;
    Recorder(FileSystem& target, Files before) : Forward(target), kept_(std::move(before)) { (void)note(); }

    std::set<Files> states;  // at any time so far
    std::set<Files> last;    // after what was done last

    Result<void> createFile(const Path& file, std::string_view bytes) override {
        return changed(Forward::createFile(file, bytes), {}, file, std::string(bytes));
    }
    Result<void> copy(const Path& from, const Path& to) override {
        return changed(Forward::copy(from, to), {}, to, Forward::read(from).value_or(""));
    }
    Result<void> rename(const Path& from, const Path& to) override {
        const std::string bytes = Forward::read(from).value_or("");
        return changed(Forward::rename(from, to), from, to, bytes);
    }
    Result<void> remove(const Path& file) override { return changed(Forward::remove(file), file, {}, {}); }
    Result<void> syncDirectory(const Path&) override {
        for (const Change& change : pending_) apply(change, kept_);
        pending_.clear();
        return note();
    }

  private:
    struct Change {
        Path from, to;
        std::string bytes;
    };

    static void apply(const Change& change, Files& files) {
        if (!change.from.empty()) files.erase(change.from.filename());
        if (!change.to.empty()) files[change.to.filename()] = change.bytes;
    }
    Result<void> changed(Result<void> result, const Path& from, const Path& to, std::string bytes) {
        if (!result) return result;
        pending_.push_back({from, to, std::move(bytes)});
        return note();
    }
    Result<void> note() {
        last.clear();
        for (std::size_t kept = 0; kept < std::size_t{1} << pending_.size(); ++kept) {
            Files files = kept_;
            for (std::size_t i = 0; i < pending_.size(); ++i)
                if (kept >> i & 1) apply(pending_[i], files);
            last.insert(std::move(files));
        }
        states.insert(last.begin(), last.end());
        return {};
    }

    Files kept_;
    std::vector<Change> pending_;
};

Files contents(FileSystem& files) {
    Files found;
    for (const std::string& name : files.list(place).value()) found[name] = files.read(place / name).value();
    return found;
}

void fill(MemoryFileSystem& disk, const Files& files) {
    ASSERT_TRUE(disk.createDirectories(place));
    for (const auto& [name, bytes] : files) ASSERT_TRUE(disk.createFile(place / name, bytes));
}

/// Does `act` with `before` on disk and calls `check` for every state that a crash may leave, and whether it
/// may still be left when `act` has said that it is done.
void afterEveryCrash(const Files& before, auto act, auto check) {
    MemoryFileSystem disk;
    fill(disk, before);
    Recorder recorder(disk, before);
    act(recorder);
    EXPECT_GT(recorder.states.size(), 1U);
    for (const Files& state : recorder.states) {
        MemoryFileSystem found;
        fill(found, state);
        check(found, recorder.last.contains(state));
        if (!::testing::Test::HasFailure()) continue;
        for (const auto& [name, bytes] : state) ADD_FAILURE() << name << ": " << bytes.size() << " bytes";
        return;
    }
}

const Uuid id = *Uuid::parse("6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60");
const std::string primary = id.lower() + ".json", backup = primary + ".bak", damaged = "{\"damaged";

Workspace version(const char* content, std::int64_t updatedSeconds = 1000) {
    return samples::named(id, "Work", content, updatedSeconds);
}
std::string document(const char* content, std::int64_t updatedSeconds = 1000) {
    return WorkspaceCoding::encode(version(content, updatedSeconds)).value();
}

TEST(WorkspaceCrash, NoWorkspaceIsLostOrTornAndNothingDeletedComesBack) {
    using Found = std::vector<Workspace>;
    const Files none, two{{primary, document("now")}, {backup, document("before")}},
        broken{{primary, damaged}, {backup, document("before")}},
        copied{{primary, document("before", 900)}, {"copy.json", document("now")}},
        legacy{{"Work.json", document("now")}, {"Work.json.bak", document("before")}};
    const auto save = [](const WorkspaceStore& store) { ASSERT_TRUE(store.save(version("new"))); };
    const auto scan = [](const WorkspaceStore& store) { (void)store.scan(); };
    const auto remove = [](const WorkspaceStore& store) { ASSERT_TRUE(store.remove(id)); };
    const struct {
        const char* what;
        const Files& before;
        void (*act)(const WorkspaceStore&);
        Found old, done;
    } cases[] = {{"first save", none, save, {}, {version("new")}},
                 {"save", two, save, {version("now")}, {version("new")}},
                 {"save over a damaged file", broken, save, {version("before")}, {version("new")}},
                 {"repair", broken, scan, {version("before")}, {version("before")}},
                 {"move", legacy, scan, {version("now")}, {version("now")}},
                 {"deletion", two, remove, {version("now")}, {}},
                 {"deletion of what has a newer copy", copied, remove, {version("now")}, {}},
                 {"deletion after a repair",
                  {{primary, document("now")}, {primary + ".damaged", damaged}},
                  remove,
                  {version("now")},
                  {}}};
    for (const auto& [what, before, act, old, done] : cases) {
        SCOPED_TRACE(what);
        afterEveryCrash(
            before, [&](FileSystem& files) { act(WorkspaceStore(files, place)); },
            [&](MemoryFileSystem& files, bool isDone) {
                const Files left = contents(files);
                if (isDone && done.empty()) EXPECT_EQ(left, Files());
                const auto holdsDamage = [](const auto& file) { return file.second == damaged; };
                if (before == broken) EXPECT_TRUE(std::ranges::any_of(left, holdsDamage));
                const Found found = WorkspaceStore(files, place).scan().workspaces;
                EXPECT_TRUE(found == done || (!isDone && found == old));
            });
    }
}

TEST(WorkspaceCrash, NoSessionIsDroppedOrListedTwice) {
    std::vector<WorkspaceSnapshot> sessions;
    for (int n = 6; n >= 0; --n) {
        sessions.push_back(samples::example().snapshot);
        sessions.back().capturedAt = Instant{std::chrono::seconds{n}};
        sessions.back().displays[0].scale = n;
    }
    MemoryFileSystem disk;
    ASSERT_TRUE(disk.createDirectories(place));
    for (std::size_t n = 6; n > 1; --n) ASSERT_TRUE(SessionHistory(disk, place).save(sessions[n], {}));
    const auto save = [&](FileSystem& files, std::size_t n) {
        ASSERT_EQ(SessionHistory(files, place).save(sessions[n], {}), true);
    };
    const auto listed = [&](FileSystem& files) {
        std::vector<WorkspaceSnapshot> found;
        for (const Workspace& entry : SessionHistory(files, place).list()) found.push_back(entry.snapshot);
        return found;
    };
    const auto latestFive = [](std::vector<WorkspaceSnapshot> list, const WorkspaceSnapshot& newest) {
        list.insert(list.begin(), newest);
        list.resize(5);
        return list;
    };
    const std::vector old = listed(disk), done = latestFive(old, sessions[1]);
    afterEveryCrash(
        contents(disk), [&](FileSystem& files) { save(files, 1); },
        [&](MemoryFileSystem& files, bool isDone) {
            std::vector<WorkspaceSnapshot> found = listed(files);
            const std::vector first(found.begin(), found.begin() + 5);
            EXPECT_TRUE(first == done || (!isDone && first == old));  // a sixth may not have been dropped yet
            save(files, 0);
            EXPECT_EQ(listed(files), latestFive(first, sessions[0]));
        });
}

}  // namespace
}  // namespace quillo
