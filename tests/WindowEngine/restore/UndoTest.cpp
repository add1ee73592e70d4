// Putting everything back: what is recorded, what is undone, and what is left alone.
#include <gtest/gtest.h>

#include <algorithm>

#include "WindowEngine/capture/UndoCapture.hpp"
#include "WindowEngine/records/UndoCoding.hpp"
#include "WindowEngine/restore/Undo.hpp"
#include "tests/WindowEngine/DesktopFixture.hpp"

namespace quillo::samples {
namespace {

using Texts = std::vector<std::string>;

constexpr Rect left{100, 100, 600, 400}, right{700, 300, 500, 500}, overTheEdge{-80, 60, 600, 400};

struct Undoable : TestDesktop {
    using TestDesktop::TestDesktop;

    RestoreReport restoreUndoably(const WorkspaceSnapshot& snapshot,
                                  CleanSlateMode mode = CleanSlateMode::keep,
                                  Capture::Options capturing = {}) {
        UndoRecord before =
            run(Capture::undoRecord(access, std::move(capturing), workspaceOf(snapshot), mode));
        return run(Restore::runUndoably(access, workspaceOf(snapshot), {.cleanSlate = mode}, {},
                                        std::move(before),
                                        [this](const UndoRecord& kept) { record = kept; }));
    }
    RestoreReport undo() { return run(Restore::undo(access, record, {}, {})); }
    const simulated::Window& window(std::string_view application, std::string_view title) {
        return *world().window(application, title);
    }

