// Putting everything back in the application: for how long, by which record, and what is offered afterwards.
#include "settings/UndoNote.hpp"
#include "tests/app/ModelFixture.hpp"

namespace quillo::samples {
namespace {

constexpr Rect saved{10, 40, 400, 300}, moved{600, 200, 300, 300};

/// The desk was saved as Work, changed, and Work resumed.
struct Resumed : Model {
    Resumed() {
        save("Work");
        Workspace work = named("Work");
        work.snapshot.applications.push_back({"org.viewer", "org.viewer", {}, {}, {}});
        keep(work);
        desktop.world().move(notes(), moved);
        resume();
    }
    void resume() {
        (*this)->restore(named("Work"), std::nullopt);
        finishRestore();
    }
    simulated::Window& notes() { return *desktop.world().window("org.editor", "Notes"); }
    void putBack() {
        (*this)->putBack();
        finishRestore();
    }
};

TEST(PutBack, IsOfferedOnceForTheLatestRestoreAlsoOfAnotherStart) {
    Resumed model;
    EXPECT_EQ(model.notes().state.frame, saved);
    ASSERT_TRUE(model->undoRecord());
    EXPECT_TRUE(model->putsBack(model->restoreRun()));
    model.start();
    ASSERT_TRUE(model->undoRecord()) << "what runs still runs";
    EXPECT_EQ(model->putBackLimits(),
              std::vector<std::string>{"org.viewer was launched, and stays open until you quit it"});
    model.putBack();
    EXPECT_EQ(model.notes().state.frame, moved);
    EXPECT_EQ(model->restoreRun()->title(), "Everything is back as it was");
    EXPECT_FALSE(model->undoRecord());
    EXPECT_FALSE(model->hasReport(Uuid{}));
    ASSERT_EQ(model->launchedBefore().size(), 1U);
    ASSERT_TRUE(model.desktop.world().application("org.viewer")->running) << "closed unasked";
    model->closeLaunched();
    EXPECT_FALSE(model.desktop.world().application("org.viewer")->running);
    model->putBack();
    EXPECT_EQ(model->toast(), "Nothing is left to be put back");
}

TEST(PutBack, IsNotOfferedWhereAnotherProgramHasResumedTheSameSince) {
    Resumed model;
    UndoRecord later = *model->undoRecord();
    later.before.createdAt += 1min;
    ASSERT_TRUE(keepUndo(UndoFile(model.posix, model.directory / "undo"), model.known, later));
    model.disk.tellWatchers();
    model.run(1s);
    EXPECT_TRUE(model->undoRecord()) << "it can be put back as well, from the tray";
    EXPECT_FALSE(model->putsBack(model->restoreRun()));
}

TEST(PutBack, GoesByTheFileUnlessItCouldNotBeWritten) {
    Resumed model;
    // quilloctl has put everything back meanwhile.
    EXPECT_TRUE(UndoFile(model.posix, model.directory / "undo").remove());
    model->putBack();
    EXPECT_EQ(model->toast(), "Nothing is left to be put back");
    EXPECT_EQ(model.notes().state.frame, saved);

    model.desktop.world().move(model.notes(), moved);
    model.disk.createFailure = Error{ErrorKind::noSpace, "full"};
    model.resume();
    model.disk.createFailure.reset();
    model.putBack();
    EXPECT_EQ(model.notes().state.frame, moved);

    model.disk.createFailure = Error{ErrorKind::noSpace, "full"};
    model->restore(model.named("Work"), {});
    model.run(1s);
    model->deleteAllData();
    model.finishRestore();
    EXPECT_FALSE(model->undoRecord()) << "neither kept in memory nor by what was under way";
}

TEST(PutBack, WhatWasStoppedOrFailedCanBePutBackOnceMore) {
    Resumed model;
    model->putBack();
    model->closeRestorePanel();
    model.finishRestore();
    EXPECT_TRUE(model->restoreRun()->report()->cancelled);
    ASSERT_TRUE(model->undoRecord());
    Fault refused = fault(FaultKind::moveRefused, "org.editor", model.seconds());
    model.desktop.world().add(refused);
    model.putBack();
    EXPECT_EQ(model->restoreRun()->title(), "Most is back as it was");
    EXPECT_TRUE(model->undoRecord());
    model->deleteAllData();
    EXPECT_FALSE(model->undoRecord());
}

/// A window that was saved is not there when Work is resumed.
struct Waiting : Resumed {
    Waiting() {
        desktop.world().close(notes().number);
        resume();
    }
    const simulated::Window& open() {
        const WindowNumber number =
            desktop.world()
                .openWindow(*desktop.world().application("org.editor"), sceneWindow("Notes", moved))
                .number;
        run(5s);
        return *desktop.world().window(number);
    }
};

TEST(LateWindow, IsPlacedAndThePanelSaysSoUnlessThePersonHasClosedIt) {
    for (const bool dismissed : {false, true}) {
        Waiting model;
        EXPECT_EQ(model->awaitedWindows(), 1);
        EXPECT_EQ(model->restoreRun()->title(), "Work is mostly back");
        if (dismissed) model->closeRestorePanel();
        model.run(1min);
        EXPECT_FALSE(model.surfaces.panelVisible(PanelID::restore));
        model.surfaces.panelsInUse = true;  // for as long as this looks at it
        EXPECT_EQ(model.open().state.frame, saved);
        EXPECT_EQ(model->restoreRun()->title(), "Work is back");
        EXPECT_EQ(model->awaitedWindows(), 0);
        EXPECT_EQ(model.surfaces.panelVisible(PanelID::restore), !dismissed);
        model.surfaces.panelsInUse = false;
        model.run(10s);
        EXPECT_FALSE(model.surfaces.panelVisible(PanelID::restore));
    }
}

TEST(LateWindow, IsLeftAloneWhereNobodyWaitsForIt) {
    using Act = void (*)(Waiting&);
    const Act acts[] = {[](Waiting& model) { model->stopWaiting(); }, [](Waiting& model) { model.putBack(); },
                        [](Waiting& model) {
                            model.change([](AppSettings& settings) { settings.lateMinutes = 0; });
                            model.resume();
                        },
                        [](Waiting& model) { model.run(6min); }};
    for (const Act act : acts) {
        Waiting model;
        act(model);
        model.run(1s);
        EXPECT_EQ(model->awaitedWindows(), 0);
        EXPECT_EQ(model.open().state.frame, moved);
    }
}

}  // namespace
}  // namespace quillo::samples
