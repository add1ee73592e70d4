#include "app/gui/DesktopMapPicture.hpp"

#include <QFontMetricsF>
#include <QQmlEngine>
#include <QQuickWindow>
#include <algorithm>
#include <ranges>

#include "app/gui/DesktopMapPainter.hpp"
#include "app/gui/Pictures.hpp"
#include "app/map/DesktopMapWindows.hpp"

namespace quillo {
namespace {

constexpr int landingTime = 220, fadeTime = 140, spinnerTime = 900;  // milliseconds
constexpr int frameTime = 16, spinnerStep = 75;

/// States that are laid out alike: changes between them are a matter of colour.
int placeOf(TileState state) {
    return isGhost(state) ? 1 : isMarked(state) ? 2 : 0;
}

std::map<std::string, TileState> statesFrom(const QVariantMap& states) {
    std::map<std::string, TileState> result;
    for (auto one = states.begin(); one != states.end(); ++one) {
        const auto state = tileState(one.value().toString().toStdString());
        if (state && *state != TileState::saved) result.emplace(one.key().toStdString(), *state);
    }
    return result;
}

TileState stateIn(const std::map<std::string, TileState>& states, const std::string& key) {
    const auto found = states.find(key);
    return found != states.end() ? found->second : TileState::saved;
}

bool holds(const Rect& frame, double x, double y) {
    return x >= frame.x && x < frame.maxX() && y >= frame.y && y < frame.maxY();
}

bool anyLanding(const std::map<std::string, TileState>& states) {
    return std::ranges::any_of(states, [](const auto& one) { return one.second == TileState::landing; });
}

}  // namespace

DesktopMapPicture::DesktopMapPicture(QQuickItem* parent) : QQuickPaintedItem(parent) {
    fade_.setStartValue(1.0);
    fade_.setEndValue(0.0);
    fade_.setEasingCurve(QEasingCurve::OutQuad);
    connect(&fade_, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(&fade_, &QVariantAnimation::finished, this, [this] {
        previous_ = {};
        update();
    });
    connect(&motion_, &QTimer::timeout, this, [this] {
        std::erase_if(landings_, [this](const auto& one) { return landed(one.first) >= 1; });
        updateMotion();
        update();
    });
    clock_.start();
}

void DesktopMapPicture::setTheme(Theme* theme) {
    if (theme_ == theme) return;
    if (theme_) disconnect(theme_, nullptr, this, nullptr);
    theme_ = theme;
    if (theme_) {
        connect(theme_, &Theme::changed, this, [this] {
            update();
            Q_EMIT lookChanged();
        });
        connect(theme_, &QObject::destroyed, this, [this] { theme_ = nullptr; });
    }
    relayout();
    Q_EMIT themeChanged();
    Q_EMIT lookChanged();
}

void DesktopMapPicture::setSource(const QVariant& source) {
    MapSource next = source.value<MapSource>();
    if (source_ == next) return;
    source_ = std::move(next);
    landings_.clear();
    relayout();
    Q_EMIT sourceChanged();
}

void DesktopMapPicture::setColorName(const QString& name) {
    if (colorName_ == name) return;
    colorName_ = name;
    update();
    Q_EMIT lookChanged();
}

void DesktopMapPicture::setStyle(const QString& style) {
    if (style_ == style) return;
    style_ = style;
    relayout();
    Q_EMIT lookChanged();
}

void DesktopMapPicture::setStates(const QVariantMap& states) {
    if (states_ == states) return;
    states_ = states;
    applyStates();
    Q_EMIT statesChanged();
}

void DesktopMapPicture::applyStates() {
    auto next = statesFrom(states_);
    bool moved = false;
    const auto compare = [&](const std::string& key) {
        const TileState before = stateIn(tileStates_, key), after = stateIn(next, key);
        moved = moved || placeOf(before) != placeOf(after);
        if (before != after && after == TileState::restored) land(key);
    };
    for (const auto& one : tileStates_) compare(one.first);
    for (const auto& one : next) compare(one.first);
    if (moved) crossFade();
    tileStates_ = std::move(next);
    if (moved) {
        relayout();
    } else if (!stale_) {
        for (MapDisplay& display : layout_.displays) {
            for (MapTile& tile : display.tiles) tile.window.state = stateIn(tileStates_, tile.window.key);
            if (!display.dock) continue;
            for (MapChip& chip : display.dock->chips)
                chip.window.state = stateIn(tileStates_, chip.window.key);
        }
    }
    updateMotion();
    update();
}

void DesktopMapPicture::setShownDesktops(const QVariantMap& shown) {
    if (shown_ == shown) return;
    crossFade();
    shown_ = shown;
    relayout();
    Q_EMIT shownDesktopsChanged();
}

void DesktopMapPicture::outline(QStringList& those, const QStringList& keys) {
    if (std::exchange(those, keys) == keys) return;
    update();
    Q_EMIT outlinesChanged();
}

QString DesktopMapPicture::description() const {
    return source_ ? QString::fromStdString(mapDescription(*source_)) : QString();
}

QColor DesktopMapPicture::wall() const {
    return theme_ ? Theme::color(theme_->workspaceColors(colorName_.toStdString()).tint)
                  : QColor(Qt::transparent);
}

MapRequest DesktopMapPicture::request() const {
    MapRequest request;
    request.style = mapStyle(style_.toStdString()).value_or(MapStyle::card);
    request.width = width();
    request.height = height();
    for (auto one = shown_.begin(); one != shown_.end(); ++one) {
        bool isNumber = false;
        const uint position = one.value().toUInt(&isNumber);
        if (isNumber) request.shownDesktops.emplace(one.key().toStdString(), position);
    }
    request.states = tileStates_;
    request.textScale = theme_->scale();
    const QFontMetricsF small(mapFont(*theme_, MapText::small)), label(mapFont(*theme_, MapText::label));
    request.measure = [small, label](std::string_view text, MapText role) {
        const QString words = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
        return (role == MapText::small ? small : label).horizontalAdvance(words);
    };
    return request;
}

void DesktopMapPicture::relayout() {
    stale_ = true;
    polish();
    update();
}

void DesktopMapPicture::updatePolish() {
    if (!std::exchange(stale_, false)) return;
    const bool possible = source_ && theme_ && width() >= 1 && height() >= 1;
    layout_ = possible ? layoutDesktopMap(*source_, request()) : DesktopMapLayout{};
    ++layoutCount_;
    updateCaptions();
}

QString DesktopMapPicture::keyAt(qreal x, qreal y) const {
    for (const MapDisplay& display : layout_.displays) {
        if (display.dock) {
            for (const MapChip& chip : display.dock->chips)
                if (holds(chip.icon, x, y)) return QString::fromStdString(chip.window.key);
        }
        for (const MapTile& tile : display.tiles | std::views::reverse)
            if (holds(tile.frame, x, y)) return QString::fromStdString(tile.window.key);
    }
    return {};
}

QVariantMap DesktopMapPicture::hiddenDesktop(const QString& key) const {
    if (!source_ || !theme_) return {};
    const std::vector<PlacedDisplay> displays = usableDisplays(source_->displays);
    const std::vector<DisplayWindows> windows = windowsOfDisplays(*source_, displays, request());
    const std::string sought = key.toStdString();
    for (std::size_t i = 0; i < windows.size(); ++i) {
        for (std::size_t position = 0; position < windows[i].choices.size(); ++position) {
            const auto& those = windows[i].choices[position].windows;
            if (position == windows[i].shown ||
                std::ranges::none_of(those, [&](const SavedWindow& one) { return one.key() == sought; }))
                continue;
            return {{"display", QString::fromStdString(displays[i].display->id)},
                    {"position", static_cast<int>(position)}};
        }
    }
    return {};
}

void DesktopMapPicture::updateCaptions() {
    QVariantList captions;
    for (const MapDisplay& display : layout_.displays) {
        if (display.segments.empty()) continue;
        QStringList labels;
        QVariantList positions, empty;
        int current = -1;
        for (const MapSegment& segment : display.segments) {
            if (segment.position == display.shown) current = static_cast<int>(labels.size());
            labels << QString::fromStdString(segment.label);
            positions << QVariant::fromValue(static_cast<int>(segment.position));
            empty << segment.empty;
        }
        captions << QVariantMap{{"display", QString::fromStdString(display.id)},
                                {"x", display.caption.x},
                                {"y", display.caption.y},
                                {"width", display.caption.width},
                                {"height", display.caption.height},
                                {"labels", labels},
                                {"positions", positions},
                                {"empty", empty},
                                {"current", current}};
    }
    if (captions_ == captions) return;
    captions_ = std::move(captions);
    Q_EMIT captionsChanged();
}

void DesktopMapPicture::geometryChange(const QRectF& now, const QRectF& before) {
    QQuickPaintedItem::geometryChange(now, before);
    if (now.size() == before.size()) return;
    fade_.stop();
    previous_ = {};
    relayout();
}

void DesktopMapPicture::itemChange(ItemChange change, const ItemChangeData& data) {
    QQuickPaintedItem::itemChange(change, data);
    if (change == ItemVisibleHasChanged || change == ItemSceneChange) updateMotion();
}

/// Keeps the picture as it is, to let it fade into what comes.
void DesktopMapPicture::crossFade() {
    if (stale_ || !theme_ || !window() || !isVisible() || layout_.displays.empty()) return;
    const qreal ratio = window()->effectiveDevicePixelRatio();
    QImage image((size() * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) return;
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    paintLayout(painter);
    painter.end();
    previous_ = image;
    fade_.stop();
    fade_.setDuration(theme_->fade(fadeTime));
    fade_.start();
}

void DesktopMapPicture::land(const std::string& key) {
    if (theme_ && !theme_->reducedMotion() && window() && isVisible()) landings_[key] = clock_.elapsed();
}

double DesktopMapPicture::landed(const std::string& key) const {
    const auto found = landings_.find(key);
    if (found == landings_.end()) return 1;
    return std::clamp(static_cast<double>(clock_.elapsed() - found->second) / landingTime, 0.0, 1.0);
}

/// Runs only while something is seen to move.
void DesktopMapPicture::updateMotion() {
    const bool moves = theme_ && !theme_->reducedMotion() && window() && isVisible();
    const bool landing = moves && !landings_.empty();
    const bool spinning = moves && anyLanding(tileStates_);
    if (!landing && !spinning) {
        motion_.stop();
        return;
    }
    const int step = landing ? frameTime : spinnerStep;
    if (!motion_.isActive() || motion_.interval() != step) motion_.start(step);
}

QImage DesktopMapPicture::icon(const QString& identifier, int size) const {
    QQmlEngine* engine = qmlEngine(this);
    auto* icons = engine ? dynamic_cast<AppIconPictures*>(engine->imageProvider("appicon")) : nullptr;
    if (!icons) return {};
    QSize actual;
    return icons->requestImage(QString::fromUtf8(identifier.toUtf8().toPercentEncoding()), &actual,
                               {size, size});
}

void DesktopMapPicture::paintLayout(QPainter& painter) {
    const double turns = static_cast<double>(clock_.elapsed() % spinnerTime) / spinnerTime;
    const MapLook look{
        .theme = *theme_,
        .colors = theme_->workspaceColors(colorName_.toStdString()),
        .icon = [this](const QString& identifier, int size) { return icon(identifier, size); },
        .landed = [this](const std::string& key) { return landed(key); },
        .outlined =
            [this](const std::string& key) {
                const QString sought = QString::fromStdString(key);
                return picked_.contains(sought) ? 1 : pointed_.contains(sought) ? 0.5 : 0;
            },
        .spinnerTurn = turns,
        .pixelRatio = window() ? window()->effectiveDevicePixelRatio() : 1,
    };
    DesktopMapPainter(painter, look).paint(layout_);
}

void DesktopMapPicture::paint(QPainter* painter) {
    if (!theme_) return;
    paintLayout(*painter);
    if (previous_.isNull()) return;
    painter->setOpacity(fade_.currentValue().toDouble());
    painter->drawImage(QPointF(0, 0), previous_);
}

}  // namespace quillo