    UndoRecord record;
};

TEST(Undo, WindowsGoBackAlsoOverAnEdgeAndInTheirOrder) {
    for (const bool likeX11 : {false, true}) {
        SCOPED_TRACE(likeX11);
        Scene desk = scene({sceneApplication("org.a", {sceneWindow("One", left), sceneWindow("Two", right)}),
                            sceneApplication("org.b", {sceneWindow("Three", likeX11 ? left : overTheEdge)})});
        desk.likeX11 = likeX11;
        Undoable desktop(desk);
        const WorkspaceSnapshot saved = desktop.capture();
        // Since then everything was changed.
        const WindowNumber three = desktop.window("org.b", "Three").number;
        desktop.world().requestMinimized(desktop.window("org.a", "Two").number, true);
        desktop.world().move(*desktop.world().window("org.a", "One"), {40, 50, 300, 200});
        desktop.world().requestSpace(three, desktop.world().displays().front().desktops[1]);
        if (likeX11) desktop.world().requestFullscreen(three, true);
        desktop.executor().runFor(5s);
        const std::string before = desktop.simulated->sceneJson();
        EXPECT_TRUE(desktop.restoreUndoably(saved).clean());
        ASSERT_NE(desktop.simulated->sceneJson(), before);
        desktop.world().raise(three);
        const RestoreReport report = desktop.undo();
        EXPECT_TRUE(report.clean()) << texts(report).front();
        EXPECT_EQ(desktop.simulated->sceneJson(), before);
    }
}

TEST(Undo, WhatACleanSlateDidIsUndone) {
    for (const CleanSlateMode mode : {CleanSlateMode::hide, CleanSlateMode::quit}) {
        SCOPED_TRACE(storedValue(mode));
        SceneApplication hiddenBefore = sceneApplication("org.hidden", {sceneWindow("Hidden", left)});
        hiddenBefore.hidden = true;
        SceneApplication unlisted = sceneApplication("org.unlisted", {sceneWindow("Unlisted", right)});
        unlisted.installed = false;
        Undoable desktop(scene({sceneApplication("org.other", {sceneWindow("Other", right)}),
                                sceneApplication("org.a", {sceneWindow("One", left)}), hiddenBefore, unlisted,
                                sceneApplication("org.kept-out", {sceneWindow("Secret", right)})}));
        WorkspaceSnapshot saved = desktop.capture();
        std::erase_if(saved.applications, [](const auto& one) { return one.bundleIdentifier != "org.a"; });
        desktop.restoreUndoably(saved, mode, {.excludedBundleIdentifiers = {"org.kept-out"}});
        const bool quits = mode == CleanSlateMode::quit;
        ASSERT_EQ(desktop.world().application("org.other")->running, !quits);
        EXPECT_EQ(Restore::planUndo(desktop.access, desktop.record).relaunchedCount(), quits ? 2 : 0);
        const RestoreReport report = desktop.undo();
        EXPECT_TRUE(desktop.world().application("org.other")->running);
        EXPECT_EQ(desktop.world().windows().front().state.title, "Other") << "above what was there already";
        EXPECT_FALSE(desktop.world().application("org.other")->hidden);
        EXPECT_EQ(desktop.window("org.other", "Other").state.frame, right);
        // What is never saved is known by nothing but its windows: it can be shown, and not launched.
        EXPECT_EQ(desktop.world().application("org.kept-out")->running, !quits);
        EXPECT_FALSE(desktop.world().application("org.kept-out")->hidden);
        if (!quits) {
            EXPECT_TRUE(desktop.world().application("org.hidden")->hidden);
        }
        const Texts lines = texts(report);
        for (const char* stays : {"1 app that is never saved was asked to quit, and stays so",
                                  "org.unlisted was asked to quit, and stays so: not installed"})
            EXPECT_EQ(std::ranges::count(lines, std::string("app.quillo.Quillo: note ") + stays),
                      quits ? 1 : 0);
        EXPECT_EQ(UndoCoding::encode(desktop.record).value().find("kept-out"), std::string::npos);
        EXPECT_EQ(UndoCoding::encode(desktop.record).value().find("Secret"), std::string::npos);
    }
}

TEST(Undo, WhatItLaunchedStaysAndIsOfferedForClosing) {
    Undoable desktop(scene({sceneApplication("org.a", {sceneWindow("One", left)}),
                            sceneApplication("org.b", {sceneWindow("Two", right)})}));
    const WorkspaceSnapshot saved = desktop.capture();
    desktop.world().end(*desktop.world().application("org.b"));
    desktop.restoreUndoably(saved);
    desktop.undo();
    ASSERT_TRUE(desktop.world().application("org.b")->running) << "closed unasked";
    const Restore::UndoPlan plan = Restore::planUndo(desktop.access, desktop.record);
    EXPECT_EQ(plan.limits(), Texts{"org.b was launched, and stays open until you quit it"});
    desktop.world().end(*desktop.world().application("org.a"));
    EXPECT_TRUE(Restore::isOfThisSession(desktop.plain.applications, desktop.record)) << "B still runs";
    Restore::closeLaunched(desktop.plain.applications, plan.launched);
    EXPECT_FALSE(desktop.world().application("org.b")->running);
    desktop.world().start(*desktop.world().application("org.b"));  // by a person, this time
    desktop.executor().runFor(2s);
    EXPECT_TRUE(Restore::planUndo(desktop.access, desktop.record).launched.empty());
}

/// A free number may be given away, and twins are not told apart by where they stand.
TEST(Undo, OnlyWhatIsSurelyTheSameIsTouched) {
    struct Case {
        const char* what;
        Texts titles;  // of the windows of the application, started again
        bool isBack;
    };
    const Case cases[] = {{"the only one of its title", {"One", "Two"}, true},
                          {"twins", {"One", "One"}, false},
                          {"another title", {"Else", "Two"}, false}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        Undoable desktop(
            scene({sceneApplication("org.a", {sceneWindow("One", left), sceneWindow("Two", right)})}));
        const WorkspaceSnapshot saved = desktop.capture();
        desktop.restoreUndoably(saved);
        simulated::Application& application = *desktop.world().application("org.a");
        desktop.world().end(application);
        application.scene.windows = {sceneWindow(c.titles[0], {10, 40, 400, 300}),
                                     sceneWindow(c.titles[1], {20, 50, 410, 310})};
        desktop.world().start(application);
        desktop.executor().runFor(2s);
        desktop.record.windows.front().number = desktop.world().windows().front().number;
        EXPECT_FALSE(Restore::isOfThisSession(desktop.plain.applications, desktop.record));
        desktop.undo();
        const Rect first = desktop.world().windowsOf("org.a").front()->state.frame;
        EXPECT_EQ(first, c.isBack ? left : (Rect{10, 40, 400, 300}));
    }
}

TEST(Undo, ARecordComesBackFromItsFileAndADamagedOneNamesItsField) {
    Undoable desktop(scene({sceneApplication("org.a", {sceneWindow("One", left)})}));
    desktop.restoreUndoably(desktop.capture());
    desktop.record.launched = {{"org.b", "B", 7}};
    const std::string bytes = UndoCoding::encode(desktop.record).value();
    UndoRecord read = UndoCoding::decode(bytes).value();
    // Dates are kept by the second.
    read.before.createdAt = desktop.record.before.createdAt;
    read.before.updatedAt = desktop.record.before.updatedAt;
    read.before.snapshot.capturedAt = desktop.record.before.snapshot.capturedAt;
    read.applications.front().launchedAt = desktop.record.applications.front().launchedAt;
    EXPECT_EQ(read, desktop.record);
    EXPECT_EQ(UndoCoding::decode("{}").error().text, "this is no record of a desktop before a restore");
    std::string damaged = bytes;
    damaged.replace(damaged.find("\"launched\""), 10, "\"launches\"");
    EXPECT_EQ(UndoCoding::decode(damaged).error().text, "run.launched: missing");
}

}  // namespace
}  // namespace quillo::samples
