#include <gtest/gtest.h>

#include "WindowEngine/WorkspaceCoding.hpp"
#include "WindowEngine/WorkspaceStore.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "tests/TemporaryDirectory.hpp"
#include "tests/WindowEngine/WorkspaceSamples.hpp"

namespace quillo {
namespace {

using Kind = WorkspaceLoadIssue::Kind;
using Names = std::set<std::string>;

const Uuid id = *Uuid::parse("6F1C2A9E-0B7D-4E51-9C3A-2D4B8E7F1A60");
const Uuid otherId = *Uuid::parse("00000000-0B7D-4E51-9C3A-2D4B8E7F1A60");
const std::string primary = "6f1c2a9e-0b7d-4e51-9c3a-2d4b8e7f1a60.json";
const std::string backup = primary + ".bak";

std::string document(const Workspace& workspace) {
    return WorkspaceCoding::encode(workspace).value();
}

class WorkspaceStoreTest : public ::testing::Test {
  protected:
    std::vector<std::string> listed() {
        std::vector<std::string> names;
        for (const Workspace& workspace : store.scan().workspaces) names.push_back(workspace.name);
        return names;
    }

    TemporaryDirectory directory;
    PosixFileSystem files;
    WorkspaceStore store{files, directory.path()};
    const Workspace first = samples::named(id, "Work", "first");
    const Workspace second = samples::named(id, "Work", "second");
};

TEST_F(WorkspaceStoreTest, SavesAPrimaryAndThenKeepsTheVersionBefore) {
    const WorkspaceStore inside(files, directory / "deep/workspaces");
    ASSERT_TRUE(inside.save(first));
    EXPECT_EQ(inside.load(id), first);
    EXPECT_EQ(inside.url(id), directory / ("deep/workspaces/" + primary));
    EXPECT_FALSE(files.exists(inside.backupURL(id)));
    ASSERT_TRUE(inside.save(second));
    ASSERT_TRUE(inside.save(second));
    ASSERT_TRUE(inside.save(first));
    EXPECT_EQ(directory.read("deep/workspaces/" + primary), document(first));
    EXPECT_EQ(directory.read("deep/workspaces/" + backup), document(second));
    EXPECT_EQ(files.list(inside.directory())->size(), 2u);
}

TEST_F(WorkspaceStoreTest, AnUnwritableRecordChangesNothing) {
    ASSERT_TRUE(store.save(first));
    Workspace broken = second;
    broken.snapshot.displays = {
        {.id = "D", .frame = {}, .visibleFrame = {}, .scale = 1.0 / 0.0, .isPrimary = true}};
    EXPECT_EQ(store.save(broken).error().text, "snapshot.displays[0].scale: not a finite number");
    EXPECT_EQ(directory.names(), Names{primary});
    EXPECT_EQ(store.load(id), first);
}

TEST_F(WorkspaceStoreTest, ASaveRemovesLeftOversOfItsOwnAndOfUnbornWorkspacesOnly) {
    const auto temporary = [](const Uuid& owner) {
        return "." + owner.lower() + "." + Uuid::random().upper() + ".next";
    };
    const std::string others = temporary(otherId);
    ASSERT_TRUE(store.save(samples::named(otherId, "Other")));
    for (const std::string& name : {temporary(id), temporary(id), temporary(Uuid::random()), others})
        directory.write(name, "{");
    directory.write(".mine.next", "{");
    EXPECT_EQ(store.scan().issues, std::vector<WorkspaceLoadIssue>());
    EXPECT_EQ(directory.names().size(), 6u);  // the scan removes nothing
    ASSERT_TRUE(store.save(first));
    EXPECT_EQ(directory.names(), (Names{primary, otherId.lower() + ".json", others, ".mine.next"}));
}

TEST_F(WorkspaceStoreTest, ListsNewestFirstAndTiesByFileName) {
    const Uuid ids[] = {*Uuid::parse("10000000-0000-4000-8000-000000000000"),
                        *Uuid::parse("20000000-0000-4000-8000-000000000000"),
                        *Uuid::parse("30000000-0000-4000-8000-000000000000")};
    ASSERT_TRUE(store.save(samples::named(ids[2], "tie b", "", 5)));
    ASSERT_TRUE(store.save(samples::named(ids[1], "newest", "", 9)));
    ASSERT_TRUE(store.save(samples::named(ids[0], "tie a", "", 5)));
    EXPECT_EQ(listed(), (std::vector<std::string>{"newest", "tie a", "tie b"}));
    EXPECT_EQ(WorkspaceStore(files, directory / "missing").scan(), WorkspaceScanResult());
}

TEST_F(WorkspaceStoreTest, ManyFilesReadOnSeveralThreadsComeInTheSameOrder) {
    std::vector<std::string> expected;
    for (int i = 0; i < 200; ++i) {
        const Workspace workspace = samples::named(Uuid::random(), "w" + std::to_string(i), "", 1000 - i);
        directory.write(workspace.id.lower() + ".json", document(workspace));
        expected.push_back(workspace.name);
    }
    directory.write("zz.json", "{");
    directory.write("aa.json", "{");
    const WorkspaceScanResult result = store.scan();
    EXPECT_EQ(listed(), expected);
    ASSERT_EQ(result.issues.size(), 2u);
    EXPECT_EQ(result.issues[0].fileName, "aa.json");
    EXPECT_EQ(result, store.scan());
}

struct Damage {
    const char* what;
    std::string primary;
    const char* detail;
};

TEST_F(WorkspaceStoreTest, ADamagedPrimaryIsRepairedFromItsBackup) {
    const Damage cases[] = {
        {"empty", "", "the document: not valid JSON in line 1: the document ends here"},
        {"another version", "{\"schemaVersion\": 3}",
         "Unsupported workspace schema v3; this build supports v2."},
        {"a wrong field", "{\"color\": 7}", "color: expected text"},
    };
    for (const auto& c : cases) {
        directory.write(primary, c.primary);
        directory.write(backup, document(first));
        const WorkspaceScanResult result = store.scan();
        EXPECT_EQ(result.workspaces, std::vector{first}) << c.what;
        EXPECT_EQ(
            result.issues,
            (std::vector<WorkspaceLoadIssue>{{Kind::recoveredBackup, primary,
                                              "Recovered Work from its previous valid backup.", c.detail}}));
        EXPECT_EQ(directory.read(primary), document(first));
        EXPECT_EQ(directory.names(), (Names{primary, backup}));
        EXPECT_EQ(store.scan().issues.size(), 0u);
    }
}

TEST_F(WorkspaceStoreTest, AMissingPrimaryIsRecreatedFromItsBackup) {
    directory.write(backup, document(first));
    EXPECT_EQ(store.scan().issues.at(0).kind, Kind::recoveredBackup);
    EXPECT_EQ(store.load(id), first);
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
    ASSERT_EQ(result.issues.size(), 4u);
    const char* const details[][2] = {{primary.c_str(), "symbolic link"},
                                      {"both.json", "name: not valid JSON in line 1"},
                                      {"folder.json", "not a regular file"},
                                      {"only.json", "the document: not valid JSON in line 1"}};
    for (std::size_t i = 0; i < 4; ++i) {
        const std::string name = details[i][0];
        EXPECT_EQ(result.issues[i].kind, Kind::unreadable);
        EXPECT_EQ(result.issues[i].fileName, name);
        EXPECT_EQ(result.issues[i].message, "Could not read " + name + " or its backup.");
        EXPECT_NE(result.issues[i].detail.find(details[i][1]), std::string::npos) << result.issues[i].detail;
    }
    EXPECT_EQ(directory.names(), before);
    EXPECT_FALSE(store.save(second));  // neither read nor written through the link
    EXPECT_EQ(outside.read("elsewhere.json"), document(first));
}

TEST_F(WorkspaceStoreTest, LegacyFilesMoveToTheirIdentifier) {
    directory.write("My Work.json", document(first));
    directory.write("My Work.json.bak", document(second));
    const WorkspaceScanResult result = store.scan();
    EXPECT_EQ(result.workspaces, std::vector{first});
    EXPECT_EQ(result.issues.size(), 0u);
    EXPECT_EQ(directory.names(), Names{primary});
    EXPECT_EQ(store.load(id), first);
}

TEST_F(WorkspaceStoreTest, OfTwoFilesWithOneIdentityTheLaterIsListedAndBothStay) {
    for (const std::int64_t legacyAge : {999, 1000, 1001}) {
        directory.write(primary, document(first));
        directory.write("zcopy.json", document(samples::named(id, "Copy", "", legacyAge)));
        const WorkspaceScanResult result = store.scan();
        ASSERT_EQ(result.workspaces.size(), 1u);
        EXPECT_EQ(result.workspaces[0].name, legacyAge > 1000 ? "Copy" : "Work");
        EXPECT_EQ(result.issues,
                  (std::vector<WorkspaceLoadIssue>{{Kind::duplicateIdentity, "zcopy.json",
                                                    "Found duplicate files for workspace Copy.", ""}}));
        EXPECT_EQ(directory.names(), (Names{primary, "zcopy.json"}));
    }
}

TEST_F(WorkspaceStoreTest, LoadsByIdentifierFromThePrimaryOnly) {
    ASSERT_TRUE(store.save(first));
    ASSERT_TRUE(store.save(second));
    EXPECT_EQ(store.load(id), second);
    directory.write(primary, "{\"schemaVersion\": 3}");
    EXPECT_EQ(store.load(id).error(),
              (Error{ErrorKind::unsupportedSchema,
                     primary + ": Unsupported workspace schema v3; this build supports v2.", 0}));
    directory.write(primary, "{\"color\": 1}");
    EXPECT_EQ(store.load(id).error().text, primary + ": color: expected text");
    EXPECT_EQ(store.load(otherId).error().kind, ErrorKind::notFound);
    EXPECT_NE(directory.read(primary), document(first));
}

TEST_F(WorkspaceStoreTest, LoadsByNameIgnoringCase) {
    ASSERT_TRUE(store.save(samples::named(otherId, "WÖRK", "older", 10)));
    ASSERT_TRUE(store.save(samples::named(id, "Wörk", "newer", 20)));
    EXPECT_EQ(store.load("wörk")->id, id);
    EXPECT_EQ(store.load("play").error().kind, ErrorKind::notFound);
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
    const Instant at{std::chrono::seconds{5000}};
    EXPECT_EQ(store.updateLastRestored(id, at), false);
    ASSERT_TRUE(store.save(first));
    EXPECT_EQ(store.updateLastRestored(id, at), true);
    Workspace expected = first;
    expected.lastRestoredAt = at;
    EXPECT_EQ(store.load(id), expected);
    directory.write(primary, "{");
    EXPECT_EQ(store.updateLastRestored(id, at), false);
    EXPECT_EQ(directory.read(primary), "{");
}

}  // namespace
}  // namespace quillo
