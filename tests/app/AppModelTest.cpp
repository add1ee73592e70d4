// The operations of the library and their failures.
#include "WindowEngine/records/WorkspaceCoding.hpp"
#include "platform/posix/FileDefaults.hpp"
#include "tests/app/ModelFixture.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using samples::Model;
using Names = std::vector<std::string>;

const Error full{ErrorKind::noSpace, "the disk is full", 28};

TEST(AppModel, StartsWithWhatIsStoredAndWatchesForMore) {
    Model model;
    EXPECT_TRUE(model->accessibilityGranted());
    EXPECT_FALSE(model->draft() || model->restoreRun() || model->busy() || model->toast() ||
                 model->currentSnapshot());
    EXPECT_EQ(model.loginItem.registrations, 0);  // settings were there: not a fresh installation
    EXPECT_EQ(model.hotKeys.registrations(), 2U);
    EXPECT_EQ(model.shell.appearances, std::vector{Appearance::system});
    // Another process saves: the directory is there now, then changes.
    for (const char* name : {"One", "Two"}) {
        ASSERT_TRUE(model.store.save(samples::named(Uuid::random(), name)));
        model.disk.tellWatchers();
        model.run(1s);
    }
    EXPECT_EQ(model.names(), (Names{"One", "Two"}));
    ASSERT_TRUE(model.history.save(samples::example().snapshot, Instant{}));
    model.disk.tellWatchers();
    model.run(1s);
    EXPECT_EQ(model->sessions().size(), 1U);
    model.directory.write("workspaces/" + Uuid::random().upper() + ".json", "{");
    model->reload();
    EXPECT_EQ(model->storageIssues().shown().size(), 1U);
}

TEST(AppModel, WhatIsWrongWithFilesIsToldUntilItIsDismissedAndLookedAtOnceForEachChange) {
    Model model;
    const Uuid id = Uuid::random();
    for (int i = 0; i < 2; ++i) ASSERT_TRUE(model.store.save(samples::named(id, "Work")));
    const auto changed = [&] {
        model.disk.tellWatchers();
        model.run(1s);
        Names told;
        for (const WorkspaceLoadIssue& issue : model->storageIssues().shown()) told.push_back(issue.message);
        for (const std::string& moved : model->storageIssues().moved()) told.push_back(moved);
        return told;
    };
    EXPECT_EQ(changed(), Names());
    const std::string file = id.lower() + ".json";
    model.directory.write("workspaces/" + file, "{");
    model.disk.createFailure = full;
    const Names unrepaired{"Could not read " + file + ", so the version saved before it is listed."};
    EXPECT_EQ(changed(), unrepaired);
    const int lists = model.disk.lists;
    for (int i = 0; i < 3; ++i) EXPECT_EQ(changed(), unrepaired) << "a repair that fails tells of itself";
    EXPECT_EQ(model.disk.lists, lists) << "and is not tried again before something changes";
    EXPECT_EQ(model.names(), Names{"Work"});

    model.disk.createFailure.reset();
    const Workspace home = samples::named(Uuid::random(), "Home");
    model.directory.write("workspaces/Mine.json", WorkspaceCoding::encode(home).value());
    model->reload();
    const Names repaired{"Recovered Work from its previous valid backup.",
                         "Mine.json: renamed to " + home.id.lower() + ".json"};
    for (int i = 0; i < 3; ++i) EXPECT_EQ(changed(), repaired);
    model->dismissStorageIssues();
    EXPECT_EQ(changed(), Names());

    model.disk.listFailure = Error{ErrorKind::permission, "no", 13};
    model->reload();
    EXPECT_TRUE(model->storageIssues().unlisted());
    EXPECT_EQ(changed(), Names{"no"}) << "said beside the workspaces that were read before";
    EXPECT_EQ(model.names(), (Names{"Home", "Work"})) << "what was read before is still there";
}

TEST(AppModel, ACaptureIsReviewedAndSavedUnderAFreeName) {
    const struct {
        const char *typed, *saved;
    } cases[] = {{"WORK", "WORK 3"}, {"  Play\n", "Play"}, {" ", "Untitled"}, {"", "Untitled 2"}};
    Model model;
    model.put({"Work", "work 2"});
    for (const auto& c : cases) {
        model.save(c.typed);
        EXPECT_EQ(model->toast(), std::string("Saved ") + c.saved);
        EXPECT_FALSE(model->draft());
        const Workspace& saved = model.named(c.saved);
        EXPECT_EQ(saved.snapshot.windowCount(), 2);
        EXPECT_EQ(saved.createdAt, model.desktop.executor().wallNow());
        EXPECT_EQ(saved.updatedAt, saved.createdAt);
    }
    EXPECT_EQ(model->workspaces(), model.store.scan().workspaces);
    EXPECT_EQ(model.windowsOpened, 4);
    EXPECT_EQ(model.shell.policies.back(), ActivationPolicy::regular);
}

