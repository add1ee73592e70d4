// The library and the detail of a workspace, by mouse and keyboard.
#include "app/gui/DetailPresenter.hpp"
#include "app/gui/LibraryPresenter.hpp"
#include "app/gui/Words.hpp"
#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

class LibraryViewTest : public samples::GuiTest {
  protected:
    LibraryPresenter& library() { return presenter<LibraryPresenter>("Library"); }
    DetailPresenter& detail() { return presenter<DetailPresenter>("Detail"); }
};

TEST_F(LibraryViewTest, WorkspacesAreFoundOpenedRenamedAndDeleted) {
    open();
    EXPECT_TRUE(named("Save your first workspace"));
    for (const char* name : {"Product launch", "Thesis, chapter four", "Server room"}) {
        Workspace workspace = samples::example();
        workspace.id = Uuid::random();
        workspace.name = name;
        workspace.color = name[0] == 'P' ? "coral" : name[0] == 'T' ? "amber" : "slate";
        workspace.cleanSlate.reset();
        ASSERT_TRUE(model.store.save(workspace));
    }
    model->reload();
    settle();
    type("thesis");
    EXPECT_TRUE(named("Thesis, chapter four"));
    EXPECT_EQ(library().count(), 1);
    press(Qt::Key_Escape);
    type("nothing like it");
    EXPECT_TRUE(named("No matching workspaces"));
    press(Qt::Key_Escape);

    // By keyboard: down into the cards, Space opens, Escape comes back.
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_EQ(ui().page(), "detail");
    click("Rename");
    EXPECT_TRUE(until([&] {  // the field takes its room, and covers nothing
        return placeOf(*named("Workspace name")).bottom() <= placeOf(*named(detail().saved())).top();
    }));
    type("zz");
    press(Qt::Key_Return);
    EXPECT_EQ(model.names().back(), "zz");
    EXPECT_EQ(named("Quit other apps")->width(), named("Delete Workspace")->width());  // the whole row
    click("Quit other apps");
    EXPECT_EQ(model.named("zz").cleanSlate, CleanSlateMode::quit);
    click("Delete Workspace");
    click("Cancel");
    EXPECT_TRUE(until([&] { return !named("Cancel"); }));
    EXPECT_EQ(model->workspaces().size(), 3U);
    click("Duplicate Workspace");
    EXPECT_TRUE(until([&] { return named("Duplicated zz") != nullptr; }));
    press(Qt::Key_Escape);
    EXPECT_EQ(ui().page(), "library");
    EXPECT_EQ(library().count(), 4);
    // A card makes its menu and its question when they are asked for.
    press(Qt::Key_Down);
    press(Qt::Key_Right);
    EXPECT_EQ(library().cursor(), 1);
    EXPECT_TRUE(named("Workspaces")->hasActiveFocus());  // the search field does not take the keyboard back
    press(Qt::Key_Left);
    press(Qt::Key_Menu);
    const auto isEntry = [](QAccessibleInterface* face) { return face->role() == QAccessible::MenuItem; };
    EXPECT_TRUE(until([&] { return named("Export Workspace…", isEntry) != nullptr; }));
    press(Qt::Key_Escape);
    EXPECT_TRUE(until([&] { return !named("Export Workspace…"); }));
    press(Qt::Key_Delete);
    EXPECT_TRUE(until([&] { return named("Delete Workspace") != nullptr; }));
    press(Qt::Key_Escape);
    EXPECT_TRUE(until([&] { return !named("Delete Workspace"); }));
    EXPECT_TRUE(until(
        [&] { return named("Workspaces")->hasActiveFocus(); }));  // what was closed gives the keyboard back
    // A card that is deleted leaves nothing in its place that a screen reader would name or the mouse find.
    const QString goneName = library().data(library().index(0), LibraryPresenter::NameRole).toString();
    press(Qt::Key_Delete);
    click("Delete Workspace");
    EXPECT_TRUE(until([&] { return library().count() == 3 && !named("Cancel"); }));
    EXPECT_FALSE(named(goneName)) << goneName.toStdString();
    model.directory.write("workspaces/" + Uuid::random().upper() + ".json", "{");
    model->reload();
    settle();
    EXPECT_EQ(library().issues().size(), 1);
    click("Show files");
    EXPECT_EQ(model.shell.shownFolders, std::vector{model.directory / "workspaces"});
    model.shell.hasFileManager = false;
    click("Show files");
    EXPECT_TRUE(until([&] { return ui().toast().startsWith("No file manager opens "); }));
    click("Dismiss");
    EXPECT_FALSE(named("Show files"));
}

TEST_F(LibraryViewTest, ADetailBeginsAtItsTopInANarrowWindowAndFollowsTheKeyboard) {
    model->openMain();
    openDetail(keepExample());
    open({760, 520});
    QTest::qWait(50);
    const double resume = placeOf(*named("Resume workspace")).bottom();
    EXPECT_GT(resume, 520) << "below: else nothing is shown here";
    press(Qt::Key_Tab);
    EXPECT_TRUE(until([&] { return placeOf(*named("Resume workspace")).bottom() < resume; }));
}

