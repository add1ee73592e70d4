// The review of a capture by mouse and keyboard; what was saved is read from the workspace's file.
#include <set>

#include "app/gui/ReviewPresenter.hpp"
#include "app/gui/Words.hpp"
#include "app/map/DesktopMapLayout.hpp"
#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

using namespace samples;

SceneWindow folderWindow(std::string title, std::string folder, Rect frame) {
    SceneWindow window = sceneWindow(std::move(title), frame);
    window.tabs = {std::move(folder)};
    return window;
}

Scene desk() {
    SceneApplication finder = sceneApplication(
        "com.apple.finder", {folderWindow("Recordings", "file:///Research/Recordings/", {560, 360, 560, 400}),
                             folderWindow("Downloads", "file:///Downloads/", {20, 500, 400, 300})});
    finder.name = "Files";
    SceneApplication bank = sceneApplication("org.bank", {sceneWindow("Accounts", {700, 60, 500, 300})});
    bank.name = "Banking";
    SceneApplication editor = sceneApplication("org.editor", {sceneWindow("Notes", {20, 60, 600, 420}),
                                                              sceneWindow("Letter", {1500, 100, 700, 560})});
    editor.name = "Editor";
    return scene({finder, bank, editor});
}

class ReviewTest : public GuiTest {
  protected:
    ReviewTest() : GuiTest(desk()) {
        model.change([](AppSettings& settings) { settings.enabledAdapters = {"finder"}; });
    }

    void begin(std::optional<Workspace> updating = {}, QSize size = {1080, 720}) {
        model->beginCapture(std::move(updating));
        model.review().setColor("teal");
        open(size);
    }
    ReviewPresenter& review() { return presenter<ReviewPresenter>("Review"); }
    static std::string plain(QString text) { return text.replace(QChar::Nbsp, ' ').toStdString(); }
    /// The only workspace, as its file has it.
    WorkspaceSnapshot saved(std::string_view name) {
        const WorkspaceScanResult files = model.store.scan();
        EXPECT_EQ(files.workspaces.size(), 1U);
        if (files.workspaces.empty()) return {};
        EXPECT_EQ(files.workspaces[0].name, name);
        return files.workspaces[0].snapshot;
    }
};

TEST_F(ReviewTest, WhatIsUntickedIsNotSaved) {
    model->beginCapture();
    open();
    EXPECT_TRUE(named("Reading your open windows…"));
    press(Qt::Key_Escape);  // there is nothing to drop yet
    ASSERT_TRUE(until([&] { return model->draft() != nullptr; }));
    settle();
    EXPECT_TRUE(named("Review what's open, remove anything private, then save."));
    type("Interview week");  // the field has the keyboard from the start
    click("Book");
    click("Rose");
    click("Include Banking");
    click("Include Notes");
    click("Include /Downloads");
    EXPECT_EQ(plain(review().counts()), "2 of 3 apps · 3 of 5 windows · 1 of 2 folders");
    EXPECT_EQ(plain(review().leftOutText()), "2 left out");
    EXPECT_TRUE(review().states().keys() == (QStringList{"org.bank#window#0", "org.editor#window#0"}));
    // A switch whose application is off keeps its own state, and works.
    ASSERT_TRUE(named("Include Accounts"));
    EXPECT_TRUE(named("Include Accounts")->property("checked").toBool());
    EXPECT_LT(named("Include Accounts")->opacity(), 0.5);
    click("Save Workspace");

    const WorkspaceSnapshot snapshot = saved("Interview week");
    ASSERT_EQ(snapshot.applications.size(), 2U);
    EXPECT_EQ(snapshot.applications[0].bundleIdentifier, "org.editor");
    ASSERT_EQ(snapshot.applications[0].windows.size(), 1U);
    EXPECT_EQ(snapshot.applications[0].windows[0].title, "Letter");
    ASSERT_EQ(snapshot.applications[1].context->windows.size(), 1U);
    EXPECT_EQ(snapshot.applications[1].context->windows[0].urls[0].filePath(), "/Research/Recordings");
    EXPECT_EQ(model.named("Interview week").icon, "book");
    EXPECT_EQ(model.named("Interview week").color, "rose");
    EXPECT_FALSE(model->draft());
}

