#include <fmt/format.h>
#include <gtest/gtest.h>

#include <set>

#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "platform/posix/FileDefaults.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "platform/simulated/MemoryDefaults.hpp"
#include "settings/KnownWorkspaces.hpp"
#include "tests/TemporaryDirectory.hpp"

namespace quillo {
namespace {

std::string digest(std::string_view bytes) {
    return std::to_string(std::hash<std::string_view>{}(bytes));
}

Workspace workspace() {
    Workspace made = Workspace::create(Uuid::random(), "Work", "leaf", "teal", {}, Instant{});
    made.snapshot.desktops.emplace();
    made.snapshot.applications = {{"org.editor", "Editor", Url::parse("file:///usr/bin/editor"), {{}}, {}}};
    made.snapshot.applications[0].context = AppContext{"finder", {{{}, {*Url::parse("file:///tmp/")}, {}}}};
    return made;
}

class KnownWorkspacesTest : public testing::Test {
  protected:
    std::set<Uuid> gone;
    MemoryDefaults defaults;
    KnownWorkspaces known{defaults, digest, [this](const Uuid& id) { return !gone.contains(id); }};
};

TEST_F(KnownWorkspacesTest, WhatARestoreActsOnTellsAndNothingElse) {
    const Workspace saved = workspace();
    EXPECT_FALSE(known.isKnown(saved));
    ASSERT_TRUE(known.savedHere(saved));
    const struct {
        const char* what;
        void (*edit)(Workspace&);
        bool known;
    } edits[] = {
        {"nothing", [](Workspace&) {}, true},
        {"name", [](Workspace& w) { w.name = "Play"; }, true},
        {"look", [](Workspace& w) { w.icon = w.color = "x"; }, true},
        {"times", [](Workspace& w) { w.updatedAt = w.snapshot.capturedAt = Instant{std::chrono::hours(9)}; },
         true},
        {"last use", [](Workspace& w) { w.lastRestoredAt = Instant{}; }, true},
        {"remarks", [](Workspace& w) { w.snapshot.notes = {{"x"}}; }, true},
        {"keeping spelt out", [](Workspace& w) { w.cleanSlate = CleanSlateMode::keep; }, true},
        {"clean slate", [](Workspace& w) { w.cleanSlate = CleanSlateMode::quit; }, false},
        {"identifier", [](Workspace& w) { w.id = Uuid::random(); }, false},
        {"application", [](Workspace& w) { w.snapshot.applications[0].bundleIdentifier = "x"; }, false},
        {"location", [](Workspace& w) { w.snapshot.applications[0].applicationURL = {}; }, false},
        {"document",
         [](Workspace& w) {
             w.snapshot.applications[0].windows[0].documentURL = Url::parse("file:///etc/passwd");
         },
         false},
        {"page", [](Workspace& w) { w.snapshot.applications[0].context->windows[0].urls.clear(); }, false},
        {"desktops", [](Workspace& w) { w.snapshot.desktops = {{{"left", 5, {}}}}; }, false},
        {"displays", [](Workspace& w) { w.snapshot.displays.emplace_back(); }, false},
        {"no number", [](Workspace& w) { w.snapshot.applications[0].windows[0].frame.x = NAN; }, false},
    };
    for (const auto& edit : edits) {
        Workspace edited = saved;
        edit.edit(edited);
        EXPECT_EQ(known.isKnown(edited), edit.known) << edit.what;
        EXPECT_EQ(known.isSavedHere(edited), edit.known) << edit.what;
    }
}

TEST_F(KnownWorkspacesTest, HowItBecameKnownIsKeptUntilSomebodyElseChangesIt) {
    Workspace stranger = workspace();
    stranger.cleanSlate = CleanSlateMode::quit;
    EXPECT_FALSE(known.isCleanSlateChosenHere(stranger));
    Workspace chosen = stranger;
    chosen.cleanSlate = CleanSlateMode::hide;
    ASSERT_TRUE(known.madeFrom(stranger, chosen));  // the rest of it is still a stranger's
    EXPECT_TRUE(known.isCleanSlateChosenHere(chosen));
    EXPECT_FALSE(known.isKnown(chosen));
    ASSERT_TRUE(known.agreed(stranger));
    EXPECT_TRUE(known.isKnown(stranger) && known.isAgreed(stranger));
    EXPECT_FALSE(known.isSavedHere(stranger) || known.isKnown(chosen));
    ASSERT_TRUE(known.madeFrom(stranger, chosen));
    EXPECT_TRUE(known.isAgreed(chosen));
    EXPECT_FALSE(known.isSavedHere(chosen) || known.isKnown(stranger));
    Workspace copy = chosen;
    copy.id = Uuid::random();
    ASSERT_TRUE(known.madeFrom(chosen, copy));
    EXPECT_TRUE(known.isAgreed(copy) && known.isAgreed(chosen));
    Workspace renewed = chosen;
    renewed.snapshot.applications.clear();
    ASSERT_TRUE(known.savedHere(renewed));
    EXPECT_TRUE(known.isSavedHere(renewed) && !known.isAgreed(renewed));
    ASSERT_TRUE(known.agreed(renewed));
    EXPECT_TRUE(known.isSavedHere(renewed) && known.isAgreed(renewed));
    ASSERT_TRUE(known.forget(renewed.id));
    EXPECT_FALSE(known.isKnown(renewed));
    EXPECT_TRUE(known.isKnown(copy));
    ASSERT_TRUE(known.forgetAll());
    EXPECT_FALSE(known.isKnown(copy));
}

TEST_F(KnownWorkspacesTest, DamageMakesNothingKnownAndIsOvercome) {
    const Workspace saved = workspace();
    const auto withNote = [&](std::string_view note) {
        return fmt::format(R"({{"{}":{}}})", saved.id.upper(), note);
    };
    for (const std::string& stored :
         {std::string("{"), std::string("[]"), withNote("7"), withNote(R"({"savedHere":true})"),
          withNote(R"({"savedHere":true,"agreed":true,"digest":7})"),
          withNote(R"({"savedHere":true,"agreed":true,"digest":""})")}) {
        ASSERT_TRUE(defaults.setData(KnownWorkspaces::defaultsKey, stored));
        EXPECT_FALSE(known.isKnown(saved) || known.isAgreed(saved) || known.isCleanSlateChosenHere(saved))
            << stored;
        ASSERT_TRUE(known.savedHere(saved));
        EXPECT_TRUE(known.isSavedHere(saved));
    }
    defaults.failure = Error{ErrorKind::noSpace, "full", 28};
    Workspace other = saved;
    other.cleanSlate = CleanSlateMode::hide;
    EXPECT_FALSE(known.savedHere(other));
    EXPECT_TRUE(known.isSavedHere(saved));
}

TEST_F(KnownWorkspacesTest, DamagedSettingsMakeNoStrangersAndOldNotesStillCount) {
    const TemporaryDirectory directory;
    PosixFileSystem files;
    const Workspace saved = workspace(), later = workspace();
    ASSERT_TRUE(known.savedHere(saved));
    FileDefaults file(files, directory / "defaults.json");
    ASSERT_TRUE(file.setData(KnownWorkspaces::defaultsKey, defaults.data(KnownWorkspaces::defaultsKey)));
    KnownWorkspaces now(file, digest, [](const Uuid&) { return true; });
    EXPECT_TRUE(now.isSavedHere(saved));
    ASSERT_TRUE(now.savedHere(later));
    EXPECT_FALSE(file.data(KnownWorkspaces::defaultsKey));
    directory.write("defaults.json", "{");
    EXPECT_TRUE(now.isSavedHere(saved) && now.isSavedHere(later) && now.forgetAll());
    EXPECT_FALSE(now.isKnown(saved));
}

TEST_F(KnownWorkspacesTest, ThoseThatAreGoneDoNotPileUp) {
    std::vector<Workspace> all;
    for (std::size_t i = 0; i < KnownWorkspaces::roomyCount; ++i) {
        ASSERT_TRUE(known.savedHere(all.emplace_back(workspace())));
        if (i % 2 == 0) gone.insert(all.back().id);
    }
    EXPECT_TRUE(known.isKnown(all[0]) && known.isKnown(all[1]));  // of another directory, for all one knows
    ASSERT_TRUE(known.savedHere(all.emplace_back(workspace())));
    EXPECT_FALSE(known.isKnown(all[0]));
    EXPECT_TRUE(known.isKnown(all[1]) && known.isKnown(all.back()));
}

TEST_F(KnownWorkspacesTest, SessionsAreKnownAlsoOnceTheyAreArchived) {
    const TemporaryDirectory directory;
    PosixFileSystem files;
    const SessionHistory history(files, directory / "sessions");
    WorkspaceSnapshot snapshot = workspace().snapshot;
    for (const char* name : {"a", "b", "c"}) {
        snapshot.applications[0].bundleIdentifier = name;
        EXPECT_EQ(saveSession(history, known, snapshot, Instant{}), true);
        EXPECT_EQ(saveSession(history, known, snapshot, Instant{}), false);
    }
    ASSERT_EQ(history.list().size(), 3U);
    for (const Workspace& session : history.list()) EXPECT_TRUE(known.isSavedHere(session)) << session.name;
    // One that somebody slipped in does not become ours by being archived.
    Workspace slipped = history.store().load(SessionHistory::latestID).value();
    slipped.snapshot.applications[0].bundleIdentifier = "evil";
    ASSERT_TRUE(history.store().save(slipped));
    snapshot.applications[0].bundleIdentifier = "d";
    ASSERT_TRUE(saveSession(history, known, snapshot, Instant{}));
    for (const Workspace& session : history.list())
        EXPECT_NE(known.isKnown(session), session.snapshot == slipped.snapshot);
    // Nor by saying that it is newer than the latest, whose identifier everybody knows.
    slipped.updatedAt = Instant(std::chrono::hours(1'000'000));
    directory.write("sessions/zz.json", WorkspaceCoding::encode(slipped).value());
    snapshot.applications[0].bundleIdentifier = "e";
    ASSERT_TRUE(saveSession(history, known, snapshot, Instant{}));
    EXPECT_FALSE(known.isKnown(slipped));
}

}  // namespace
}  // namespace quillo
