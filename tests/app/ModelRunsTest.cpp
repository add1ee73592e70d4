// Captures, restores and background work: what excludes what, and when.
#include "tests/app/ModelFixture.hpp"

namespace quillo {
namespace {

using namespace std::chrono_literals;
using samples::fault;
using samples::FaultKind;
using samples::Model;
using samples::notRunning;
using samples::Scene;

/// The desk, with an application that takes its time: a capture of it, or its launch, lasts seconds.
Scene slowDesk(double seconds) {
    Scene desk = Model::desk();
    desk.applications.at(1).launchSeconds = seconds;
    return desk;
}

/// Finder is asked, and slow: every capture lasts three seconds.
Scene slowFinder() {
    Scene desk = Model::desk();
    samples::SceneWindow home = samples::sceneWindow("Home", {50, 60, 300, 200});
    home.tabs = {"file:///home/"};
    desk.applications.push_back(samples::sceneApplication("com.apple.finder", {home}));
    desk.faults = {fault(FaultKind::automationSlow, "com.apple.finder", 0, 3)};
    return desk;
}

/// A workspace of the viewer alone: restoring it launches the viewer.
Workspace viewing(Model& model, bool extraWindow = false) {
    Workspace workspace = samples::named(Uuid::random(), "Viewing");
    ApplicationSnapshot viewer{"org.viewer", "viewer", {}, {}, {}};
    viewer.applicationURL = model.desktop.plain.applications.location("org.viewer");
    viewer.windows = {samples::savedWindow(model.desktop, {10, 400, 300, 200}, "Page")};
    if (extraWindow) viewer.windows.push_back(samples::savedWindow(model.desktop, {30, 40, 60, 50}, "Lost"));
    workspace.snapshot.applications = {viewer};
    model.keep(workspace);
    return workspace;
}

TEST(ModelRuns, ACleanRestoreIsRecordedAndItsPanelClosesAfterFourSeconds) {
    Model model(slowDesk(2));
    model->restore(viewing(model), CleanSlateMode::hide);
    EXPECT_TRUE(model->restoreRunning() && model->busy());
    EXPECT_EQ(model.surfaces.panels.at(PanelID::restore),
              (PanelPlace{.width = 380, .anchor = PanelAnchor::bottomTrailing}));
    model.finishRestore();
    const RestoreRun& run = *model->restoreRun();
    EXPECT_TRUE(run.clean()) << run.subtitle();
    EXPECT_EQ(run.title(), "Viewing is back");
    EXPECT_EQ(run.items(), run.report()->items);
    EXPECT_TRUE(model.desktop.world().application("org.editor")->hidden);  // by this run's own mode
    EXPECT_LT(model.desktop.executor().wallNow() - *model.named("Viewing").lastRestoredAt,
              1s);  // kept in whole seconds
    EXPECT_FALSE(model->toast());
    model.run(3999ms);
    EXPECT_TRUE(model.surfaces.panelVisible(PanelID::restore));
    model.run(1ms);
    EXPECT_FALSE(model.surfaces.panelVisible(PanelID::restore));
    EXPECT_TRUE(model->restoreRun()->report());
}

TEST(ModelRuns, ATroubledRestoreKeepsItsPanelTenSecondsAndANewOneIsNotClosedByTheOld) {
    Model model;
    const Workspace workspace = viewing(model, true);
    model->restore(workspace, {});
    model.finishRestore();
    EXPECT_EQ(model->restoreRun()->title(), "Viewing is mostly back");
    model.run(9999ms);
    EXPECT_TRUE(model.surfaces.panelVisible(PanelID::restore));
    model->restore(workspace, {});
    model.run(1ms);
    EXPECT_TRUE(model.surfaces.panelVisible(PanelID::restore));
    model.finishRestore();
    model.run(10s);
    EXPECT_FALSE(model.surfaces.panelVisible(PanelID::restore));
}

TEST(ModelRuns, APanelThatSomebodyReadsStaysAndAReportCanBeReadAgain) {
    Model model;
    const Workspace workspace = viewing(model, true);
    model->restore(workspace, {});
    EXPECT_FALSE(model->hasReport(workspace.id));
    EXPECT_EQ(model.surfaces.steppedAside, 0);
    model.finishRestore();
    EXPECT_EQ(model.surfaces.steppedAside, 1) << "with the first window that was back";
    model.surfaces.panelsInUse = true;
    model.run(1min);
    EXPECT_TRUE(model.surfaces.panelVisible(PanelID::restore));
    model.surfaces.panelsInUse = false;
    model.run(2s);
    EXPECT_FALSE(model.surfaces.panelVisible(PanelID::restore));

    model.save("Other");
    model->restore(model.named("Other"), {});
    model->showReport(workspace.id);
    EXPECT_EQ(model->restoreRun()->workspace().name, "Other") << "which runs";
    model.finishRestore();
    model->showReport(workspace.id);
    EXPECT_EQ(model->restoreRun()->title(), "Viewing is mostly back");
    model.run(1min);
    EXPECT_TRUE(model->reportShown()) << "it was asked for";
    EXPECT_FALSE(model.surfaces.panels.at(PanelID::restore).staysOnTop);
    model->closeRestorePanel();
    EXPECT_FALSE(model->reportShown());
    model->deleteWorkspace(workspace);
    EXPECT_FALSE(model->hasReport(workspace.id));
    EXPECT_TRUE(model->hasReport(model.named("Other").id));
}

TEST(ModelRuns, TheCurrentDesktopIsReadAgainWhenItChangedWhileSomebodyLooks) {
    Model model;
    int readings = 0;
    QObject::connect(model.model.get(), &AppModel::currentSnapshotChanged, [&] { ++readings; });
    auto& world = model.desktop.world();
    const auto move = [&](double x) {
        world.move(*world.windowsOf("org.editor").front(), {x, 40, 400, 300});
        model.run(5s);
    };
    model->followCurrentDesktop(true);
    model.run(1min);
    EXPECT_EQ(readings, 1) << "nothing has changed";
    move(30);
    EXPECT_EQ(readings, 2);
    EXPECT_EQ(model->currentSnapshot()->applications.front().windows.front().frame.x, 30);
    model->followCurrentDesktop(false);
    move(50);
    EXPECT_EQ(readings, 2) << "nobody looks";
    model->followCurrentDesktop(true);
    model.run(1s);
    EXPECT_EQ(readings, 3);
}

TEST(ModelRuns, ClosingThePanelStopsTheRestoreWhereverItIs) {
    for (const Duration after : {Duration{0ms}, Duration{1ms}, Duration{1s}}) {
        Model model(slowDesk(5));
        model->restore(viewing(model), {});
        if (after > 0ms) model.run(after);
        model->closeRestorePanel();
        EXPECT_TRUE(model.surfaces.panels.empty());
        model.finishRestore();
        EXPECT_TRUE(model->restoreRun()->report()->cancelled);
        EXPECT_FALSE(model->restoreRun()->clean());
        EXPECT_FALSE(model.named("Viewing").lastRestoredAt);
        EXPECT_FALSE(model->toast());
        model->beginCapture();
        model.review();
    }
}

TEST(ModelRuns, TheLastUsedTimeIsMissedAloud) {
    Model model;
    const Workspace workspace = viewing(model);
    model->restore(workspace, {});
    model.disk.createFailure = Error{ErrorKind::noSpace, "full", 28};
    model.finishRestore();
    EXPECT_EQ(model->toast(), "Restored, but couldn't update last-used time");
    EXPECT_TRUE(model->restoreRun()->clean());
    // A session of the history is in no library: nothing to record, nothing to say.
    model.disk.createFailure.reset();
    model.run(20s);
    const Workspace session = samples::named(Uuid::random(), "Last session");
    ASSERT_TRUE(model.known.savedHere(session));
    model->restore(session, {});
    model.finishRestore();
    EXPECT_FALSE(model->toast());
}

/// What was not saved here is asked about, once, and the desktop stays as it is until the answer.
TEST(ModelRuns, AWorkspaceFromElsewhereIsAskedAboutOnce) {
    Model model;
    Workspace stranger = viewing(model);
    stranger.cleanSlate = CleanSlateMode::quit;
    ASSERT_TRUE(model.store.save(stranger));  // a file that was changed in the library's folder
    model->reload();
    const auto asks = [&](std::optional<CleanSlateMode> mode) {
        model->restore(model.named("Viewing"), mode);
        model->restore(model.named("Viewing"), mode);  // by a double click
        EXPECT_TRUE(model->busy());
        model.run(1s);
        EXPECT_FALSE(model->restoreRunning() && model->question());
        return model->question().has_value();
    };
    ASSERT_TRUE(asks(CleanSlateMode::quit));
    EXPECT_EQ(model.windowsOpened, 1);
    const ResumeQuestion question = *model->question();
    EXPECT_EQ(question.name, "Viewing");
    EXPECT_EQ(question.consequences, (Consequences{.others = CleanSlateMode::quit,
                                                   .quit = {"org.editor"},
                                                   .hidden = {},
                                                   .launched = {"org.viewer (saved as “viewer”)"},
                                                   .launchedLater = {},
                                                   .opened = {}}));
    model->answerQuestion(false);
    model->answerQuestion(true);  // there is no question any more
    EXPECT_FALSE(model->question() || model->restoreRun() || model->busy());
    EXPECT_TRUE(asks(CleanSlateMode::quit)) << "a no is not remembered";
    model->beginCapture();  // something else is begun: the question is dropped
    EXPECT_FALSE(model->question());
    model.review();
    model->dismissDraft();

    // Agreed to with less than the file says: it is asked about again.
    ASSERT_TRUE(asks(std::nullopt));
    EXPECT_TRUE(model->question()->consequences.quit.empty());
    model->answerQuestion(true);
    model.finishRestore();
    EXPECT_TRUE(model.desktop.world().application("org.editor")->running);
    ASSERT_TRUE(asks(CleanSlateMode::quit));
    model->answerQuestion(true);
    EXPECT_TRUE(model->restoreRunning());
    model.finishRestore();
    EXPECT_FALSE(model.desktop.world().application("org.editor")->running);
    model.start();  // and remembered
    EXPECT_FALSE(asks(CleanSlateMode::quit));
    EXPECT_TRUE(model->restoreRun());
}

TEST(ModelRuns, WhatWasSavedHereIsNotAskedAboutWhateverBecameOfIt) {
    Model model;
    model.save("Work");
    model->setCleanSlate(model.named("Work"), CleanSlateMode::hide);
    model->rename(model.named("Work"), "Desk");
    model->duplicate(model.named("Desk"));
    for (const char* name : {"Desk", "Desk copy"}) {
        EXPECT_TRUE(model.known.isSavedHere(model.named(name))) << name;
    }
    // A stranger's choice about other applications does not outlive what it came with; one's own does.
    for (const bool own : {false, true}) {
        Workspace stranger = samples::named(Uuid::random(), own ? "Own" : "Theirs");
        stranger.cleanSlate = CleanSlateMode::hide;
        ASSERT_TRUE(model.store.save(stranger));
        model->reload();
        if (own) model->setCleanSlate(stranger, CleanSlateMode::quit);
        EXPECT_FALSE(model.known.isKnown(model.named(stranger.name)));
        model->beginCapture(model.named(stranger.name));
        model->commit(model.review());
        const Workspace& renewed = model.named(stranger.name);
        EXPECT_TRUE(model.known.isSavedHere(renewed));
        EXPECT_EQ(renewed.cleanSlate, own ? std::optional(CleanSlateMode::quit) : std::nullopt);
    }
    model->deleteAllData();
    EXPECT_FALSE(model.defaults.data(KnownWorkspaces::defaultsKey));
}

TEST(ModelRuns, SavingAndThenTestingTheRestorePassesNoMode) {
    Model model;
    model->beginCapture({}, true);
    model->commit(model.review());
    EXPECT_TRUE(model->restoreRunning());
    model.finishRestore();
    EXPECT_EQ(model->restoreRun()->title(), "Untitled is back");
    EXPECT_FALSE(model.desktop.world().application("org.editor")->hidden);
}

TEST(ModelRuns, CapturesAndRestoresExcludeEachOther) {
    Model model(slowDesk(3));
    const Workspace workspace = viewing(model);
    model->beginCapture();
    EXPECT_TRUE(model->capturing());
    model->beginCapture();
    model->restore(workspace, {});
    EXPECT_FALSE(model->restoreRun());
    model.review();
    EXPECT_FALSE(model->capturing());
    EXPECT_FALSE(model->canRelaunchForUpdate());
    model->restore(workspace, {});  // a review is open
    EXPECT_FALSE(model->restoreRun());
    model->dismissDraft();
    EXPECT_TRUE(model->canRelaunchForUpdate());
    model->restore(workspace, {});
    const int opened = model.windowsOpened;
    model->beginCapture();  // brings the main window forward instead
    EXPECT_EQ(model.windowsOpened, opened + 1);
    EXPECT_FALSE(model->capturing() || model->canRelaunchForUpdate());
    model->refreshCurrentSnapshot();
    EXPECT_FALSE(model->refreshingCurrentSnapshot());
    model.finishRestore();
    model->refreshCurrentSnapshot();
    EXPECT_TRUE(model->refreshingCurrentSnapshot() && model->busy() && model->canRelaunchForUpdate());
    model->beginCapture();  // captures may overlap
    model.review();
    EXPECT_FALSE(model->refreshingCurrentSnapshot());
    EXPECT_EQ(model->currentSnapshot()->applications, model->draft()->snapshot().applications);
}

TEST(ModelRuns, WhatIsAskedForBesideAReviewOrARestoreIsAnsweredAndDisturbsNeither) {
    Model model(slowDesk(3));
    const Workspace workspace = viewing(model), other = viewing(model);
    const std::function<void()> asks[] = {[&] { model->beginCapture(); }, [&] { model->beginCapture(other); },
                                          [&] { model->restore(other, {}); }};
    const auto expectRefused = [&](const std::function<void()>& ask, const char* why) {
        const int opened = model.windowsOpened;
        ask();
        EXPECT_EQ(model->toast(), why);
        EXPECT_EQ(model.windowsOpened, opened + 1);
        model.run(10s);
        EXPECT_FALSE(model->toast());
    };
    model->beginCapture(workspace);
    const CaptureDraft* const draft = &model.review();
    model->draft()->setName("Typed");
    model->draft()->includeApp("org.editor", false);
    for (const auto& ask : asks) {
        expectRefused(ask, "Save or cancel this review first.");
        ASSERT_EQ(model->draft(), draft);
        EXPECT_EQ(draft->name(), "Typed");
    }
    model->dismissDraft();
    for (const auto& ask : asks) {
        model->restore(workspace, {});
        model->restore(workspace, {});  // by a double click
        EXPECT_FALSE(model->toast());
        ask();
        EXPECT_EQ(model->toast(), "“Viewing” is being resumed. Wait for it, or stop it.");
        EXPECT_EQ(model->restoreRun()->workspace().id, workspace.id);
        model.finishRestore();
        model.run(10s);
    }
    EXPECT_FALSE(model->draft());
    model->beginCapture();
    model->dismissDraft();  // while it is taken
    model.run(1min);
    EXPECT_FALSE(model->draft() || model->busy());
}

TEST(ModelRuns, WhatIsAskedForDuringASnapshotHappensAfterIt) {
    for (const bool saving : {true, false}) {
        Model model(slowFinder());
        const Workspace workspace = viewing(model);
        model.change([](AppSettings& settings) {
            settings.enabledAdapters = {"finder"};
            settings.autoSnapshotMinutes = 5;
        });
        model.run(1s);
        ASSERT_TRUE(model->snapshotting());
        saving ? model->beginCapture(workspace) : model->restore(workspace, {});
        EXPECT_FALSE(model->capturing() || model->restoreRunning());
        if (saving) {
            EXPECT_EQ(model.review().updating(), workspace);
        } else {
            model.desktop.executor().runUntil([&] { return model->restoreRunning(); }, 1min);
            model.finishRestore();
            EXPECT_TRUE(model->restoreRun() && model->restoreRun()->clean());
        }
        EXPECT_EQ(model->sessions().size(), 1U) << "the snapshot is not lost for it";
    }
}

TEST(ModelRuns, PermissionIsWatchedOnceASecond) {
    Model model;
    model.setTrusted(false);
    model.run(1s);
    EXPECT_FALSE(model->accessibilityGranted());
    model->beginCapture();
    model->refreshCurrentSnapshot();
    EXPECT_FALSE(model->capturing() || model->refreshingCurrentSnapshot());
    EXPECT_EQ(model.windowsOpened, 1);
    model.setTrusted(true);
    model.run(999ms);
    EXPECT_FALSE(model->accessibilityGranted());
    model.run(1ms);
    EXPECT_TRUE(model->accessibilityGranted());
    model->requestAccessibility();
    EXPECT_TRUE(model->promptedForAccessibility() && model.shell.openedPages.empty());
    model->beginCapture(samples::named(Uuid::random(), "Work"));
    model.setTrusted(false);  // what is captured now is no desktop
    ASSERT_TRUE(model.desktop.executor().runUntil([&] { return !model->capturing(); }, 1min));
    EXPECT_FALSE(model->draft());
    EXPECT_TRUE(model->toast().value_or("").starts_with("Couldn't read your windows: "));
    model->requestAccessibility();
    EXPECT_EQ(model.shell.openedPages,
              std::vector<std::string>{
                  "x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"});
}

TEST(ModelRuns, SnapshotsFollowTheirSchedule) {
    Model model;
    model.run(2h);
    EXPECT_TRUE(model->sessions().empty());
    const auto snapshots = [&] { return model->sessions().size(); };
    const auto every = [&](std::int64_t minutes) {
        model.change([&](AppSettings& settings) { settings.autoSnapshotMinutes = minutes; });
    };
    auto moveAWindow = [&, step = 0.0]() mutable {
        const LiveWindow window = model.desktop.window("org.editor");
        ++step;
        Accessibility::set(model.desktop.access, window, {10 + step * 10, 40, 400, 300}, false);
    };
    every(10);
    model.run(1s);
    EXPECT_EQ(snapshots(), 1U);  // at once
    moveAWindow();
    model.run(10min - 2s);
    EXPECT_EQ(snapshots(), 1U);
    model.run(2s);
    EXPECT_EQ(snapshots(), 2U);
    moveAWindow();
    every(30);  // another interval only begins anew
    model.run(29min);
    EXPECT_EQ(snapshots(), 2U);
    model.change([](AppSettings& settings) { settings.excludedDomains = {"a.example"}; });
    model.run(1min + 1s);
    EXPECT_EQ(snapshots(), 3U);
    model.run(30min);
    EXPECT_EQ(snapshots(), 3U);  // nothing has changed since
    moveAWindow();
    every(0);
    model.run(2h);
    EXPECT_EQ(snapshots(), 3U);
}

/// A snapshot that takes seconds, because Finder is asked and slow; what happens meanwhile makes it stale.
TEST(ModelRuns, AStaleSnapshotIsNotSaved) {
    const struct {
        const char* name;
        std::function<void(Model&)> meanwhile;
        bool saved;
    } cases[] = {
        {"nothing", [](Model&) {}, true},
        {"another interval", [](Model& m) { m.change([](AppSettings& s) { s.autoSnapshotMinutes = 30; }); },
         false},
        {"an exclusion", [](Model& m) { m.change([](AppSettings& s) { s.excludedDomains = {"x"}; }); },
         false},
        {"back again",
         [](Model& m) {
             for (const std::int64_t minutes : {30, 5})
                 m.change([&](AppSettings& s) { s.autoSnapshotMinutes = minutes; });
         },
         false},
        {"permission lost", [](Model& m) { m.setTrusted(false); }, false},
        {"history deleted", [](Model& m) { m->deleteSessionHistory(); }, false},
    };
    for (const auto& c : cases) {
        Model model(slowFinder());
        model.change([](AppSettings& settings) {
            settings.enabledAdapters = {"finder"};
            settings.autoSnapshotMinutes = 5;
        });
        model.run(1s);
        ASSERT_TRUE(model->snapshotting()) << c.name;
        c.meanwhile(model);
        model.run(1min);
        EXPECT_FALSE(model->snapshotting()) << c.name;
        EXPECT_EQ(model->sessions().size(), c.saved ? 1U : 0U) << c.name;
        EXPECT_FALSE(model->autoSnapshotError()) << c.name;
    }
}

TEST(ModelRuns, GoingToSleepSavesTheSessionBeforeTheHoldIsReleased) {
    Model model;
    model.change([](AppSettings& settings) { settings.autoSnapshotMinutes = 60; });
    model.run(1s);
    model->deleteSessionHistory();
    for (const PowerEvent event : {PowerEvent::willSleep, PowerEvent::willPowerOff}) {
        const auto held = model.power.emit(event);
        ASSERT_TRUE(model.desktop.executor().runUntil([&] { return held.expired(); }, 5s));
        EXPECT_EQ(model->sessions().size(), 1U);
        EXPECT_FALSE(model->busy());
        model->deleteSessionHistory();
    }
    model.power.emit(PowerEvent::didWake);
    model.run(1s);
    EXPECT_TRUE(model->sessions().empty()) << "waking up is no reason to save";
    // With a review open, or snapshots off, nothing is saved and nothing is held.
    model->beginCapture();
    model.review();
    for (int i = 0; i < 2; ++i) {
        const auto held = model.power.emit(PowerEvent::willSleep);
        model.run(1ms);
        EXPECT_TRUE(held.expired());
        EXPECT_TRUE(model->sessions().empty());
        model->dismissDraft();
        model.change([](AppSettings& settings) { settings.autoSnapshotMinutes = 0; });
    }
}

TEST(ModelRuns, TroubleWithTheHistoryIsKeptUntilItIsOver) {
    Model model;
    model.disk.createFailure = model.disk.removeFailure = Error{ErrorKind::noSpace, "full", 28};
    model.change([](AppSettings& settings) { settings.autoSnapshotMinutes = 5; });
    model.run(1s);
    ASSERT_TRUE(model->autoSnapshotError());
    EXPECT_TRUE(model->autoSnapshotError()->starts_with("Couldn't save the last session: "));
    EXPECT_TRUE(model->sessions().empty());
    model->deleteSessionHistory();
    EXPECT_EQ(model->autoSnapshotError(), "Couldn't delete session history: full");
    model.disk.createFailure = model.disk.removeFailure = std::nullopt;
    model.run(5min);
    EXPECT_FALSE(model->autoSnapshotError());
    EXPECT_EQ(model->sessions().size(), 1U);
}

TEST(ModelRuns, SnapshotsWaitForTheIntroductionAndForThePermission) {
    Model model;
    model.change([](AppSettings& settings) {
        settings.onboarded = false;
        settings.autoSnapshotMinutes = 5;
    });
    model.run(6min);
    EXPECT_TRUE(model->sessions().empty());
    model.setTrusted(false);
    model.change([](AppSettings& settings) { settings.onboarded = true; });
    model.run(6min);
    EXPECT_TRUE(model->sessions().empty());
    model.setTrusted(true);
    model.run(5min);
    EXPECT_EQ(model->sessions().size(), 1U);
    model.start();  // the program again: interval and history are as they were, and nothing is saved at once
    EXPECT_EQ(model->sessions().size(), 1U);
    EXPECT_EQ(model->settings().autoSnapshotMinutes, 5);
}

}  // namespace
}  // namespace quillo