TEST(AppModel, ApplicationsThatCouldNotBeStartedAgainAreNamed) {
    samples::Scene desk = Model::desk();
    for (const bool installed : {true, false}) {
        desk.applications.front().installed = installed;
        Model model(desk);
        model->beginCapture();
        EXPECT_EQ(model->notLaunchable(model.review().snapshot()).size(), installed ? 0U : 1U);
    }
}

TEST(AppModel, AnUpdateKeepsWhatTheWorkspaceIs) {
    Model model;
    Workspace before = samples::named(Uuid::random(), "Work");
    before.lastRestoredAt = Instant{7s};
    before.cleanSlate = CleanSlateMode::hide;
    model.keep(before);
    for (const char* name : {"Work", "work"}) {
        model->beginCapture(model->workspaces().at(0));
        CaptureDraft& draft = model.review();
        draft.setName(name);
        draft.setIcon("leaf");
        draft.includeWindow("org.editor", 1, false);
        model->commit(draft);
        const Workspace& after = model->workspaces().at(0);
        // The same name is kept; another one must be free, and this workspace is itself in the library.
        EXPECT_EQ(after.name, std::string(name) == "Work" ? "Work" : "work 2");
        EXPECT_EQ(std::tie(after.id, after.createdAt, after.lastRestoredAt, after.cleanSlate, after.icon),
                  std::tie(before.id, before.createdAt, before.lastRestoredAt, before.cleanSlate, "leaf"));
        EXPECT_EQ(after.snapshot.windowCount(), 1);
        EXPECT_GT(after.updatedAt, before.updatedAt);
    }
}

TEST(AppModel, AnUpdateKeepsWhatBecameOfTheWorkspaceMeanwhile) {
    const struct {
        const char *typed, *name;
    } cases[] = {{nullptr, "Elsewhere"},
                 {"Elsewhere", "Elsewhere"},
                 {"Mine", "Mine"},
                 {"work", "work"},
                 {"Taken", "Taken 2"}};
    for (const auto& c : cases) {
        Model model;
        model.put({"Work"});
        model->beginCapture(model.named("Work"));
        CaptureDraft& draft = model.review();
        model->setCleanSlate(model.named("Work"), CleanSlateMode::hide);
        Workspace changed = model.named("Work");  // by another program
        changed.name = "Elsewhere";
        changed.icon = "leaf";
        changed.lastRestoredAt = Instant{7s};
        ASSERT_TRUE(model.store.save(changed));
        model->reload();
        ASSERT_TRUE(model.store.save(samples::named(Uuid::random(), "Taken")));  // and not read by now
        if (c.typed) draft.setName(c.typed);
        draft.setColor("lime");
        model->commit(draft);
        const Workspace after = model.store.load(changed.id).value();
        EXPECT_EQ(std::tie(after.name, after.icon, after.color, after.lastRestoredAt, after.cleanSlate),
                  std::make_tuple(c.name, "leaf", "lime", changed.lastRestoredAt, CleanSlateMode::hide));
        EXPECT_EQ(after.snapshot.windowCount(), 2);
    }
}

TEST(AppModel, RenamingAndDuplicatingGoThroughTheStore) {
    Model model;
    model.put({"Work", "Play"});
    const struct {
        const char *from, *typed, *to;
    } cases[] = {{"Work", "  Work ", "Work"},
                 {"Work", "  ", "Work"},
                 {"Work", "work", "work 2"},
                 {"work 2", "PLAY", "PLAY 2"},
                 {"PLAY 2", " Office ", "Office"}};
    for (const auto& c : cases) {
        model->rename(model.named(c.from), c.typed);
        EXPECT_EQ(model.names(), (Names{c.to < std::string("Play") ? c.to : "Play",
                                        c.to < std::string("Play") ? "Play" : c.to}));
    }
    EXPECT_FALSE(model->toast());
    Workspace stored = model.named("Office");
    stored.lastRestoredAt = Instant{7s};
    stored.cleanSlate = CleanSlateMode::quit;
    ASSERT_TRUE(model.store.save(stored));
    model->reload();
    model->duplicate(model.named("Office"));
    model->duplicate(model.named("Office"));
    EXPECT_EQ(model->toast(), "Duplicated Office");
    const Workspace& copy = model.named("Office copy 2");
    EXPECT_NE(copy.id, stored.id);
    EXPECT_FALSE(copy.lastRestoredAt);
    EXPECT_EQ(copy.cleanSlate, CleanSlateMode::quit);
    EXPECT_EQ(copy.createdAt, model.desktop.executor().wallNow());
    // What is stored counts, not what was read: another process renamed it.
    stored.name = "Elsewhere";
    ASSERT_TRUE(model.store.save(stored));
    const Instant updated = model.named("Office").updatedAt;
    model->setCleanSlate(model.named("Office"), CleanSlateMode::keep);
    EXPECT_EQ(model.named("Elsewhere").cleanSlate, CleanSlateMode::keep);
    EXPECT_EQ(model.named("Elsewhere").updatedAt, updated);
}

