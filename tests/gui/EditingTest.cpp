// A saved workspace is changed from its detail, and several in the library, by mouse and keyboard; what was
// stored is read from the files.
#include "app/gui/DesktopMapPicture.hpp"
#include "app/gui/DetailPresenter.hpp"
#include "app/gui/LibraryPresenter.hpp"
#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

using namespace samples;

Scene desk() {
    SceneApplication editor = sceneApplication(
        "org.editor", {sceneWindow("Notes", {20, 60, 600, 420}), sceneWindow("Letter", {700, 60, 500, 560})});
    editor.name = "Editor";
    SceneApplication browser =
        sceneApplication("com.google.Chrome", {sceneWindow("Pages", {300, 500, 600, 300})});
    browser.name = "Chrome";
    SceneApplication viewer = notRunning(sceneApplication("org.viewer", {}));
    viewer.name = "Viewer";
    return scene({editor, browser, viewer});
}

class EditingTest : public GuiTest {
  protected:
    EditingTest() : GuiTest(desk()) {
        model.save("Work");
        open();
        ui().openDetail(QString::fromStdString(work().id.lower()));
        settle();
    }
    DetailPresenter& detail() { return presenter<DetailPresenter>("Detail"); }
    LibraryPresenter& library() { return presenter<LibraryPresenter>("Library"); }
    Workspace work() { return model.store.scan().workspaces.front(); }
    QQuickItem* list() { return named("In this workspace", isTree); }
    static bool isTree(QAccessibleInterface* face) { return face->role() == QAccessible::Tree; }
    DesktopMapPicture* map() {
        DesktopMapPicture* found = nullptr;
        walk(window()->contentItem(), [&](QQuickItem& item) {
            if (!found) found = qobject_cast<DesktopMapPicture*>(&item);
            return true;
        });
        return found;
    }
    QPoint placeOf(const QString& key) {
        for (const MapDisplay& display : map()->layout().displays) {
            for (const MapTile& tile : display.tiles)
                if (tile.window.key == key.toStdString())
                    return map()->mapToScene({tile.frame.x + 12, tile.frame.y + 12}).toPoint();
        }
        ADD_FAILURE() << key.toStdString();
        return {};
    }
    std::size_t leftOut() { return work().snapshot.leftOut ? work().snapshot.leftOut->size() : 0; }
};

TEST_F(EditingTest, PartsAreLeftOutBroughtBackAndUndone) {
    click("Include Editor");
    EXPECT_EQ(leftOut(), 1U);
    EXPECT_EQ(work().snapshot.windowCount(), 1);
    EXPECT_EQ(detail().states().size(), 2);  // of the map: still there, but faded
    EXPECT_TRUE(until([&] { return named("Left out Editor") != nullptr; }));
    click("Undo");
    EXPECT_EQ(leftOut(), 0U);
    click("Include Editor");
    click("Include Editor");
    EXPECT_EQ(work().snapshot.windowCount(), 3);

    // A window, by keyboard: opened, chosen and left out; then all steps back and one on.
    list()->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Home);
    press(Qt::Key_Right);
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_EQ(work().snapshot.windowCount(), 2);
    EXPECT_EQ(work().snapshot.leftOut->front().kind, LeftOutPart::Kind::window);
    EXPECT_EQ(list()->property("currentIndex"), 1) << "the list stays as it is";
    press(Qt::Key_Z, Qt::ControlModifier, 3);
    EXPECT_EQ(leftOut(), 0U);
    press(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(leftOut(), 1U);
}

