// Desktop maps as they are drawn: every style in both appearances, and what repaints, lays out and moves.
#include <QQuickItem>

#include "app/gui/DesktopMapPicture.hpp"
#include "tests/app/map/MapSamples.hpp"
#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

using samples::keyOf;

class DesktopMapTest : public samples::GuiTest {
  protected:
    DesktopMapTest() { samples::crowded(); }

    /// A window with one map in the middle of a margin.
    void showMap(const QString& style, QSize size, const WorkspaceSnapshot& snapshot, const QString& color,
                 const QVariantMap& states = {}) {
        view = std::make_unique<QQuickView>();
        view->engine()->addImportPath("qrc:/qt/qml");
        view->setColor(theme.surface());
        QQmlComponent component(view->engine());
        component.setData(
            "import QtQuick\nimport Quillo\nItem { DesktopMap { objectName: \"map\"; x: 12; y: 12;"
            "width: parent.width - 24; height: parent.height - 24 } }",
            QUrl("qrc:/qt/qml/Quillo/Sample.qml"));
        auto* root = qobject_cast<QQuickItem*>(component.create());
        ASSERT_TRUE(root) << component.errorString().toStdString();
        view->setContent({}, &component, root);
        view->setResizeMode(QQuickView::SizeRootObjectToView);
        map = root->findChild<QQuickItem*>("map");
        picture_ = root->findChild<DesktopMapPicture*>();
        ASSERT_TRUE(map && picture_);
        map->setProperty("style", style);
        map->setProperty("colorName", color);
        map->setProperty("states", states);
        map->setProperty("source", mapVariant(drawnPart(snapshot)));
        if (style == "card") map->setProperty("wallRadius", 0);
        view->resize(size + QSize(24, 24));
        view->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(view.get()));
        settle();
    }

    QQuickWindow* window() override { return view.get(); }

    std::unique_ptr<QQuickView> view;
    QQuickItem* map = nullptr;
    DesktopMapPicture* picture_ = nullptr;
};

TEST_F(DesktopMapTest, EveryStyleIsDrawnInBothAppearances) {
    const QVariantMap review{{"org.example.Messages#window#0", "unticked"},
                             {"org.example.Notes#window#0", "unticked"}};
    const QVariantMap running{{QString::fromStdString(keyOf("Browser")), "landing"},
                              {QString::fromStdString(keyOf("Messages")), "pending"},
                              {QString::fromStdString(keyOf("Keynote")), "restored"}};
    const QVariantMap over{{QString::fromStdString(keyOf("Keynote")), "failed"},
                           {QString::fromStdString(keyOf("Messages")), "skipped"},
                           {QString::fromStdString(keyOf("Preview")), "pending"}};
    struct Case {
        const char* name;
        const char* style;
        QSize size;
        WorkspaceSnapshot snapshot;
        const char* color;
        QVariantMap states;
    };
    const Case cases[] = {
        {"detail", "detail", {672, 324}, samples::productLaunch(), "coral", {}},
        {"detail-crowded", "detail", {672, 324}, samples::crowded(), "violet", {}},
        {"review", "review", {472, 296}, samples::productLaunch(), "teal", review},
        {"card", "card", {332, 118}, samples::productLaunch(), "coral", {}},
        {"card-fullscreen", "card", {332, 118}, samples::withFullScreen(), "sky", {}},
        {"card-crowded", "card", {332, 118}, samples::crowded(), "amber", {}},
        {"restore", "restore", {348, 152}, samples::productLaunch(), "coral", running},
        {"restore-over", "restore", {348, 152}, samples::productLaunch(), "coral", over},
        {"switcher", "switcher", {96, 40}, samples::productLaunch(), "coral", {}},
        {"switcher-fullscreen", "switcher", {96, 40}, samples::withFullScreen(), "sky", {}},
        {"strip", "strip", {128, 52}, samples::crowded(), "slate", {}},
    };
    for (const bool dark : {false, true}) {
        theme.setDark(dark);
        for (const Case& c : cases) {
            SCOPED_TRACE(c.name);
            showMap(c.style, c.size, c.snapshot, c.color, c.states);
            const MapTile* front = nullptr;
            for (const MapTile& tile : picture_->layout().displays.front().tiles)
                if (tile.front) front = &tile;
            ASSERT_TRUE(front);
            const QPoint corner(qRound(front->frame.x) + 12 + 4, qRound(front->frame.maxY()) + 12 - 4);
            const WorkspaceColors& colors = theme.workspaceColors(c.color);
            const bool failed = front->window.state == TileState::failed;
            const QColor expected = Theme::color(failed ? theme.colors().dangerTint : colors.tileFront);
            EXPECT_EQ(view->grabWindow().pixelColor(corner).name(), expected.name());
        }
    }
}