/// Each operation that can fail, with the toast that says so; nothing is changed by any.
TEST(AppModel, FailuresAreSaidAndChangeNothing) {
    Model model;
    model.put({"Work"});
    const auto file = model.directory / "file.json";
    const Workspace gone = samples::named(Uuid::random(), "Gone");
    const std::string notThere = model.store.load(gone.id).error().text;
    struct Case {
        std::function<void()> act;
        std::string toast;
        bool fullDisk = true;
    };
    const auto read = [&](const char* bytes) {
        return [&model, file, bytes] {
            model.directory.write("file.json", bytes);
            model.surfaces.answers = {file};
            model->importWorkspace();
        };
    };
    const std::string sound = WorkspaceCoding::encode(samples::example()).value();
    const Case cases[] = {
        {[&] { model->commit(*model->draft()); }, "Couldn't save: "},
        {[&] { model->duplicate(model.named("Work")); }, "Couldn't duplicate Work: "},
        {[&] { model->rename(model.named("Work"), "New"); }, "Couldn't rename Work: "},
        {[&] { model->rename(gone, "New"); }, "Couldn't rename Gone: " + notThere, false},
        {[&] { model->setCleanSlate(model.named("Work"), CleanSlateMode::hide); },
         "Couldn't save restore preference: "},
        {[&] { model->setCleanSlate(gone, CleanSlateMode::hide); },
         "Couldn't save restore preference: ", false},
        {[&] { model->deleteWorkspace(model.named("Work")); }, "Couldn't delete Work: "},
        {[&] { model->deleteWorkspace(gone); }, "Couldn't delete Gone: "},
        {[&] { model->deleteAllData(); }, "Couldn't delete all workspace data: "},
        {[&] {
             model.surfaces.answers = {file};
             model->exportWorkspace(model.named("Work"));
         },
         "Export failed: "},
        {read(sound.c_str()), "Couldn't import workspace: "},
        {read("{"), "This is not a Quillo workspace: ", false},
        {read("{}"), "This is not a Quillo workspace: color: missing", false},
        {read(R"({"schemaVersion": 3})"), "Couldn't import workspace: ", false},
        {[&] {
             model.surfaces.answers = {model.directory / "missing.json"};
             model->importWorkspace();
         },
         "Couldn't import workspace: ", false},
    };
    model->beginCapture();
    const CaptureDraft* draft = &model.review();
    for (const Case& c : cases) {
        if (c.fullDisk) model.disk.createFailure = model.disk.removeFailure = full;
        c.act();
        model.desktop.executor().runUntil([&] { return model->toast().has_value(); }, 5s);
        model.disk.createFailure = model.disk.removeFailure = std::nullopt;
        ASSERT_TRUE(model->toast()) << c.toast;
        EXPECT_TRUE(model->toast()->starts_with(c.toast)) << *model->toast();
        EXPECT_EQ(model.names(), Names{"Work"}) << c.toast;
        EXPECT_EQ(model->draft(), draft);
        model.run(3s);
        EXPECT_EQ(model->toastKind(), ToastKind::failure);
        EXPECT_TRUE(model->toast()) << c.toast << " goes by itself";
        model->dismissToast();
    }
    model.defaults.failure = full;
    model.change([](AppSettings& settings) { settings.appearance = Appearance::dark; });
    EXPECT_EQ(model->toast(), "Couldn't save settings: the disk is full");
    EXPECT_EQ(model.shell.appearances.back(), Appearance::dark);
}