TEST_F(EditingTest, MapAndListPointAtEachOther) {
    QQuickItem* const item = map()->parentItem();
    const auto pointed = [&] { return item->property("outlinedKeys").toStringList(); };
    const auto picked = [&] { return item->property("pickedKeys").toStringList(); };
    const QStringList keys = detail().allWindowKeys();
    ASSERT_EQ(keys.size(), 3);
    // The list to the map: an application means all its windows.
    QTest::mouseMove(window(),
                     GuiTest::placeOf(*named("Include Editor")).center().toPoint() - QPoint(120, 0));
    EXPECT_TRUE(until([&] { return pointed().size() == 2; }));
    // The map to the list: the line of the application, as long as its windows have none.
    QTest::mouseMove(window(), placeOf(keys[1]));
    EXPECT_TRUE(until([&] { return pointed() == QStringList{keys[1]}; }));
    EXPECT_EQ(list()->property("pointedRow").toInt(), 1);
    QTest::mouseClick(window(), Qt::LeftButton, {}, placeOf(keys[1]));
    settle();
    EXPECT_EQ(list()->property("currentIndex"), 2);
    EXPECT_EQ(picked(), QStringList{keys[1]});
    press(Qt::Key_Left);  // the map has the keyboard
    EXPECT_EQ(picked(), QStringList{keys[0]});
    EXPECT_EQ(list()->property("currentIndex"), 1);
    list()->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_End);
    EXPECT_EQ(picked(), QStringList{keys[2]});
    EXPECT_EQ(leftOut(), 0U) << "pointing changes nothing";
}

TEST_F(EditingTest, LookIsChosenAndAppsAndAddressesAreAdded) {
    click("Change icon and color");
    EXPECT_TRUE(until([&] { return named("Leaf") != nullptr; }));
    click("Leaf");
    EXPECT_EQ(work().icon, "leaf");
    const char* const other = work().color == "rose" ? "Teal" : "Rose";
    click(other);
    EXPECT_EQ(QString::fromStdString(work().color), QString(other).toLower());
    press(Qt::Key_Escape);
    EXPECT_TRUE(until([&] { return !named("Leaf"); }));
    EXPECT_EQ(ui().page(), "detail");

    click("Add App…");
    EXPECT_TRUE(until([&] { return named("Search apps") && named("Search apps")->hasActiveFocus(); }));
    EXPECT_FALSE(named("Editor, running")) << "it is there already";
    type("view");
    press(Qt::Key_Return);
    EXPECT_TRUE(until([&] { return work().snapshot.applications.size() == 3; }));
    EXPECT_TRUE(until([&] { return named("Include Viewer") && !named("Search apps"); }));

    click("Add Address…");
    EXPECT_TRUE(until([&] { return named("Web address") && named("Web address")->hasActiveFocus(); }));
    type("file:///etc");
    press(Qt::Key_Return);
    EXPECT_TRUE(named("Only http and https addresses can be opened") || named("This is not a web address"));
    press(Qt::Key_A, Qt::ControlModifier);
    type("a.example/b");
    press(Qt::Key_Return);
    EXPECT_TRUE(until([&] { return work().snapshot.tabCount() == 1; }));
    EXPECT_TRUE(until([&] { return !named("Web address"); }));
    press(Qt::Key_Z, Qt::ControlModifier, 2);
    EXPECT_EQ(work().snapshot.applications.size(), 2U);
}

TEST_F(EditingTest, SeveralWorkspacesAreSelectedInTheLibrary) {
    model.put({"One", "Two"});
    press(Qt::Key_Escape);
    ASSERT_EQ(ui().page(), "library");
    EXPECT_TRUE(named("Import Workspace… · Ctrl+I"));
    click("Select several to export or delete");
    EXPECT_FALSE(named("Delete selected workspaces…"));  // there is nothing selected
    press(Qt::Key_Space);
    press(Qt::Key_Right);
    press(Qt::Key_Space);
    EXPECT_TRUE(named("2 selected"));
    model.surfaces.answers = {};
    press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(library().selected().size(), 3);
    click("Select None");
    EXPECT_EQ(library().selected().size(), 0);
    click("One");
    EXPECT_EQ(library().selected().size(), 1);
    EXPECT_EQ(ui().page(), "library");
    click("Two");
    click("Delete selected workspaces…");
    click("Delete Workspaces");
    EXPECT_TRUE(until([&] { return library().count() == 1; }));
    EXPECT_EQ(model.names(), std::vector<std::string>{"Work"});
    EXPECT_FALSE(library().selecting());
    click("Select several to export or delete");
    press(Qt::Key_Escape);
    EXPECT_FALSE(library().selecting());
}

}  // namespace
}  // namespace quillo
