#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "WindowEngine/desktop/Log.hpp"
#include "WindowEngine/restore/DisplayMapper.hpp"
#include "platform/simulated/SimulatedServices.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo::samples {
namespace {

constexpr Rect home{100, 100, 600, 400}, away{500, 300, 300, 200}, onSide{1500, 100, 600, 400};

using Texts = std::vector<std::string>;

/// What `desktop` holds, with every window scattered afterwards.
WorkspaceSnapshot saveAndScatter(TestDesktop& desktop) {
    WorkspaceSnapshot snapshot = desktop.capture();
    for (const auto& application : snapshot.applications) {
        for (simulated::Window* window : desktop.world().windowsOf(application.bundleIdentifier))
            desktop.world().move(*window, away);
    }
    return snapshot;
}

Texts logLines(TestDesktop& desktop, std::string_view containing) {
    Texts found;
    for (const std::string& line : desktop.simulated->logLines()) {
        if (line.contains(containing)) found.push_back(line);
    }
    return found;
}

TEST(Log, NamesAnApplicationOnlyByWhatIsAnIdentifier) {
    simulated::MemoryLog log;
    const std::string longest(255, 'x');
    for (const std::string& one :
         {std::string("org.a_B-9"), longest, longest + "x", std::string("https://a.example/?q"),
          std::string("a b"), std::string("a\n"), std::string("caf\xc3\xa9"), std::string()})
        Log::requestedWindow(log, one);
    const std::string sentence = "restore info: requested a new window for windowless ";
    Texts expected(8, sentence + "(not an identifier)");
    expected[0] = sentence + "org.a_B-9";
    expected[1] = sentence + longest;
    EXPECT_EQ(log.lines, expected);
}

TEST(Restore, WithoutPermissionThereIsOneItemAndNothingElse) {
    TestDesktop desktop(scene({notRunning(sceneApplication("org.a", {sceneWindow("1", home)}))}));
    desktop.world().setTrusted(false);
    WorkspaceSnapshot snapshot;
    snapshot.applications = {{"org.a", "A", {}, {window(home, "1")}, {}}};
    const RestoreReport report = desktop.restore(snapshot);
    EXPECT_EQ(texts(report), Texts{"app.quillo.Quillo: failed Accessibility permission not granted"});
    EXPECT_EQ(report.items[0].app, "Quillo");
    desktop.executor().runFor(10s);
    EXPECT_FALSE(desktop.world().application("org.a")->running);
    EXPECT_EQ(desktop.simulated->logLines(),
              (Texts{"restore info: 1 of app.quillo.Quillo failed: Accessibility permission not granted",
                     "restore info: restore finished: 1 items in 0.000000s"}));
}

TEST(Restore, StartsApplicationsOrSaysWhyNot) {
    enum State : unsigned { running = 1, installed = 2, windows = 4, listed = 8, ready = 15 };
    struct Case {
        const char* what;
        unsigned state;
        std::optional<FaultKind> fault;
        Texts items;
        const char* log;
    };
    using enum FaultKind;
    const char* requested = "requested a new window for windowless org.a";
    const std::string restored = "org.a/1: restored", launched = "org.a: launched";
    const std::string notLaunched =
        "org.a: failed couldn't launch: the system refused to open the application";
    const std::string notReopened =
        "org.a: failed couldn't reopen a window: the application did not open a window";
    const std::string none =
        "org.a/1: skipped no accessible windows appeared; windows in other Spaces may be unavailable";
    const Case cases[] = {
        {"running", ready, {}, {restored}, "org.a ready at 0.000000s"},
        {"out of sight", ready & ~listed, {}, {restored}, "org.a ready at 0.000000s"},
        {"not running", ready & ~running, {}, {launched, restored}, "ready at 0.550000s"},
        {"not installed", windows | listed, {}, {"org.a: skipped not installed"}, "1 items"},
        {"launch refused", ready & ~running, launchRefused, {notLaunched}, "1 items"},
        {"windowless", ready & ~windows, {}, {restored}, requested},
        {"no window to be had", ready & ~windows, requestWindowRefused, {notReopened, none}, requested},
        {"windows too late", ready & ~running, lateWindows, {launched, none}, "2 items"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SceneApplication application = sceneApplication("org.a");
        if (c.state & windows) application.windows.push_back(sceneWindow("1", away));
        for (SceneWindow& window : application.windows) window.listed = c.state & listed;
        application.running = c.state & running;
        application.installed = c.state & installed;
        TestDesktop desktop(scene({application}));
        if (c.fault) desktop.world().add(fault(*c.fault, "org.a", 0, 60));
        WorkspaceSnapshot snapshot;
        snapshot.displays = Displays::current(desktop.plain.screens);
        snapshot.applications = {{"org.a", "A", {}, {savedWindow(desktop, home, "1")}, {}}};
        EXPECT_EQ(texts(desktop.restore(snapshot)), c.items);
        EXPECT_EQ(logLines(desktop, c.log).size(), 1u)
            << testing::PrintToString(desktop.simulated->logLines());
    }
}

TEST(Restore, ASavedLocationCountsOnlyWhileThatApplicationStandsThere) {
    const auto installed = sceneApplication("org.a", {sceneWindow("1", home)});
    TestDesktop desktop(scene({notRunning(installed), notRunning(sceneApplication("org.other"))}));
    WorkspaceSnapshot snapshot;
    const auto other = desktop.plain.applications.location("org.other");
    snapshot.applications = {{"org.a", "A", other, {window(home, "1")}, {}}};
    desktop.restore(snapshot);
    EXPECT_TRUE(desktop.world().application("org.a")->running);
    EXPECT_FALSE(desktop.world().application("org.other")->running);
}

TEST(Restore, WaitsForWindowsUntilNoMoreOpen) {
    struct Case {
        const char* what;
        std::vector<double> opensAfter;  // seconds after the launch
        double launchTimeout, settleDelay;
        std::size_t restored;
        double seconds;
        bool hangs = false;  // from 0.2 seconds after its launch, for 2 seconds
    };
    const Case cases[] = {
        {"at once", {0}, 15, 1, 1, 1.6},
        {"one after the other", {0, 0.8, 1.6, 2.4}, 15, 1, 4, 4.1},
        {"pausing longer than the delay", {0, 3}, 15, 1, 1, 1.6},
        {"without a delay", {0, 0.8}, 15, 0, 1, 0.8},
        {"opening for ever", {0, 0.9, 1.8, 2.7, 3.6, 4.5, 5.4}, 3, 1, 4, 3.6},
        {"never", {9}, 2, 1, 0, 2.6},
        {"hanging while it opens them", {0, 1.5}, 15, 1, 2, 3.9, true},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        SceneApplication application = notRunning(sceneApplication("org.a"));
        for (const double after : c.opensAfter) {
            application.windows.push_back(sceneWindow(std::to_string(after), away));
            application.windows.back().opensAfter = after;
        }
        TestDesktop desktop(scene({application}));
        WorkspaceSnapshot snapshot;
        snapshot.displays = Displays::current(desktop.plain.screens);
        snapshot.applications = {{"org.a", "A", {}, {}, {}}};
        for (const double after : c.opensAfter)
            snapshot.applications[0].windows.push_back(savedWindow(desktop, home, std::to_string(after)));
        if (c.hangs) desktop.world().add(fault(FaultKind::applicationHangs, "org.a", 0.75, 2));
        const RestoreReport report =
            desktop.restore(snapshot, {.launchTimeout = c.launchTimeout, .settleDelay = c.settleDelay});
        EXPECT_EQ(report.totals().restored, static_cast<std::int64_t>(c.restored));
        const double placing = 0.16 * static_cast<double>(c.restored) + (c.restored > 0 ? 1 : 0);
        EXPECT_NEAR(report.duration, c.seconds + placing, 0.3);
    }
}

TEST(Restore, ASlowApplicationHoldsUpNoOther) {
    for (const FaultKind kind : {FaultKind::slowLaunch, FaultKind::applicationHangs}) {
        TestDesktop desktop(scene({sceneApplication("org.slow", {sceneWindow("s", home)}),
                                   sceneApplication("org.fast", {sceneWindow("f", home)})}));
        WorkspaceSnapshot snapshot = saveAndScatter(desktop);
        std::ranges::sort(snapshot.applications, std::greater(), &ApplicationSnapshot::name);  // slow first
        desktop.world().end(*desktop.world().application("org.slow"));
        if (kind == FaultKind::applicationHangs)
            desktop.world().start(*desktop.world().application("org.slow"));
        desktop.executor().runFor(1s);
        desktop.world().add(fault(kind, "org.slow", 0, 10));
        const double started = desktop.seconds();
        double fastDone = 0;
        const RestoreReport report = desktop.restore(snapshot, {}, [&](const RestoreReport::Item& item) {
            if (item.title == "f") fastDone = desktop.seconds() - started;
        });
        EXPECT_LT(fastDone, 4) << "a second to settle, and at most each look at the one that hangs";
        EXPECT_EQ(report.totals().restored, 2) << "the slow one came too";
        EXPECT_LT(report.duration, 15);
        EXPECT_TRUE(logLines(desktop, "requested").empty()) << "one that hangs may well have windows";
    }
}

/// Between two timeouts whoever shares the thread is served.
TEST(Restore, HangsHoldTheThreadUpForOneTimeoutAtATimeAsTheyDoInACapture) {
    struct Case {
        const char* what;
        int applications;
        bool restores, onWrite = false;
        double after = 0;  // seconds
    };
    for (const Case& c :
         {Case{"one in a capture", 1, false}, Case{"several in a capture", 4, false},
          Case{"all in a capture", 5, false}, Case{"one in a restore", 1, true},
          Case{"several in a restore", 4, true}, Case{"several later in a restore", 4, true, false, 0.2},
          Case{"one at the first write", 1, true, true}, Case{"all at the first write", 5, true, true}}) {
        SCOPED_TRACE(c.what);
        std::vector<SceneApplication> applications;
        for (const char* name : {"org.0", "org.1", "org.2", "org.3", "org.4"})
            applications.push_back(
                sceneApplication(name, {sceneWindow("1", home), sceneWindow("2", onSide)}));
        TestDesktop desktop(scene(applications));
        const WorkspaceSnapshot snapshot = saveAndScatter(desktop);
        EXPECT_EQ(desktop.executor().longestTurn(), 0s) << "nobody hangs yet";
        for (int i = 0; i < c.applications; ++i) {
            Fault hang = fault(FaultKind::applicationHangs, "org." + std::to_string(i), c.after, 30);
            hang.onWrite = c.onWrite;
            desktop.world().add(hang);
        }
        if (c.restores)
            EXPECT_GE(desktop.restore(snapshot).items.size(), 5u);
        else
            EXPECT_EQ(desktop.capture().applications.size(), 5u) << "those that hang, too";
        EXPECT_EQ(desktop.executor().longestTurn(), 1s);
    }
}

/// Five that are silent while twenty launch cost nobody a second more than the short time each is given.
TEST(Restore, TheSilentCostThemselvesAndOneThatAnswersInTheEndIsPlaced) {
    const auto launching = [](int silent, double seconds) {
        std::vector<SceneApplication> applications;
        for (int i = 0; i < 20; ++i)
            applications.push_back(
                notRunning(sceneApplication("org." + std::to_string(i), {sceneWindow("1", home)})));
        TestDesktop desktop(scene(applications));
        WorkspaceSnapshot snapshot;
        snapshot.displays = Displays::current(desktop.plain.screens);
        for (const SceneApplication& one : applications)
            snapshot.applications.push_back(
                {one.identifier, one.name, {}, {savedWindow(desktop, away, "1")}, {}});
        for (int i = 0; i < silent; ++i)
            desktop.world().add(fault(FaultKind::applicationHangs, "org." + std::to_string(i), 0.7, seconds));
        std::map<std::string, Duration> placed;
        const TimePoint began = desktop.executor().now();
        const RestoreReport report = desktop.restore(snapshot, {}, [&](const RestoreReport::Item& item) {
            if (item.title) placed[item.bundleIdentifier] = desktop.executor().now() - began;
        });
        Duration healthy{};
        for (const auto& [identifier, when] : placed)
            if (std::stoi(identifier.substr(4)) >= silent) healthy = std::max(healthy, when);
        return std::pair(healthy, report.totals().restored);
    };
    const auto [alone, all] = launching(0, 0);
    EXPECT_EQ(all, 20);
    for (const auto& [silent, seconds, restored] : {std::tuple{3, 4.0, 20}, {5, 60.0, 15}, {1, 14.6, 20}}) {
        const auto [healthy, back] = launching(silent, seconds);
        EXPECT_EQ(back, restored) << silent;
        EXPECT_LT(healthy, alone + silent * 350ms) << silent;
    }
}

TEST(Restore, LooksAgainBeforeItPlacesAndWaitsForNothingThatIsThere) {
    struct Case {
        const char* what;
        void (*arrange)(TestDesktop& desktop, WorkspaceSnapshot& snapshot);
        double most;  // seconds
        const char* item;
    };
    const Case cases[] = {
        {"in place", [](auto&, auto&) {}, 0.01, "org.a/1: restored"},
        {"hidden", [](auto& desktop, auto&) { desktop.world().application("org.a")->hidden = true; }, 0.01,
         "org.a/1: restored"},
        {"unplugged while it is launched",
         [](auto& desktop, auto& snapshot) {
             snapshot.applications[0].windows[0] = savedWindow(desktop, onSide, "1");
             desktop.world().end(*desktop.world().application("org.a"));
             Fault unplugged = fault(FaultKind::displayUnplugged, "", 0.2);
             unplugged.value = "side";
             desktop.world().add(unplugged);
         },
         3, "org.a/1: adjusted"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", home)})}));
        WorkspaceSnapshot snapshot = desktop.capture();
        c.arrange(desktop, snapshot);
        const RestoreReport report = desktop.restore(snapshot);
        EXPECT_EQ(texts(report).back(), c.item);
        EXPECT_LE(report.duration, c.most);
        EXPECT_FALSE(desktop.world().application("org.a")->hidden);
        const Rect frame = desktop.world().window("org.a", "1")->state.frame;
        EXPECT_TRUE(Displays::display(frame, Displays::current(desktop.plain.screens)));
    }
}

TEST(Restore, AWindowWhoseDisplayGoesWhileOthersAreWaitedForIsPlacedAgain) {
    TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", home)}),
                               notRunning(sceneApplication("org.b", {sceneWindow("2", home)}))}));
    WorkspaceSnapshot snapshot = desktop.capture();
    snapshot.applications[0].windows[0] = savedWindow(desktop, onSide, "1");
    snapshot.applications.push_back({"org.b", "org.b", {}, {savedWindow(desktop, home, "2")}, {}});
    Fault unplugged = fault(FaultKind::displayUnplugged, "", 1);
    unplugged.value = "side";
    desktop.world().add(unplugged);
    const RestoreReport report = desktop.restore(snapshot);
    EXPECT_EQ(texts(report), (std::vector<std::string>{
                                 "org.a/1: restored", "org.b: launched", "org.b/2: restored",
                                 "app.quillo.Quillo: note Displays changed; windows placed again: 1"}));
    const auto plan = DisplayMapper::place(snapshot.applications[0].windows[0], snapshot.displays,
                                           Displays::current(desktop.plain.screens));
    EXPECT_EQ(desktop.world().window("org.a", "1")->state.frame, plan.value().frame);
}