TEST(AppModel, SettingTheSameAgainTriesAgainWhatFailed) {
    Model model;
    const auto dark = [](AppSettings& settings) { settings.appearance = Appearance::dark; };
    model.defaults.failure = full;
    model.change(dark);
    EXPECT_NE(AppSettings::load(model.defaults), model->settings());
    model.defaults.failure.reset();
    model.hotKeys.taken = {{1, 0x1900}};
    model.change(dark);
    EXPECT_EQ(AppSettings::load(model.defaults), model->settings());
    EXPECT_FALSE(model->toast()) << "it is stored after all";
    EXPECT_EQ(model->hotKeys().unavailable().size(), 1U);
    model.hotKeys.taken.clear();
    model.change(dark);
    EXPECT_TRUE(model->hotKeys().unavailable().empty() && model.hotKeys.press(1, 0x1900));
}

TEST(AppModel, AWorkspaceIsResumedByItsOwnShortcutForAsLongAsItIsThere) {
    Model model;
    model.save("Work");
    const Workspace work = model.named("Work");
    model->setAutomation(work.id, {.shortcut = Shortcut{18, 0x1900, "1"}});
    EXPECT_TRUE(model.hotKeys.press(18, 0x1900));
    model.run(1ms);
    ASSERT_TRUE(model->restoreRun());
    EXPECT_EQ(model->restoreRun()->workspace().id, work.id);
    model.finishRestore();
    EXPECT_TRUE(model.store.remove(work.id));
    model->reload();
    EXPECT_FALSE(model.hotKeys.press(18, 0x1900)) << "another program deleted it: the keys are free";
    model.keep(work);
    EXPECT_TRUE(model.hotKeys.press(18, 0x1900));
    model.run(1ms);
    model.finishRestore();
    model->deleteWorkspace(model.named("Work"));
    EXPECT_TRUE(AppSettings::load(model.defaults).automation.empty());
}

/// A file that is no JSON, and settings of a wrong type in one that is.
TEST(AppModel, SettingsThatCannotBeReadAreKeptAsideAndSaidUntilThatIsDismissed) {
    const struct {
        const char *damage, *keptAs, *keptIn, *kept;
    } cases[] = {
        {R"({"settings": {)", "defaults.json.damaged.", "defaults.json.damaged", R"({"settings": {)"},
        {R"({"settings": {"onboarded": 1}})", "settings.damaged in ", "defaults.json",
         R"("settings.damaged": {"onboarded":1})"},
        {R"({"settings": [1]})", "settings.damaged in ", "defaults.json", R"("settings.damaged": "[1]")"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.damage);
        Model model;
        std::filesystem::create_directory(model.directory / "config");
        model.directory.write("config/defaults.json", c.damage);
        FileDefaults defaults(model.posix, model.directory / "config/defaults.json");
        model.keptIn = &defaults;
        model.start();
        const std::string said = model->toast().value_or("");
        const std::string trouble = model->settingsTrouble().value_or("");
        EXPECT_EQ(said, trouble.substr(0, trouble.find('\n')) + " Settings says more.");
        EXPECT_TRUE(trouble.contains(c.keptAs)) << trouble;
        EXPECT_TRUE(model->settings().onboarded) << "this is no first start";
        EXPECT_TRUE(model.directory.read(std::string("config/") + c.keptIn).contains(c.kept));
        EXPECT_EQ(model.loginItem.registrations, 0) << "as if freshly installed";
        model.start();
        EXPECT_FALSE(model->toast()) << "it was said at once";
        EXPECT_EQ(model->settingsTrouble(), trouble);
        EXPECT_TRUE(model->settings().onboarded);
        model->dismissSettingsTrouble();
        model.start();
        EXPECT_FALSE(model->settingsTrouble());
        EXPECT_EQ(model.loginItem.registrations, 0);
    }
}

TEST(AppModel, ExportedFilesAreImportedAgainAndCancelledDialogsDoNothing) {
    Model model;
    Workspace workspace = samples::example();
    workspace.name = "a/b";
    ASSERT_TRUE(model.store.save(workspace));
    model->reload();
    const auto file = model.directory / "out.json";
    model.surfaces.answers = {file, file, std::nullopt, std::nullopt};
    model->exportWorkspace(model.named("a/b"));
    model->exportWorkspace(model.named("a/b"));  // its dialog is open
    model.run(4s);
    EXPECT_EQ(model->toast(), "Exported a/b");
    EXPECT_EQ(model.surfaces.proposedNames, Names{"a-b.quillo.json"});
    EXPECT_EQ(model.directory.read("out.json"), WorkspaceCoding::encode(workspace).value());
    EXPECT_EQ(model.directory.mode("out.json"), 0600U);
    std::filesystem::create_symlink("out.json", model.directory / "link.json");
    model.surfaces.answers.front() = model.directory / "link.json";
    model->importWorkspace();
    model.run(4s);
    EXPECT_EQ(model->toast(), "Imported a/b 2");
    EXPECT_EQ(model.names(), (Names{"a/b", "a/b 2"}));
    model.run(10s);
    model->importWorkspace();
    model->exportWorkspace(workspace);
    model.run(4s);
    EXPECT_FALSE(model->toast());
}

