// The page that shows what resuming would do: by mouse, keyboard and accessible names.
#include "app/gui/PreviewPresenter.hpp"
#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

using namespace samples;

class PreviewPageTest : public GuiTest {
  protected:
    PreviewPageTest() {
        model.save("Work");
        simulated::World& world = model.desktop.world();
        world.move(*world.window("org.editor", "Notes"), {500, 300, 300, 200});
        open();
        openDetail(model.named("Work").id);
        settle();
    }
    PreviewPresenter& preview() { return presenter<PreviewPresenter>("Preview"); }
    QString detail(const QString& title) {
        QAbstractItemModel* const rows = preview().rows();
        for (int row = 0; row < rows->rowCount(); ++row) {
            const auto asked = [&](int role) { return rows->data(rows->index(row, 0), role).toString(); };
            if (asked(ReviewRows::TitleRole) == title) return asked(ReviewRows::DetailRole);
        }
        return "not listed";
    }
};

TEST_F(PreviewPageTest, IsOpenedTickedByKeyboardAndResumed) {
    click("Preview…");
    ASSERT_TRUE(until([&] { return preview().ready(); }));
    EXPECT_EQ(ui().page(), "preview");
    EXPECT_EQ(detail("Notes"), "moves and resizes");
    EXPECT_EQ(detail("Letter"), "stays");
    QQuickItem* const list = named(
        "What resuming does", [](QAccessibleInterface* face) { return face->role() == QAccessible::Tree; });
    ASSERT_TRUE(list);
    list->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Home);
    press(Qt::Key_Down);
    press(Qt::Key_Space);
    EXPECT_EQ(detail("Notes"), "left alone");
    EXPECT_EQ(preview().states().value("org.editor#window#0"), "unticked");
    press(Qt::Key_Space);
    ASSERT_TRUE(until([&] { return detail("Notes") == "moves and resizes"; }));
    press(Qt::Key_Escape);
    EXPECT_EQ(ui().page(), "detail");
    QApplication::setDoubleClickInterval(60'000);
    model->openPreview(model.named("Work"), CleanSlateMode::keep);
    ASSERT_TRUE(until([&] { return preview().canResume(); }));
    press(Qt::Key_Return);
    EXPECT_FALSE(model->restoreRun()) << "by a second press on what opened the page";
    QApplication::setDoubleClickInterval(0);
    press(Qt::Key_Escape);
    click("Preview…");
    ASSERT_TRUE(until([&] { return named("Resume") && preview().canResume(); }));
    press(Qt::Key_Return);  // the button has the keyboard
    EXPECT_TRUE(until([&] { return model->restoreRun() && !model->restoreRunning(); }));
    EXPECT_EQ(ui().page(), "detail");
}

TEST_F(PreviewPageTest, TheSwitcherOpensItWithControlAndTheWindowsEndClosesIt) {
    model->toggleSwitcher();
    settle();
    QTest::keyClick(foremost(), Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(until([&] { return model->preview() != nullptr; }));
    EXPECT_EQ(ui().page(), "preview");
    open({760, 520});
    EXPECT_TRUE(until([&] {
        QQuickItem* const button = named("Resume");
        return button && placeOf(*button).bottom() <= 520;
    })) << "what has the keyboard is not below the edge";
    interface->windows().closeMain();
    EXPECT_FALSE(model->preview()) << "nobody looks at it any more";
}

}  // namespace
}  // namespace quillo