TEST(Restore, WindowsOfOneTitleKeepTheirPlacesOnASmallerDisplay) {
    TestDesktop desktop(scene({sceneApplication(
        "org.a", {sceneWindow("1", {10, 30, 1300, 850}), sceneWindow("1", {10, 30, 1000, 700})})}));
    const WorkspaceSnapshot snapshot = desktop.capture();
    desktop.world().unplug("main");
    const auto frames = [&] {
        desktop.restore(snapshot);
        std::map<WindowNumber, Rect> found;
        for (const simulated::Window* window : desktop.world().windowsOf("org.a"))
            found[window->number] = window->state.frame;
        return found;
    };
    const auto first = frames();
    for (int i = 0; i < 3; ++i) EXPECT_EQ(frames(), first);
}

TEST(Restore, WhatHungBeforeIsAskedAgain) {
    TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", home)})}));
    const WorkspaceSnapshot snapshot = saveAndScatter(desktop);
    desktop.world().add(fault(FaultKind::applicationHangs, "", 0, 1));
    EXPECT_TRUE(desktop.windows("org.a").empty());
    const RestoreReport report = desktop.restore(snapshot, {.launchTimeout = 1, .settleDelay = 0});
    EXPECT_EQ(texts(report), Texts{"org.a/1: restored"});
}

