#include "app/gui/DesktopMapPainter.hpp"

#include <QFontMetricsF>
#include <QPainterPath>
#include <algorithm>
#include <cmath>

namespace quillo {
namespace {

QRectF toQt(const Rect& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

QColor token(std::string_view name) {
    return Theme::color(name);
}

QColor mixed(const QColor& from, const QColor& to, double share) {
    const auto part = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return {part(from.red(), to.red()), part(from.green(), to.green()), part(from.blue(), to.blue())};
}

QPainterPath rounded(const QRectF& rect, double radius) {
    QPainterPath path;
    path.addRoundedRect(rect, radius, radius);
    return path;
}

/// A rounded rectangle above `y`, or below it: two that meet there leave no fringe between them.
QPainterPath cutAt(const QRectF& rect, double radius, double y, bool above) {
    QPainterPath half;
    half.addRect(above ? QRectF(rect.left(), rect.top(), rect.width(), y - rect.top())
                       : QRectF(rect.left(), y, rect.width(), rect.bottom() - y));
    return rounded(rect, radius).intersected(half);
}

/// Thin lines from lower left to upper right, seven pixels apart.
QImage hatch(const QColor& ink) {
    constexpr int period = 10;
    QImage image(period, period, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < period; ++y) {
        for (int x = 0; x < period; ++x) {
            const int along = (x + y) % period;
            const double away = std::min(along, period - along) / std::sqrt(2.0);
            const int alpha = qRound(ink.alpha() * std::clamp(1.1 - away, 0.0, 1.0));
            image.setPixel(x, y, qPremultiply(qRgba(ink.red(), ink.green(), ink.blue(), alpha)));
        }
    }
    return image;
}

double contentOpacity(TileState state) {
    return state == TileState::unticked ? 0.42 : state == TileState::pending ? 0.34 : 1;
}

/// Drawn on top of a picture that has its own origin: the hatch stays with the tile.
void fillHatched(QPainter& painter, const QPainterPath& path, const QColor& ink) {
    QBrush brush(hatch(ink));
    brush.setTransform(QTransform::fromTranslate(path.boundingRect().left(), path.boundingRect().top()));
    painter.fillPath(path, brush);
}

}  // namespace

QFont mapFont(const Theme& theme, MapText text) {
    return theme.font(text == MapText::small ? "map-small" : "map-label");
}

void DesktopMapPainter::paint(const DesktopMapLayout& layout) {
    painter_.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                            QPainter::SmoothPixmapTransform);
    for (const MapDisplay& display : layout.displays) paintDisplay(display, layout.icons);
}

void DesktopMapPainter::paintDisplay(const MapDisplay& display, bool icons) {
    const QRectF frame = toQt(display.frame);
    if (icons) {  // a soft shadow, in two steps
        const int strength = dark() ? 40 : 8;
        painter_.fillPath(rounded(frame.adjusted(-2, 0, 2, 4), display.radius + 2),
                          QColor(0, 0, 0, strength));
        painter_.fillPath(rounded(frame.adjusted(-1, 0, 1, 2), display.radius + 1),
                          QColor(0, 0, 0, strength));
    }
    painter_.fillPath(rounded(frame, display.radius), token(look_.theme.colors().display));
    painter_.setPen(QPen(token(look_.theme.colors().displayEdge), 1));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRoundedRect(frame.adjusted(-.5, -.5, .5, .5), display.radius + .5, display.radius + .5);
    if (display.menuBar > 0) {
        const QColor line = dark() ? QColor(255, 255, 255, 20) : QColor(24, 30, 44, 18);
        painter_.fillPath(cutAt(frame, display.radius, frame.top() + display.menuBar, true), line);
    }
    painter_.save();
    painter_.setClipRect(frame);
    for (const MapTile& tile : display.tiles) paintTile(tile, display);
    if (display.dock) paintDock(*display.dock);
    text(toQt(display.emptyNote), std::string(emptyNote), mapFont(look_.theme, MapText::label),
         look_.theme.text3(), Qt::AlignCenter);
    paintMore(display);
    painter_.restore();
    paintPips(display);
}

void DesktopMapPainter::paintTile(const MapTile& tile, const MapDisplay& display) {
    const double landed = tile.window.state == TileState::restored ? look_.landed(tile.window.key) : 1;
    painter_.save();
    if (landed < 1) {
        // Out of the back with a small overshoot: the window settles in its place.
        const double back = landed - 1, eased = 1 + back * back * (1.6 * back + 0.6);
        const double size = 0.94 + 0.06 * eased;
        const QPointF center = toQt(tile.frame).center();
        painter_.translate(center);
        painter_.scale(size, size);
        painter_.translate(-center);
    }
    if (!tile.fullscreen && !isGhost(tile.window.state)) {
        painter_.fillPath(rounded(toQt(tile.frame).adjusted(-1.5, -1.5, 1.5, 1.5), tile.radius + 1.5),
                          token(look_.theme.colors().display));
    }
    paintBody(tile);
    paintContent(tile);
    paintMark(tile);
    paintOutline(tile.window, toQt(tile.frame), tile.radius);
    painter_.restore();
    if (tile.fullscreen && !isGhost(tile.window.state)) {  // its edge is the display's
        painter_.setClipping(false);
        painter_.setPen(QPen(token(look_.theme.colors().displayEdge), 1));
        painter_.setBrush(Qt::NoBrush);
        painter_.drawRoundedRect(toQt(display.frame).adjusted(-.5, -.5, .5, .5), display.radius + .5,
                                 display.radius + .5);
        painter_.setClipRect(toQt(display.frame));
    }
}

void DesktopMapPainter::paintBody(const MapTile& tile) {
    const ThemeColors& theme = look_.theme.colors();
    const WorkspaceColors& colors = look_.colors;
    const TileState state = tile.window.state;
    const QColor rest = token(tile.front ? colors.tileFront : colors.tile);
    QColor body = rest, edge = token(colors.tileBorder);
    if (state == TileState::landing) {
        body = token(colors.tileLanding);
        edge = token(colors.base);
    } else if (state == TileState::failed) {
        body = token(theme.dangerTint);
        edge = token(theme.danger);
    } else if (state == TileState::skipped) {
        body = token(theme.warningTint);
        edge = token(theme.warning);
    } else if (state == TileState::restored) {
        body = mixed(token(colors.tileLanding), rest, look_.landed(tile.window.key));
    } else if (isGhost(state)) {
        edge = token(theme.text3);
        edge.setAlphaF(0.75f);
    }
    const QRectF frame = toQt(tile.frame);
    if (state == TileState::unticked) {
        const QColor ink = dark() ? QColor(180, 186, 196, 46) : QColor(82, 89, 101, 46);
        fillHatched(painter_, rounded(frame, tile.radius), ink);
    } else if (state != TileState::pending) {
        painter_.fillPath(rounded(frame, tile.radius), body);
        if (state == TileState::saved || state == TileState::restored) paintBand(tile);
    }
    const bool dashed = isGhost(state) || state == TileState::skipped;
    if (tile.fullscreen && (state == TileState::saved || state == TileState::restored)) return;
    QPen pen(edge, 1);
    if (dashed) pen.setDashPattern({3, 2.5});
    if (dashed) pen.setCapStyle(Qt::FlatCap);
    painter_.setPen(pen);
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRoundedRect(frame.adjusted(.5, .5, -.5, -.5), tile.radius - .5, tile.radius - .5);
}

void DesktopMapPainter::paintBand(const MapTile& tile) {
    if (tile.band <= 0) return;
    const QRectF frame = toQt(tile.frame);
    painter_.fillPath(cutAt(frame, tile.radius, frame.top() + tile.band, true), token(look_.colors.tileBand));
}

void DesktopMapPainter::paintContent(const MapTile& tile) {
    if (tile.content.kind == MapContent::Kind::none) return;
    const Theme& theme = look_.theme;
    painter_.setOpacity(contentOpacity(tile.window.state));
    if (tile.window.state == TileState::landing) {
        paintSpinner(toQt(tile.content.icon));
    } else {
        paintApplication(tile.window, toQt(tile.content.icon));
    }
    const bool centered = tile.content.kind == MapContent::Kind::named;
    const Qt::Alignment beside = Qt::AlignVCenter | (centered ? Qt::AlignHCenter : Qt::AlignLeft);
    text(toQt(tile.content.label), tile.window.application,
         mapFont(theme, centered ? MapText::small : MapText::label), theme.text(), beside);
    QFont plain = mapFont(theme, MapText::label);
    plain.setWeight(QFont::Normal);
    text(toQt(tile.content.title), tile.window.title, plain, theme.text2(), Qt::AlignVCenter | Qt::AlignLeft);
    painter_.setOpacity(1);
}

void DesktopMapPainter::paintApplication(const MapWindow& window, const QRectF& place) {
    const int pixels = qCeil(place.width() * look_.pixelRatio);
    const QImage image =
        look_.icon ? look_.icon(QString::fromStdString(window.bundleIdentifier), pixels) : QImage();
    if (image.width() > 1) {
        painter_.drawImage(place, image);
    } else {
        paintLetter(window, place);
    }
}

void DesktopMapPainter::paintLetter(const MapWindow& window, const QRectF& place) {
    const bool onStrong = !dark();
    painter_.fillPath(rounded(place, std::max(2.0, place.width() * 0.26)),
                      token(onStrong ? look_.colors.strong : look_.colors.base));
    const QString name = QString::fromStdString(window.application);
    const QString first =
        name.isEmpty() ? QStringLiteral("?") : QString::fromStdU32String(name.toStdU32String().substr(0, 1));
    QFont font(Theme::family());
    font.setPixelSize(std::max(6, qRound(place.width() * 0.6)));
    font.setWeight(QFont::DemiBold);
    text(place, first.toUpper().toStdString(), font, onStrong ? QColor(Qt::white) : token(look_.colors.on),
         Qt::AlignCenter);
}

void DesktopMapPainter::paintSpinner(const QRectF& place) {
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(token(look_.colors.base));
    painter_.drawEllipse(place);
    const QColor ink = token(look_.colors.on);
    const double inset = place.width() * 0.27;
    if (look_.theme.reducedMotion()) {  // three dots that stand still
        painter_.setBrush(ink);
        for (const double at : {-0.22, 0.0, 0.22})
            painter_.drawEllipse(place.center() + QPointF(at * place.width(), 0), place.width() * 0.07,
                                 place.width() * 0.07);
        return;
    }
    QPen pen(ink, std::max(1.2, place.width() * 0.09));
    pen.setCapStyle(Qt::RoundCap);
    painter_.setPen(pen);
    painter_.setBrush(Qt::NoBrush);
    painter_.drawArc(place.adjusted(inset, inset, -inset, -inset),
                     qRound(-look_.spinnerTurn * 360 * 16) + 90 * 16, 270 * 16);
}

void DesktopMapPainter::paintMark(const MapTile& tile) {
    if (tile.mark.width <= 0) return;
    const QRectF place = toQt(tile.mark);
    if (!isMarked(tile.window.state)) {  // full screen: two arrows that point outwards
        painter_.setPen(QPen(token(look_.colors.strong), place.width() < 10 ? 1 : 1.3, Qt::SolidLine,
                             Qt::RoundCap, Qt::RoundJoin));
        const double arm = place.width() * 0.36;
        const QRectF box = place.adjusted(.5, .5, -.5, -.5);
        painter_.drawLines({{box.topRight(), box.topRight() - QPointF(arm, 0)},
                            {box.topRight(), box.topRight() + QPointF(0, arm)},
                            {box.topRight(), box.center() + QPointF(1, -1)},
                            {box.bottomLeft(), box.bottomLeft() + QPointF(arm, 0)},
                            {box.bottomLeft(), box.bottomLeft() - QPointF(0, arm)},
                            {box.bottomLeft(), box.center() + QPointF(-1, 1)}});
        return;
    }
    const bool failed = tile.window.state == TileState::failed;
    const ThemeColors& theme = look_.theme.colors();
    painter_.setPen(Qt::NoPen);
    painter_.setBrush(token(failed ? theme.danger : theme.warning));
    painter_.drawEllipse(place);
    const QColor ink = !dark() ? QColor(Qt::white) : QColor(failed ? "#3A0B0A" : "#2E1F00");
    painter_.setPen(QPen(ink, place.width() * 0.11, Qt::SolidLine, Qt::RoundCap));
    const double arm = place.width() * 0.19;
    const QPointF middle = place.center();
    if (failed) {
        painter_.drawLine(middle - QPointF(arm, arm), middle + QPointF(arm, arm));
        painter_.drawLine(middle - QPointF(arm, -arm), middle + QPointF(arm, -arm));
    } else {
        painter_.drawLine(middle - QPointF(arm * 1.2, 0), middle + QPointF(arm * 1.2, 0));
    }
}

/// With its window, so that those in front of it cover it: their titles stay readable.
void DesktopMapPainter::paintOutline(const MapWindow& window, const QRectF& place, double radius) {
    const double strength = look_.outlined ? look_.outlined(window.key) : 0;
    if (strength <= 0) return;
    painter_.save();
    painter_.setOpacity(strength);
    painter_.setPen(QPen(token(look_.theme.colors().accent), 2));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRoundedRect(place.adjusted(1, 1, -1, -1), std::max(0.0, radius - 1),
                             std::max(0.0, radius - 1));
    painter_.restore();
}

void DesktopMapPainter::paintDock(const MapDock& dock) {
    const QRectF frame = toQt(dock.frame);
    const QColor edge = dark() ? QColor(255, 255, 255, 36) : QColor(24, 30, 44, 36);
    painter_.fillPath(rounded(frame, dock.radius),
                      dark() ? QColor(52, 56, 63, 242) : QColor(255, 255, 255, 240));
    painter_.setPen(QPen(edge, 1));
    painter_.setBrush(Qt::NoBrush);
    painter_.drawRoundedRect(frame.adjusted(-.5, -.5, .5, .5), dock.radius + .5, dock.radius + .5);
    for (const MapChip& chip : dock.chips) {
        const QRectF place = toQt(chip.icon);
        painter_.setOpacity(isGhost(chip.window.state) ? 0.32 : 1);
        if (chip.window.state == TileState::landing) {
            paintSpinner(place);
        } else {
            paintApplication(chip.window, place);
        }
        painter_.setOpacity(1);
        paintOutline(chip.window, place.adjusted(-2, -2, 2, 2), place.width() * .3);
        if (!isMarked(chip.window.state)) continue;
        const bool failed = chip.window.state == TileState::failed;
        const ThemeColors& theme = look_.theme.colors();
        painter_.setPen(QPen(token(failed ? theme.danger : theme.warning), 1.5));
        painter_.setBrush(Qt::NoBrush);
        painter_.drawRoundedRect(place.adjusted(-.75, -.75, .75, .75), place.width() * .3,
                                 place.width() * .3);
    }
    text(toQt(dock.moreFrame), dock.more, mapFont(look_.theme, MapText::small), look_.theme.text2(),
         Qt::AlignCenter);
}

void DesktopMapPainter::paintMore(const MapDisplay& display) {
    if (display.more.empty()) return;
    const QRectF frame = toQt(display.moreFrame);
    const double radius = frame.height() / 2;
    painter_.fillPath(rounded(frame.adjusted(-1.5, -1.5, 1.5, 1.5), radius + 1.5),
                      token(look_.theme.colors().display));
    painter_.fillPath(rounded(frame, radius), token(look_.colors.strong));
    QFont font = mapFont(look_.theme, MapText::small);
    font.setWeight(QFont::DemiBold);
    text(frame, display.more, font, dark() ? token(look_.theme.colors().background) : QColor(Qt::white),
         Qt::AlignCenter);
}

void DesktopMapPainter::paintPips(const MapDisplay& display) {
    for (std::size_t i = 0; i < display.pips.size(); ++i) {
        const QColor ink = token(i == display.shown ? look_.colors.strong : look_.colors.tileBorder);
        const bool ring = display.desktops[i].empty;
        painter_.setPen(ring ? QPen(ink, 1) : QPen(Qt::NoPen));
        painter_.setBrush(ring ? QBrush(Qt::NoBrush) : QBrush(ink));
        const double inset = ring ? 0.5 : 0;
        painter_.drawEllipse(toQt(display.pips[i]).adjusted(inset, inset, -inset, -inset));
    }
}

void DesktopMapPainter::text(const QRectF& place, const std::string& words, const QFont& font,
                             const QColor& color, Qt::Alignment alignment) {
    if (words.empty() || place.width() <= 0) return;
    painter_.setFont(font);
    painter_.setPen(color);
    const QString line = QString::fromStdString(words).simplified();
    const QString shown = QFontMetricsF(font).elidedText(line, Qt::ElideRight, place.width() + 1);
    painter_.drawText(place.adjusted(-1, -4, 1, 4),
                      static_cast<int>(alignment | Qt::AlignAbsolute) | Qt::TextSingleLine, shown);
}

}  // namespace quillo