TEST_F(LibraryViewTest, WhatIsFoundFirstIsMarkedAndOpened) {
    model.put({"Tea 1", "Tea 2", "Tea 3", "Tea 4", "Tea 5", "Beta"});
    open();
    library().setOrder(1);
    settle();
    const auto marked = [&](const char* name) { return named(name)->property("current").toBool(); };
    EXPECT_FALSE(marked("Beta"));
    library().setCursor(5);
    type("t");
    EXPECT_TRUE(marked("Beta")) << "the keyboard is in the field";
    type("e");
    press(Qt::Key_Down);
    EXPECT_TRUE(marked("Tea 4"));  // the row below the one that was marked
    for (const auto& [key, name] :
         {std::pair{Qt::Key_End, "Tea 5"}, std::pair{Qt::Key_Home, "Tea 1"},
          std::pair{Qt::Key_PageDown, "Tea 5"}, std::pair{Qt::Key_PageUp, "Tea 1"}}) {
        press(key);
        EXPECT_TRUE(marked(name)) << name;
    }
    named("Search workspaces and apps")->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_A, Qt::ControlModifier);
    type("tea 3");
    press(Qt::Key_Return);
    EXPECT_EQ(presenter<DetailPresenter>("Detail").name(), "Tea 3");
}

TEST_F(LibraryViewTest, WhatAWorkspaceFromElsewhereWouldDoIsShownAndAskedAbout) {
    Workspace stranger = samples::named(Uuid::random(), "Gift\n");
    stranger.cleanSlate = CleanSlateMode::quit;
    stranger.snapshot.applications = {{"org.viewer", "viewer", {}, {{}}, {}}};
    ASSERT_TRUE(model.store.save(stranger));
    model->reload();
    open();
    const auto asks = [&] { return named("Resume Anyway") != nullptr; };
    const auto ask = [&] {
        named("Workspaces")->forceActiveFocus(Qt::TabFocusReason);
        press(Qt::Key_Return);
        ASSERT_TRUE(until([&] { return model->question() && named("Cancel"); }));
    };
    ask();
    EXPECT_TRUE(named("“Gift\\n” was not saved on this computer"));
    for (const char* shown :
         {"Quits all other apps", "org.editor", "Launches", "org.viewer (saved as “viewer”)"})
        EXPECT_TRUE(named(shown)) << shown;
    EXPECT_FALSE(asks()) << "the click that brought it up must not agree";
    EXPECT_TRUE(named("Cancel")->hasActiveFocus());
    press(Qt::Key_Return);
    EXPECT_TRUE(until([&] { return !named("Cancel"); }));
    EXPECT_FALSE(model->question() || model->restoreRun());
    for (const Qt::Key key : {Qt::Key_Escape, Qt::Key_Space}) {
        ask();
        press(key);
        EXPECT_TRUE(until([&] { return !model->question() && !named("Cancel"); }));
        EXPECT_FALSE(model->restoreRun());
    }
    ask();
    ASSERT_TRUE(QTest::qWaitFor(asks, 10000));
    click("Resume Anyway");
    EXPECT_TRUE(model->restoreRunning());
    model.finishRestore();
    EXPECT_TRUE(until([&] { return !named("Cancel"); }));
    EXPECT_TRUE(model.known.isAgreed(model.named("Gift\n")));
}

TEST_F(LibraryViewTest, AStrangersThousandsAreShownAsFarAsOneLooksAndCounted) {
    Workspace many = samples::named(Uuid::random(), "Two\nlines" + std::string(100'000, 'x'));
    for (int i = 0; i < 10'000; ++i) {
        ApplicationSnapshot& application = many.snapshot.applications.emplace_back();
        application.bundleIdentifier = "org.a" + std::to_string(i);
        application.name = "App " + std::to_string(i);
    }
    const auto all = static_cast<qsizetype>(many.snapshot.applications.size());
    ASSERT_TRUE(model.store.save(many));
    model->reload();
    open();
    const QModelIndex row = library().index(0);
    EXPECT_TRUE(row.data(LibraryPresenter::NameRole).toString().startsWith("Two lines"));
    EXPECT_EQ(row.data(LibraryPresenter::NameRole).toString().size(), 400);
    EXPECT_TRUE(row.data(LibraryPresenter::AppsRole).toString().endsWith(", " + andMore(all - 30)));
    ui().openDetail(library().idAt(0));
    settle();
    EXPECT_EQ(detail().rows()->rowCount(), all);  // of which the view makes as many as it shows
}

TEST(Words, AreEnglishInEveryCountry) {
    const QDateTime afternoon(QDate(2026, 11, 21), QTime(15, 4));
    const auto at = [](const QDateTime& when) {
        return Instant{std::chrono::seconds{when.toSecsSinceEpoch()}};
    };
    for (const auto& [locale, time] : {std::pair{"C", "15:04"}, std::pair{"de_DE", "15:04"},
                                       std::pair{"en_US", "3:04 PM"}, std::pair{"ar_EG", "3:04 PM"}}) {
        QLocale::setDefault(QLocale(locale));
        EXPECT_EQ(counted(1234, "window"), QString("1,234") + QChar(QChar::Nbsp) + "windows") << locale;
        EXPECT_EQ(shortDate(at(afternoon), at(afternoon)), time) << locale;
        EXPECT_EQ(shortDate(at(afternoon.addDays(-3)), at(afternoon)), "Wednesday") << locale;
        EXPECT_EQ(longDate(at(afternoon.addDays(-40)), at(afternoon)), QString("12 Oct 2026 at ") + time)
            << locale;
    }
    QLocale::setDefault(QLocale::system());
}

}  // namespace
}  // namespace quillo