TEST(Restore, TwentyApplicationsThatWaitAreCountedTogether) {
    const auto reads = [](int count) {
        std::vector<SceneApplication> applications;
        for (int i = 0; i < count; ++i) {
            applications.push_back(sceneApplication("org." + std::to_string(i)));
            for (int j = 0; j < 5; ++j)
                applications.back().windows.push_back(sceneWindow(std::to_string(j), home));
        }
        TestDesktop desktop(scene(applications));
        const WorkspaceSnapshot snapshot = desktop.capture();
        for (auto& application : desktop.world().applications()) desktop.world().end(application);
        for (auto& application : desktop.world().applications()) {
            for (SceneWindow& window : application.scene.windows) window.opensAfter = 10;
        }
        desktop.meddler.reads = 0;
        int readsBeforePlacing = 0;
        const RestoreReport report = desktop.restore(snapshot, {}, [&](const RestoreReport::Item& item) {
            if (item.title && readsBeforePlacing == 0) readsBeforePlacing = desktop.meddler.reads;
        });
        EXPECT_EQ(report.totals().restored, count * 5);
        return readsBeforePlacing;
    };
    const int one = reads(1);
    EXPECT_GT(one, 60) << "it looks each 0.15 seconds";
    EXPECT_LT(reads(20), one + 20 * 20) << "only the placing and the looks after it are each one's own";
}