QVariantMap one(const std::string& key, const char* state) {
    return {{QString::fromStdString(key), state}};
}

TEST_F(DesktopMapTest, IsLaidOutAnewOnlyForWhatMovesSomething) {
    showMap("restore", {348, 152}, samples::productLaunch(), "coral");
    const auto layoutsAfter = [&](const char* property, const QVariant& value) {
        const int before = picture_->layoutCount();
        map->setProperty(property, value);
        view->grabWindow();
        return picture_->layoutCount() - before;
    };
    const std::string keynote = keyOf("Keynote");
    EXPECT_EQ(layoutsAfter("states", one(keynote, "pending")), 1) << "a ghost lies below";
    EXPECT_EQ(layoutsAfter("states", one(keynote, "landing")), 1);
    EXPECT_EQ(layoutsAfter("states", one(keynote, "restored")), 0);
    EXPECT_EQ(layoutsAfter("states", one(keynote, "failed")), 1) << "its disc needs room";
    EXPECT_EQ(layoutsAfter("states", one(keynote, "skipped")), 0);
    EXPECT_EQ(layoutsAfter("states", one(keynote, "nonsense")), 1) << "as if none were given";
    EXPECT_EQ(layoutsAfter("source", map->property("source")), 0) << "the same handle";
    EXPECT_EQ(layoutsAfter("colorName", "sky"), 0);
    EXPECT_EQ(layoutsAfter("width", 300), 1);
    EXPECT_EQ(layoutsAfter("source", QVariant()), 1);
    EXPECT_TRUE(picture_->layout().displays.empty());
}

TEST_F(DesktopMapTest, MovesOnlyWhileAWindowLandsAndNotWhereMotionIsReduced) {
    for (const bool reduced : {false, true}) {
        theme.setReducedMotion(reduced);
        showMap("restore", {348, 152}, samples::productLaunch(), "coral", one(keyOf("Browser"), "landing"));
        int frames = 0;
        QObject::connect(view.get(), &QQuickWindow::frameSwapped, view.get(), [&frames] { ++frames; });
        QTest::qWait(400);
        EXPECT_EQ(frames > 1, !reduced) << frames << " frames of a spinner";
        map->setProperty("states", one(keyOf("Browser"), "restored"));
        const MapTile& tile = picture_->layout().displays.front().tiles.front();
        ASSERT_EQ(tile.window.key, keyOf("Browser"));
        const QPoint corner(qRound(tile.frame.x) + 16, qRound(tile.frame.maxY()) + 12 - 5);
        const QColor rest = Theme::color(theme.workspaceColors("coral").tile);
        EXPECT_TRUE(QTest::qWaitFor([&] { return view->grabWindow().pixelColor(corner) == rest; }, 2000));
        QTest::qWait(300);
        frames = 0;
        QTest::qWait(200);
        EXPECT_EQ(frames, 0) << "nothing is drawn while nothing moves";
    }
}

TEST_F(DesktopMapTest, LetsOneChooseTheDesktopByMouseAndKeyboard) {
    showMap("detail", {672, 324}, samples::productLaunch(), "coral");
    const auto shown = [&] {
        view->grabWindow();  // which lays out what has changed
        return picture_->layout().displays.front().shown;
    };
    EXPECT_TRUE(named("2 displays, 8 windows"));
    QQuickItem* second = named("Desktop 2");
    click("Desktop 2");
    EXPECT_EQ(shown(), 1u);
    EXPECT_EQ(picture_->layout().displays.front().tiles.size(), 1u);
    EXPECT_EQ(map->property("shownDesktops").toMap().value("large").toInt(), 1);
    EXPECT_EQ(named("Desktop 2"), second) << "the segments stay";
    second->forceActiveFocus(Qt::TabFocusReason);
    press(Qt::Key_Right);
    EXPECT_EQ(shown(), 2u);
    EXPECT_TRUE(named("Desktop 3, empty")->hasActiveFocus());
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    EXPECT_EQ(shown(), 0u);
}

TEST_F(DesktopMapTest, HoldsItsTextAtOneAndAHalfTimesTheSize) {
    qputenv("QUILLO_TEXT_SCALE", "1.5");
    Theme large;
    qunsetenv("QUILLO_TEXT_SCALE");
    registerSingleton("Theme", large);
    showMap("detail", {672, 324}, samples::productLaunch(), "coral");
    EXPECT_EQ(picture_->theme(), &large);
    const MapDisplay& display = picture_->layout().displays.front();
    EXPECT_LE(display.caption.maxY(), 324);
    view.reset();
    registerSingleton("Theme", theme);
}

}  // namespace
}  // namespace quillo
