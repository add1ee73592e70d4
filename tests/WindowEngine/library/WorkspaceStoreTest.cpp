#include <gtest/gtest.h>

#include <fstream>

#include "WindowEngine/library/WorkspaceStore.hpp"
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

using Path = std::filesystem::path;
using Kind = WorkspaceLoadIssue::Kind;
using Issues = std::vector<WorkspaceLoadIssue>;
using Names = std::set<std::string>;

const Uuid id = *Uuid::parse("6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60");
const Uuid otherId = *Uuid::parse("00000000-0B7D-4E51-9C3A-2D4B8E7F1A60");
const std::string primary = id.lower() + ".json", backup = primary + ".bak";

std::string document(const Workspace& workspace) {
    return WorkspaceCoding::encode(workspace).value();
}

class WorkspaceStoreTest : public ::testing::Test {
  protected:
    TemporaryDirectory directory;
    PosixFileSystem files;
    WorkspaceStore store{files, directory.path()};
    const Workspace first = samples::named(id, "Work", "first");
    const Workspace second = samples::named(id, "Work", "second");
};

TEST_F(WorkspaceStoreTest, ANameIsChosenAmongThoseThatStandThereByThen) {
    const std::vector<Workspace> before = store.scan().workspaces;  // nothing, and out of date at once
    ASSERT_TRUE(store.save(first));
    const auto saved = store.saveAsNew(samples::named(otherId, "WORK"), before);
    ASSERT_TRUE(saved);
    EXPECT_EQ(saved->name, "WORK 2");
    EXPECT_EQ(store.load(otherId)->name, "WORK 2");
    directory.write(primary, "{");  // one that cannot be read keeps the name that a scan found
    EXPECT_EQ(store.freeName("Work", {{first}}), "Work 3");
    ASSERT_TRUE(store.remove(id));
    EXPECT_EQ(store.freeName("Work", {{first}}), "Work") << "gone, whatever a scan found";
}

TEST_F(WorkspaceStoreTest, SavesAPrimaryAndThenKeepsTheVersionBefore) {
    const WorkspaceStore inside(files, directory / "deep/workspaces");
    ASSERT_TRUE(inside.save(first));
    EXPECT_EQ(inside.load(id), first);
    EXPECT_FALSE(files.exists(inside.backupURL(id)));
    for (const Workspace* version : {&second, &second, &first}) ASSERT_TRUE(inside.save(*version));
    EXPECT_EQ(directory.read("deep/workspaces/" + primary), document(first));
    EXPECT_EQ(directory.read("deep/workspaces/" + backup), document(second));

    Workspace broken = second;  // a record that cannot be written changes nothing
    broken.snapshot.displays = {{"D", {}, {}, 1.0 / 0.0, true}};
    EXPECT_EQ(inside.save(broken).error().text, "snapshot.displays[0].scale: not a finite number");
    EXPECT_EQ(inside.load(id), first);
    EXPECT_EQ(files.list(inside.directory())->size(), 2u);
}

TEST_F(WorkspaceStoreTest, ASaveRemovesLeftOversOfItsOwnAndOfUnbornWorkspacesOnly) {
    const auto temporary = [](Uuid owner) {
        return "." + owner.lower() + "." + Uuid::random().upper() + ".next";
    };
    const std::string others = temporary(otherId);
    ASSERT_TRUE(store.save(samples::named(otherId, "Other")));
    for (const std::string& name :
         {temporary(id), temporary(id), temporary(Uuid::random()), others, std::string(".mine.next")})
        directory.write(name, "{");
    EXPECT_EQ(store.scan().issues, Issues());
    EXPECT_EQ(directory.names().size(), 6u);  // the scan removes nothing
    ASSERT_TRUE(store.save(first));
    EXPECT_EQ(directory.names(), (Names{primary, otherId.lower() + ".json", others, ".mine.next"}));
}

TEST_F(WorkspaceStoreTest, ListsNewestFirstAndTiesByFileNameOnSeveralThreads) {
    WorkspaceScanResult expected;
    for (int i = 0; i < 200; ++i) {  // two of every age; the file names rise
        const Uuid made = *Uuid::parse("00000000-0000-4000-8000-000000000" + std::to_string(100 + i));
        expected.workspaces.push_back(samples::named(made, "w", "", 1000 - i / 2));
        directory.write(made.lower() + ".json", document(expected.workspaces.back()));
    }
    for (const std::string name : {"aa.json", "zz.json"}) {
        directory.write(name, "[]");
        expected.issues.push_back({Kind::unreadable, name, "Could not read " + name + " or its backup.",
                                   "the document: expected an object"});
    }
    EXPECT_EQ(store.scan(), expected);
    EXPECT_EQ(WorkspaceStore(files, directory / "missing").scan(), WorkspaceScanResult());
}