TEST(AppModel, EachToastHasItsFullTime) {
    Model model;
    model->show("one");
    model.run(2s);
    model->show("two");
    model.run(2499ms);
    EXPECT_EQ(model->toast(), "two");
    model->show("two");
    model.run(2499ms);
    EXPECT_EQ(model->toast(), "two");
    model.run(1ms);
    EXPECT_FALSE(model->toast());
}

TEST(AppModel, AFailureStaysUntilTheSameIsDoneAndNamesTheFolderAndNoFileOfItsOwn) {
    Model model;
    model.put({"Work"});
    const auto library = model.directory / "workspaces", aside = model.directory / "aside";
    const auto rename = [&] { model->rename(model.named("Work"), "New"); };
    std::filesystem::rename(library, aside);
    model.directory.write("workspaces", "");
    model->duplicate(model.named("Work"));
    const std::string said = model->toast().value_or("");
    EXPECT_TRUE(said.starts_with("Couldn't duplicate Work: Quillo can't write to " + library.string() + ": "))
        << said;
    EXPECT_TRUE(said.ends_with("again.") && !said.contains(".next")) << said;
    model->show("else");
    EXPECT_EQ(model->toast(), "else");
    model.run(1h);
    EXPECT_EQ(model->toast(), said);
    std::filesystem::remove(library);
    std::filesystem::rename(aside, library);
    rename();
    EXPECT_EQ(model->toast(), said) << "that was not it";
    model->rename(model.named("New"), "Work");
    model->duplicate(model.named("Work"));
    EXPECT_EQ(model->toast(), "Duplicated Work");
    model.run(1h);
    EXPECT_FALSE(model->toast());
}

TEST(AppModel, EverythingGoesWhenAsked) {
    Model model;
    model.put({"Work", "Play"});
    model.change([](AppSettings& settings) {
        settings.autoSnapshotMinutes = 5;
        settings.excludedDomains = {"a.example"};
    });
    model.run(1min);
    ASSERT_EQ(model->sessions().size(), 1U);
    model->deleteAllData();
    EXPECT_TRUE(model->workspaces().empty() && model->sessions().empty());
    EXPECT_FALSE(std::filesystem::exists(model.store.directory()));
    EXPECT_FALSE(std::filesystem::exists(model.directory / "sessions"));
    EXPECT_EQ(model->settings().autoSnapshotMinutes, 0);
    EXPECT_EQ(model->settings().excludedDomains.size(), 1U);
    EXPECT_EQ(AppSettings::load(model.defaults), model->settings());
    model.run(1h);
    EXPECT_TRUE(model->sessions().empty());
    model.save("Anew");
    EXPECT_EQ(model.names(), Names{"Anew"});
}

TEST(AppModel, HotKeysAndOtherPartsOfTheProgramReachIt) {
    Model model;
    const std::uint32_t mask = 0x1900;
    EXPECT_TRUE(model.hotKeys.press(15, mask));
    model.run(1ms);
    EXPECT_EQ(model.surfaces.panels.at(PanelID::switcher), switcherPlace);
    EXPECT_TRUE(model.hotKeys.press(15, mask));
    model.run(1ms);
    EXPECT_TRUE(model.surfaces.panels.empty());
    EXPECT_TRUE(model.hotKeys.press(1, mask));
    model.review();
    model.surfaces.mainWindow = true;
    model.surfaces.openMainAsked();
    EXPECT_EQ(model.surfaces.broughtForward, 1);
    EXPECT_EQ(model.windowsOpened, 1);
    // Off, and on again with another combination.
    model.change([](AppSettings& settings) { settings.shortcutsEnabled = false; });
    EXPECT_FALSE(model.hotKeys.press(1, mask) || model.hotKeys.handled());
    model.change([](AppSettings& settings) {
        settings.shortcutsEnabled = true;
        settings.shortcuts["2"] = {96, modifier::control, "F5"};
    });
    EXPECT_TRUE(model.hotKeys.press(1, mask) && model.hotKeys.press(96, modifier::control));
    EXPECT_FALSE(model.hotKeys.press(15, mask));
}

}  // namespace
}  // namespace quillo