TEST(Restore, AnUnexpectedErrorEndsOneApplicationOnly) {
    TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", home)}),
                               sceneApplication("org.b", {sceneWindow("2", home)})}));
    const WorkspaceSnapshot snapshot = saveAndScatter(desktop);
    desktop.meddler.frameWritten = [first = true](Rect frame) mutable {
        if (std::exchange(first, false)) throw std::runtime_error("broken");
        return frame;
    };
    const RestoreReport report = desktop.restore(snapshot);
    EXPECT_EQ(texts(report),
              (Texts{"org.b/2: restored", "app.quillo.Quillo: failed Restore stopped unexpectedly: broken"}));
    EXPECT_FALSE(report.cancelled);
    EXPECT_EQ(desktop.meddler.movable, 0);
}

TEST(Restore, AListenerThatThrowsStillGetsAReport) {
    TestDesktop desktop(scene({sceneApplication("org.a", {sceneWindow("1", home)})}));
    const WorkspaceSnapshot snapshot = saveAndScatter(desktop);
    int told = 0;
    const RestoreReport report = desktop.restore(snapshot, {}, [&](const RestoreReport::Item&) {
        ++told;
        throw std::runtime_error("deaf");
    });
    EXPECT_EQ(texts(report),
              (Texts{"org.a/1: restored", "app.quillo.Quillo: failed Restore stopped unexpectedly: deaf"}));
    EXPECT_EQ(told, 1);
}