TEST_F(WorkspaceStoreTest, AMissingPrimaryIsRepairedAndADamagedOneKeptBesideItsRepair) {
    directory.write(backup, document(first));
    EXPECT_EQ(store.scan().issues.at(0).kind, Kind::recoveredBackup);
    EXPECT_EQ(store.load(id), first);
    const std::string kept = primary + ".damaged";
    const struct {
        std::string damaged, detail;
        Names names;  // of what is kept afterwards, the first first
    } cases[] = {
        {"", "the document: not valid JSON in line 1: the document ends here", {kept}},
        {"{\"color\": 7}", "color: expected text", {kept, kept + "-2"}},
        {"{\"color\": 7}", "color: expected text", {kept, kept + "-2"}},
        {"[]", "the document: expected an object", {kept, kept + "-2", kept + "-3"}},
        {"7", "the document: expected an object", {kept, kept + "-2", kept + "-3"}},
    };
    for (const auto& [damaged, detail, names] : cases) {
        directory.write(primary, damaged);
        const Issues issues{
            {Kind::recoveredBackup, primary, "Recovered Work from its previous valid backup.", detail}};
        EXPECT_EQ(store.scan(), (WorkspaceScanResult{{first}, issues}));
        EXPECT_EQ(store.scan(), (WorkspaceScanResult{{first}, {}}));
        EXPECT_EQ(directory.read(primary), document(first));
        const std::vector<std::string> found = store.damagedFiles();
        EXPECT_EQ(Names(found.begin(), found.end()), names);
    }
    EXPECT_EQ(directory.read(kept), "{\"color\": 7}") << "the first kept has gone for the fourth";
    EXPECT_EQ(directory.read(kept + "-3"), "7");
    EXPECT_TRUE(store.remove(id));
    EXPECT_EQ(directory.names(), Names{});
}

TEST_F(WorkspaceStoreTest, WhatMayBeWholeIsLeftAsItIsWhileItsBackupIsListed) {
    const struct {
        const char* reason;
        void (*make)(const Path&);
    } cases[] = {
        {"it is larger than 32 MB",
         [](const Path& file) { std::filesystem::resize_file(file, WorkspaceCoding::mostBytes + 1); }},
        {"Unsupported workspace schema v3; this build supports v2.",
         [](const Path& file) { std::ofstream(file) << "{\"schemaVersion\": 3}"; }},
        {"it is a symbolic link, which is not followed",
         [](const Path& file) {
             std::filesystem::remove(file);
             std::filesystem::create_symlink("elsewhere", file);
         }},
        {"it is not a regular file", [](const Path& file) {
             std::filesystem::remove(file);
             std::filesystem::create_directory(file);
         }}};
    for (const std::string& name : {primary, std::string("My Work.json")}) {
        directory.write(name + ".bak", document(first));
        for (const auto& [reason, make] : cases) {
            std::filesystem::remove_all(directory / name);
            directory.write(name, "{");
            make(directory / name);
            const auto before = files.stamps(directory.path());
            const Issues issues{{Kind::unreadable, name,
                                 "Could not read " + name + ", so the version saved before it is listed.",
                                 reason}};
            EXPECT_EQ(store.scan(), (WorkspaceScanResult{{first}, issues}));
            if (name == primary) EXPECT_FALSE(store.save(second)) << reason;
            EXPECT_EQ(files.stamps(directory.path()), before) << reason;
        }
        std::filesystem::remove_all(directory / name);
        std::filesystem::remove(directory / (name + ".bak"));
    }
}

TEST_F(WorkspaceStoreTest, WhatCannotBeReadIsReportedAndLeftAlone) {
    TemporaryDirectory outside;
    outside.write("elsewhere.json", document(first));
    std::filesystem::create_symlink(outside / "elsewhere.json", directory / primary);
    std::filesystem::create_directory(directory / "folder.json");
    directory.write("both.json", "{\"name\"");
    directory.write("both.json.bak", "[]");
    directory.write("only.json.bak", "nonsense");
    for (const char* ignored : {".json", "notes.txt", "x.bak", "x.JSON", "json"})
        directory.write(ignored, "{");
    const Names before = directory.names();
    const WorkspaceScanResult result = store.scan();
    EXPECT_EQ(result.workspaces.size(), 0u);
    const std::pair<std::string, const char*> expected[] = {
        {primary, "symbolic link"},
        {"both.json", "name: not valid JSON in line 1"},
        {"folder.json", "not a regular file"},
        {"only.json", "the document: not valid JSON in line 1"}};
    ASSERT_EQ(result.issues.size(), std::size(expected));
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const auto& [name, detail] = expected[i];
        const WorkspaceLoadIssue& issue = result.issues[i];
        EXPECT_NE(issue.detail.find(detail), std::string::npos) << issue.detail;
        EXPECT_EQ(issue, (WorkspaceLoadIssue{Kind::unreadable, name,
                                             "Could not read " + name + " or its backup.", issue.detail}));
    }
    EXPECT_EQ(directory.names(), before);
    EXPECT_FALSE(store.save(second));  // neither read nor written through the link
    EXPECT_EQ(outside.read("elsewhere.json"), document(first));
}

