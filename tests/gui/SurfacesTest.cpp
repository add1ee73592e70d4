// What holds of every surface alike: the Tab key walks it in reading order, and nothing is cut off or
// overlaps, also with large text, in a small window, and from right to left.
#include <algorithm>

#include "tests/gui/GuiFixture.hpp"

namespace quillo {
namespace {

class FocusOrderTest : public samples::GuiTest {
  protected:
    /// Every item the key leads to, once around.
    std::vector<QQuickItem*> around(QQuickWindow& window, Qt::Key key,
                                    const std::function<void(QQuickItem*, QQuickItem*)>& step = {}) {
        std::vector<QQuickItem*> stops;
        QQuickItem* const first = window.activeFocusItem();
        for (QQuickItem* last = first; stops.size() < 200;) {
            stops.push_back(last);
            QTest::keyClick(&window, key);
            QQuickItem* const now = window.activeFocusItem();
            if (now == first || now == last) break;
            if (step) step(last, now);
            last = now;
        }
        return stops;
    }
    /// To the first stop of a window.
    void toTheStart(QQuickWindow& window) {
        window.requestActivate();
        QQuickItem* first = window.contentItem()->nextItemInFocusChain();
        first->forceActiveFocus(Qt::TabFocusReason);
        settle();
    }
};

/// Lines downwards, in a line to the right; beside one that is read, another group may begin further up.
bool inReadingOrder(const QRectF& before, const QRectF& after) {
    const bool sameLine = std::min(before.bottom(), after.bottom()) - std::max(before.top(), after.top()) >
                          std::min(before.height(), after.height()) / 2;
    if (sameLine) return after.left() > before.left();
    return after.top() > before.top() || after.left() >= before.right();
}

TEST_F(FocusOrderTest, TabWalksEverySurfaceInReadingOrderAndBack) {
    onEverySurface([&](QQuickWindow& window, const char*) {
        toTheStart(window);
        const auto stops = around(window, Qt::Key_Tab, [](QQuickItem* before, QQuickItem* after) {
            EXPECT_TRUE(inReadingOrder(placeOf(*before), placeOf(*after)))
                << described(before) << "\nthen " << described(after);
        });
        auto back = around(window, Qt::Key_Backtab);
        std::reverse(back.begin() + 1, back.end());
        EXPECT_EQ(back, stops);
        walk(window.contentItem(), [&](QQuickItem& item) {
            if (!item.isEnabled()) return false;
            const bool visited = std::ranges::any_of(stops, [&](QQuickItem* stop) {
                return stop == &item || item.isAncestorOf(stop);  // a list hands the keyboard on to its row
            });
            EXPECT_TRUE(visited || !item.activeFocusOnTab()) << described(&item) << " is passed over";
            return true;
        });
    });
}

class LayoutTest : public samples::LookSet,
                   public samples::GuiTest,
                   public testing::WithParamInterface<samples::Look> {
  protected:
    LayoutTest() : LookSet(GetParam()) {}

    /// Where the ink of a text is.
    static QRectF ink(QQuickItem& text) {
        const double width = std::min(text.property("contentWidth").toDouble(), text.width());
        const double height = text.property("contentHeight").toDouble();
        const int across = text.property("effectiveHorizontalAlignment").toInt();
        const int down = text.property("verticalAlignment").toInt();
        const double left = text.property("leftPadding").toDouble(),
                     top = text.property("topPadding").toDouble();
        const double right = text.property("rightPadding").toDouble();
        const double x = across & Qt::AlignRight     ? text.width() - right - width
                         : across & Qt::AlignHCenter ? left + (text.width() - left - right - width) / 2
                                                     : left;
        const double y = down & Qt::AlignVCenter ? (text.height() - height) / 2 : top;
        return text.mapRectToScene({x, y, width, height});
    }
    static bool isText(QQuickItem& item) {
        return item.inherits("QQuickText") && !item.property("text").toString().trimmed().isEmpty();
    }

    struct Piece {
        QQuickItem* item;
        QRectF place;
    };
    static void expectApart(const Piece& one, const Piece& other) {
        const QRectF shared = one.place & other.place;
        EXPECT_FALSE(shared.width() > 2 && shared.height() > 2)
            << described(one.item) << "\noverlaps " << described(other.item);
    }
    static void expectReadable(QQuickWindow& window) {
        std::vector<Piece> pieces;
        const QRectF all = placeOf(*window.contentItem());
        gather(*window.contentItem(), all, pieces);
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            for (std::size_t j = i + 1; j < pieces.size(); ++j) expectApart(pieces[i], pieces[j]);
        }
    }
    /// Texts, and what can be pressed and holds none; of what scrolls only what is seen.
    static void gather(QQuickItem& item, const QRectF& clip, std::vector<Piece>& pieces) {
        if (!item.isVisible() || item.opacity() == 0 || item.inherits("DesktopMap")) return;
        if (QString(item.metaObject()->className()).startsWith("OnboardingPicture")) return;
        const QRectF place = placeOf(item);
        if (item.clip() && !place.intersects(clip)) return;
        const QRectF seen = item.clip() ? clip & place : clip;
        if (isText(item)) {
            const QRectF parent = placeOf(*item.parentItem());
            const QRectF words = ink(item);
            EXPECT_TRUE(words.width() <= parent.width() + 1)
                << described(&item) << " is wider than its place";
            EXPECT_TRUE(words.left() >= seen.left() - 1 && words.right() <= seen.right() + 1)
                << described(&item) << " is cut off";
            if ((words & seen).height() > 2) pieces.push_back({&item, words & seen});
            return;
        }
        const std::size_t before = pieces.size();
        for (QQuickItem* child : item.childItems()) gather(*child, seen, pieces);
        if (isPressed(item) && pieces.size() == before && (place & seen).height() > 2)
            pieces.push_back({&item, place & seen});
    }
};

TEST_P(LayoutTest, NothingIsCutOffOrOverlaps) {
    onEverySurface([](QQuickWindow& window, const char*) { expectReadable(window); }, GetParam().window);
}

TEST_P(LayoutTest, TheLibraryKeepsToItsEdges) {
    for (int i = 0; i < 9; ++i) ASSERT_TRUE(model.store.save(samples::named(Uuid::random(), "Morning")));
    model->reload();
    model->openMain();
    const QSize size = GetParam().window + QSize(1, 0);  // no number of columns divides it
    main()->resize(size);
    settle();
    QTest::keyClick(main(), 'm');
    model->show(
        "Couldn't save “The quarterly report with everything that belongs to it, and a few other things "
        "besides”: there is no room left on the disk that holds your workspaces.",
        ToastKind::failure);
    double left = size.width(), right = 0, strip = 0, toast = size.height();
    const auto look = [&](QQuickItem& item) {
        const QString type = item.metaObject()->className();
        if (item.property("stripHeight").isValid()) strip = item.property("stripHeight").toDouble();
        if (type.startsWith("WorkspaceCard")) {
            const QRectF card = placeOf(*item.childItems().at(0));
            left = std::min(left, card.left());
            right = std::max(right, card.right());
        }
        if (type.startsWith("Toast")) toast = item.y() + item.height();
        if (item.inherits("QQuickGridView")) {
            EXPECT_EQ(item.property("contentY").toDouble(), -item.property("topMargin").toDouble());
        }
        if (isText(item) && item.property("text").toString().startsWith("Couldn't")) {
            EXPECT_FALSE(item.property("truncated").toBool());
        }
        return true;
    };
    EXPECT_TRUE(QTest::qWaitFor([&] {
        walk(main()->contentItem(), look);
        return toast < size.height();
    }));
    EXPECT_NEAR(left, 24, 0.01);
    EXPECT_NEAR(right, size.width() - 24, 0.01);
    EXPECT_EQ(toast, size.height() - strip - 16);
}

using samples::Look;
INSTANTIATE_TEST_SUITE_P(
    Looks, LayoutTest,
    testing::Values(Look{.name = "plain"}, Look{.name = "small", .window = {760, 520}, .textScale = "1.5"},
                    Look{.name = "mirrored", .mirrored = true},
                    Look{
                        .name = "mirroredSmall", .window = {760, 520}, .textScale = "1.5", .mirrored = true}),
    [](const auto& look) { return std::string(look.param.name); });

}  // namespace
}  // namespace quillo
