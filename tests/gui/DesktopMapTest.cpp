// Desktop maps as they are drawn: every style in both appearances, and what repaints, lays out and moves.
#include <QQuickItem>

#include "app/gui/DesktopMapPicture.hpp"
#include "tests/app/MapSamples.hpp"
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
        map->setProperty("source", mapVariant(snapshot));
        if (style == "card") map->setProperty("wallRadius", 0);
        view->resize(size + QSize(24, 24));
        view->show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(view.get()));
        settle();
    }

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
            picture(QString("map-%1-%2").arg(c.name, dark ? "dark" : "light"));
        }
    }
}

}  // namespace
}  // namespace quillo