TEST_F(ReviewTest, MapAndListPointAtEachOtherAndTickNothing) {
    begin();
    QQuickItem* const list = named("What is saved");
    QQuickItem* const map = named(QString::fromStdString(mapDescription(model->draft()->snapshot())));
    ASSERT_TRUE(map && QMetaObject::invokeMethod(map, "picked", Q_ARG(QString, "org.editor#window#1")));
    const int row = review().rowOf("org.editor#window#1");
    EXPECT_GT(row, 0);
    EXPECT_EQ(list->property("currentIndex"), row);
    EXPECT_EQ(map->property("pickedKeys").toStringList(), QStringList{"org.editor#window#1"});
    list->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Up);
    EXPECT_EQ(map->property("pickedKeys").toStringList(), QStringList{"org.editor#window#0"});
    EXPECT_FALSE(review().touched());
}

TEST_F(ReviewTest, EverythingGoesByKeyboard) {
    begin();
    type("Keys");
    press(Qt::Key_Tab);
    press(Qt::Key_Right);  // the second icon
    press(Qt::Key_Tab);
    press(Qt::Key_Left);  // the color before teal
    QQuickItem* list = named("What is saved");
    for (int stop = 0; stop < 4 && main()->activeFocusItem() != list; ++stop) press(Qt::Key_Tab);
    ASSERT_EQ(main()->activeFocusItem(), list);     // its first line is Banking
    EXPECT_TRUE(list->property("byKey").toBool());  // and has the ring
    press(Qt::Key_Left);
    EXPECT_TRUE(until([&] { return !named("Include Accounts"); }));  // closed
    press(Qt::Key_Space);
    press(Qt::Key_Right);
    press(Qt::Key_Down);  // Accounts
    press(Qt::Key_Down);  // Editor
    press(Qt::Key_Down);  // Notes
    press(Qt::Key_Space);
    press(Qt::Key_Space);
    press(Qt::Key_Return, Qt::ControlModifier);

    EXPECT_EQ(saved("Keys").applications.size(), 2U);
    EXPECT_EQ(saved("Keys").windowCount(), 4);
    EXPECT_EQ(model.named("Keys").icon, "briefcase");
    EXPECT_EQ(model.named("Keys").color, "lime");
}

TEST_F(ReviewTest, TabGoesRoundInANarrowWindowToo) {
    begin();
    main()->resize(760, 520);
    settle();
    QQuickItem* const name = main()->activeFocusItem();
    QQuickItem* const list = named("What is saved");
    std::set<QQuickItem*> stops;
    do {
        press(Qt::Key_Tab);
    } while (stops.insert(main()->activeFocusItem()).second);
    EXPECT_TRUE(stops.contains(name) && stops.contains(list) && stops.contains(named("Save Workspace")));
}

TEST_F(ReviewTest, ReturnInTheNameSavesUnlessItIsStillHeldDown) {
    begin();
    type("Quick");
    QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
    QCoreApplication::sendEvent(main(), &held);
    EXPECT_TRUE(model->draft());
    press(Qt::Key_Return);
    EXPECT_EQ(saved("Quick").applications.size(), 3U);
}

TEST_F(ReviewTest, ANarrowWindowHasOneColumn) {
    begin({}, {800, 600});
    type("Small");  // the keyboard is in the field, wherever it stands
    EXPECT_EQ(review().name(), "Small");
    QQuickItem* field = named("Name this workspace");
    ASSERT_TRUE(field);
    EXPECT_GT(field->mapToScene({}).y(), 200);  // below the map
    press(Qt::Key_Tab);
    press(Qt::Key_Tab);  // the colors, which come into view
    EXPECT_LE(main()->activeFocusItem()->mapToScene({0, 30}).y(),
              named("Save Workspace")->mapToScene({}).y());
    main()->resize(1080, 720);
    ASSERT_TRUE(until([&] { return field->mapToScene({}).y() < 100; }));
    click("Include Banking");
    EXPECT_EQ(model->draft()->excludedApps().size(), 1U);
}