// -- one journey through every kind of step, interrupted everywhere
// ------------------------------------------

std::unique_ptr<TestDesktop> journeyDesktop() {
    SceneApplication running = sceneApplication(
        "org.a", {sceneWindow("plain", home), sceneWindow("minimized", home), sceneWindow("full", onSide)});
    running.windows[1].minimized = true;
    running.windows[2].fullscreen = true;
    SceneApplication ended = sceneApplication("org.b", {sceneWindow("late", onSide)});
    ended.windows[0].opensAfter = 0.4;
    return std::make_unique<TestDesktop>(scene({running, ended}));
}

WorkspaceSnapshot saveAndDisturb(TestDesktop& desktop) {
    desktop.executor().runFor(1s);
    WorkspaceSnapshot snapshot = saveAndScatter(desktop);
    simulated::World& world = desktop.world();
    world.window("org.a", "plain")->state.minimized = true;
    world.window("org.a", "minimized")->state.minimized = false;
    world.requestFullscreen(world.window("org.a", "full")->number, false);
    world.end(*world.application("org.b"));
    desktop.executor().runFor(1s);
    return snapshot;
}

TEST(Restore, CancelledAnywhereItKeepsWhatItSaidAndStrandsNothing) {
    const auto whole = journeyDesktop();
    const WorkspaceSnapshot snapshot = saveAndDisturb(*whole);
    const Texts full = texts(whole->restore(snapshot));
    ASSERT_EQ(full.size(), 5u) << testing::PrintToString(full);
    const Workspace workspace = TestDesktop::workspaceOf(snapshot);

    bool ended = false;
    int cancellations = 0;
    for (int turns = 1; !ended; ++turns) {
        SCOPED_TRACE(turns);
        const auto desktop = journeyDesktop();
        (void)saveAndDisturb(*desktop);
        Texts heard;
        Job<RestoreReport> job(desktop->executor(),
                               Restore::run(desktop->access, workspace, {},
                                            [&](const auto& item) { heard.push_back(text(item)); }));
        int turn = 0;
        desktop->executor().runUntil([&] { return job.done() || turn++ == turns; }, 1h);
        ended = job.done();
        job.cancel();
        desktop->executor().runUntilIdle();
        ASSERT_TRUE(job.done());
        const RestoreReport report = job.result();
        EXPECT_EQ(report.cancelled, !ended);
        EXPECT_EQ(texts(report), heard);
        EXPECT_EQ(heard, Texts(full.begin(), full.begin() + static_cast<std::ptrdiff_t>(heard.size())));
        EXPECT_EQ(desktop->meddler.movable, 0) << "a window was left where it was only to be moved";
        EXPECT_EQ(logLines(*desktop, "restore finished: " + std::to_string(heard.size())).size(), 1u);
        if (report.cancelled) ++cancellations;
    }
    EXPECT_GT(cancellations, 50);
}