TEST_F(WorkspaceStoreTest, LegacyFilesMoveToTheirIdentifier) {
    directory.write("My Work.json", document(first));
    directory.write("My Work.json.bak", document(second));
    const auto moved = [&](const std::string& how) {
        return WorkspaceScanResult{{first}, {}, {}, {"My Work.json: " + how}};
    };
    EXPECT_EQ(store.scan(), moved("renamed to " + primary));
    EXPECT_EQ(directory.names(), Names{primary});
    EXPECT_EQ(store.load(id), first);
    directory.write("My Work.json", document(first));
    EXPECT_EQ(store.scan().moved, moved("removed, as " + primary + " holds the same").moved);
}

TEST_F(WorkspaceStoreTest, OfTwoFilesWithOneIdentityTheLaterIsListedAndBothStay) {
    const Issues issues{
        {Kind::duplicateIdentity, "zcopy.json", "Found duplicate files for workspace Copy.", ""}};
    directory.write(primary, document(first));
    for (const std::int64_t age : {999, 1000, 1001}) {
        const Workspace copy = samples::named(id, "Copy", "", age);
        directory.write("zcopy.json", document(copy));
        EXPECT_EQ(store.scan(), (WorkspaceScanResult{{age > 1000 ? copy : first}, issues}));
        EXPECT_EQ(directory.names(), (Names{primary, "zcopy.json"}));
    }
    directory.write("lost.json.bak", document(second));
    directory.write("other.json", document(samples::named(Uuid::random(), "Other")));
    EXPECT_TRUE(store.remove(id));
    EXPECT_EQ(directory.names(), Names{"other.json"}) << "all that would come back";
}

TEST_F(WorkspaceStoreTest, LoadsFromThePrimaryOnly) {
    for (int i = 0; i < 2; ++i) ASSERT_TRUE(store.save(first));
    EXPECT_EQ(store.load(Uuid::random()).error().kind, ErrorKind::notFound);
    directory.write(primary, "{\"schemaVersion\": 3}");
    const std::string text = primary + ": Unsupported workspace schema v3; this build supports v2.";
    EXPECT_EQ(store.load(id).error(), (Error{ErrorKind::unsupportedSchema, text, 0}));
    directory.write(primary, "{\"color\": 1}");
    EXPECT_EQ(store.load(id).error().text, primary + ": color: expected text");
    EXPECT_EQ(directory.read(primary), "{\"color\": 1}");
}

TEST_F(WorkspaceStoreTest, RemovesThePrimaryAndItsBackup) {
    EXPECT_EQ(store.remove(id).error().kind, ErrorKind::notFound);
    EXPECT_EQ(WorkspaceStore(files, directory / "missing").remove(id).error().kind, ErrorKind::notFound);
    for (const int saves : {1, 2}) {
        for (int i = 0; i < saves; ++i) ASSERT_TRUE(store.save(first));
        EXPECT_TRUE(store.remove(id));
        EXPECT_EQ(directory.names(), Names{});
    }
}

TEST_F(WorkspaceStoreTest, NotesTheRestoreAndNothingElse) {
    Workspace restored = first;
    restored.lastRestoredAt = Instant{std::chrono::seconds{5000}};
    EXPECT_EQ(store.updateLastRestored(id, *restored.lastRestoredAt), false);
    ASSERT_TRUE(store.save(first));
    EXPECT_EQ(store.updateLastRestored(id, *restored.lastRestoredAt), true);
    EXPECT_EQ(store.load(id), restored);
    directory.write(primary, "{");
    EXPECT_EQ(store.updateLastRestored(id, *restored.lastRestoredAt), false);
    EXPECT_EQ(directory.read(primary), "{");
}

TEST_F(WorkspaceStoreTest, ChangesWhatIsStoredByThenOrNothing) {
    ASSERT_TRUE(store.save(first));
    const auto rename = [](Workspace& stored) -> Result<void> {
        stored.name += "!";
        return {};
    };
    for (int i = 0; i < 2; ++i) EXPECT_TRUE(store.change(id, rename));
    EXPECT_EQ(store.load(id)->name, first.name + "!!");
    const Names before = directory.names();
    const std::string bytes = directory.read(primary);
    const auto refused = store.change(id, [&](Workspace& stored) -> Result<void> {
        (void)rename(stored);
        return fail(ErrorKind::refused, "no");
    });
    EXPECT_EQ(refused.error().text, "no");
    EXPECT_TRUE(store.change(id, [](Workspace&) -> Result<void> { return {}; }));
    EXPECT_EQ(directory.read(primary), bytes);
    EXPECT_EQ(directory.names(), before);
}

}  // namespace
}  // namespace quillo