TEST_F(ReviewTest, EscapeAsksOnlyWhereSomethingWouldBeLost) {
    begin();
    press(Qt::Key_Escape);
    EXPECT_FALSE(model->draft());

    begin();
    click("Include Banking");
    press(Qt::Key_Escape);
    EXPECT_TRUE(named("Discard this review?"));
    press(Qt::Key_Escape);  // the question away, the review as it was
    ASSERT_TRUE(until([&] { return !named("Keep Reviewing"); }));
    ASSERT_TRUE(model->draft());
    EXPECT_EQ(model->draft()->excludedApps().size(), 1U);
    click("Cancel");
    ASSERT_TRUE(until([&] { return named("Discard") != nullptr; }));
    click("Discard");
    EXPECT_FALSE(model->draft());
    EXPECT_TRUE(model->workspaces().empty());
}

TEST_F(ReviewTest, ClosingItsWindowIsCancel) {
    const auto close = [&] {
        main()->close();
        settle();
    };
    begin();
    close();
    EXPECT_FALSE(main() || model->draft());
    model->openMain();
    model->beginCapture();
    close();
    EXPECT_FALSE(until([&] { return main() || model->draft(); })) << "it comes back by itself";

    begin();
    click("Include Banking");
    close();
    ASSERT_TRUE(main());
    click("Keep Reviewing");
    ASSERT_TRUE(until([&] { return !named("Keep Reviewing"); }));
    EXPECT_EQ(model->draft()->excludedApps().size(), 1U);
    close();
    ASSERT_TRUE(until([&] { return named("Discard") != nullptr; }));
    click("Discard");
    EXPECT_FALSE(main() || model->draft());
    model.put({"Work"});
    model->restore(model.named("Work"), {});
    EXPECT_TRUE(model->restoreRunning());
}

TEST_F(ReviewTest, AnUpdateStaysOpenWhereItCannotBeSaved) {
    model.put({"Monday"});
    begin(model.named("Monday"));
    EXPECT_TRUE(named("Update Workspace"));
    press(Qt::Key_End);
    type("s");
    model.disk.createFailure = Error{ErrorKind::io, "no room", 0};
    click("Update Workspace");
    ASSERT_TRUE(model->draft());
    EXPECT_EQ(ui().toast(), "Couldn't save: no room");
    EXPECT_TRUE(until([&] { return named("Dismiss") != nullptr; })) << "it can be taken away";
    EXPECT_EQ(review().name(), "Mondays");
    model.disk.createFailure.reset();
    click("Update Workspace");
    EXPECT_EQ(saved("Mondays").applications.size(), 3U);
}

TEST_F(ReviewTest, ListsWhatTheFilterTakesAway) {
    WorkspaceSnapshot snapshot = example().snapshot;
    CaptureDraft draft(snapshot, {}, false);
    ReviewRows rows;
    rows.show(&draft);
    // Every line that is on once its application and window are on stands for something that is saved.
    for (int row = 0; row < rows.rowCount(); ++row) {
        const WorkspaceSnapshot before = draft.filteredSnapshot();
        rows.toggle(row);
        EXPECT_NE(draft.filteredSnapshot(), before) << row;
        EXPECT_FALSE(rows.index(row).data(ReviewRows::IncludedRole).toBool());
        rows.toggle(row);
        EXPECT_EQ(draft.filteredSnapshot(), snapshot);
    }
    rows.toggle(0);
    rows.toggle(1);
    EXPECT_EQ(draft.filteredSnapshot(), snapshot) << "a window brings its application back with it";
    // Of thousands the first ones are listed, and how many there are besides.
    snapshot.applications.resize(1);
    snapshot.applications[0].context.reset();
    snapshot.applications[0].windows.assign(10'000, WindowSnapshot{});
    CaptureDraft many(snapshot, {}, false);
    rows.show(&many);
    rows.setOpen(0, true);
    ASSERT_EQ(rows.rowCount(), 1002);
    EXPECT_EQ(rows.index(1001).data(ReviewRows::KindRole), "more");
    EXPECT_EQ(rows.index(1001).data(ReviewRows::TitleRole), andMore(9000));
    rows.toggle(1001);
    EXPECT_EQ(many.filteredSnapshot(), snapshot);

    rows.show(&draft);
    const int all = rows.rowCount();
    rows.setOpen(0, false);
    EXPECT_LT(rows.rowCount(), all);
    rows.setOpen(0, true);
    EXPECT_EQ(rows.rowCount(), all);
}

}  // namespace
}  // namespace quillo