TEST(Restore, CancelledItTellsOfDesktopsItMadeAndDocumentsItOpened) {
    std::int64_t most = 0;
    for (int tenths = 0; tenths < 80; ++tenths) {
        SCOPED_TRACE(tenths);
        SceneApplication editor = sceneApplication("org.editor");
        for (const char* name : {"a", "b", "c"}) {
            editor.windows.push_back(sceneWindow(name, {100, 100, 600, 400}));
            editor.windows.back().document = std::string("file:///home/ada/") + name;
        }
        TestDesktop desktop(scene({editor}));
        Workspace workspace;
        workspace.snapshot = desktop.capture();
        for (std::int64_t i = 1; i < 4; ++i) workspace.snapshot.desktops->push_back({"main", i, {}});
        const std::size_t before = desktop.world().display("main")->desktops.size();
        while (!desktop.world().windowsOf("org.editor").empty())
            desktop.world().close(desktop.world().windowsOf("org.editor").front()->number);

        Job<RestoreReport> job(desktop.executor(), Restore::run(desktop.access, workspace, {}, {}));
        desktop.executor().runFor(tenths * 100ms);
        job.cancel();
        desktop.executor().runFor(2s);  // for what was asked for to come
        const RestoreReport::Totals told = job.result().totals();
        const auto made =
            static_cast<std::int64_t>(desktop.world().display("main")->desktops.size() - before);
        const auto opened = static_cast<std::int64_t>(desktop.world().windowsOf("org.editor").size());
        // Cut off in the middle of asking for one, nobody knows.
        EXPECT_LE(told.createdDesktops, made);
        EXPECT_GE(told.createdDesktops, made - 1);
        EXPECT_LE(told.opened, opened);
        EXPECT_GE(told.opened, opened - 1);
        most = std::max({most, made, opened});
    }
    EXPECT_EQ(most, 3);
}

TEST(Restore, WhateverGoesAtAnyMomentEachWindowHasItsLine) {
    for (const FaultKind kind : {FaultKind::windowVanishes, FaultKind::applicationCrashes,
                                 FaultKind::applicationHangs, FaultKind::displayUnplugged}) {
        for (int step = 0; step < 80; ++step) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(kind) << " in step " << step);
            const auto desktop = journeyDesktop();
            const WorkspaceSnapshot snapshot = saveAndDisturb(*desktop);
            Fault trouble = fault(kind, kind == FaultKind::displayUnplugged ? "" : "org.a",
                                  desktop->seconds() + 0.07 * step);
            trouble.value = "side";
            desktop->world().add(trouble);
            std::map<std::string, int> lines;
            for (const RestoreReport::Item& item : desktop->restore(snapshot).items) {
                if (item.savedIndex) ++lines[item.title.value()];
            }
            EXPECT_EQ(lines,
                      (std::map<std::string, int>{{"plain", 1}, {"minimized", 1}, {"full", 1}, {"late", 1}}));
            EXPECT_EQ(desktop->meddler.movable, 0);
            EXPECT_TRUE(desktop->executor().idle());
        }
    }
}

}  // namespace
}  // namespace quillo::samples
