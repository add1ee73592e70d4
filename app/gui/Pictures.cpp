#include "app/gui/Pictures.hpp"

#include <QPainter>
#include <QStringList>
#include <QUrl>
#include <algorithm>
#include <array>
#include <cmath>

namespace quillo {
namespace {

struct Layer {
    double offset, blur, opacity;
};
struct Recipe {
    int spread;
    std::array<Layer, 2> light, dark;
};
constexpr std::array<Recipe, 3> recipes{{
    {4, {{{1, 2, .06}, {0, 0, 0}}}, {{{1, 2, .35}, {0, 0, 0}}}},
    {28, {{{1, 2, .06}, {6, 18, .09}}}, {{{1, 2, .4}, {8, 22, .42}}}},
    {72, {{{2, 6, .08}, {18, 48, .22}}}, {{{2, 6, .4}, {20, 52, .6}}}},
}};

/// How far a point is outside a rounded rectangle; negative inside.
double distance(double x, double y, double left, double top, double right, double bottom, double radius) {
    const double centerX = (left + right) / 2, centerY = (top + bottom) / 2;
    const double dx = std::abs(x - centerX) - (right - left) / 2 + radius;
    const double dy = std::abs(y - centerY) - (bottom - top) / 2 + radius;
    return std::hypot(std::max(dx, 0.0), std::max(dy, 0.0)) + std::min(std::max(dx, dy), 0.0) - radius;
}

/// A blurred edge falls off like this over the width of the blur.
double coverage(double distance, double blur) {
    const double position = std::clamp(0.5 - distance / (2 * blur), 0.0, 1.0);
    return position * position * (3 - 2 * position);
}

}  // namespace

QImage ShadowPictures::requestImage(const QString& id, QSize* size, const QSize&) {
    const QStringList parts = id.split('/');
    const int level = std::clamp(parts.value(0).toInt(), 1, 3);
    const int radius = std::clamp(parts.value(1).toInt(), 0, 40);
    const bool dark = parts.value(2) == "dark";
    const Recipe& recipe = recipes[static_cast<std::size_t>(level - 1)];
    const int extent = 2 * (recipe.spread + radius) + 2;
    const double near = recipe.spread, far = extent - recipe.spread;
    QImage image(extent, extent, QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < extent; ++y) {
        for (int x = 0; x < extent; ++x) {
            double clear = 1;
            for (const Layer& layer : dark ? recipe.dark : recipe.light) {
                if (layer.blur <= 0) continue;
                const double away = distance(x + 0.5, y + 0.5 - layer.offset, near, near, far, far, radius);
                clear *= 1 - layer.opacity * coverage(away, layer.blur);
            }
            const QColor ink = dark ? QColor(0, 0, 0) : QColor(20, 26, 38);
            const int alpha = qRound(255 * (1 - clear));
            image.setPixel(x, y, qPremultiply(qRgba(ink.red(), ink.green(), ink.blue(), alpha)));
        }
    }
    if (size) *size = image.size();
    return image;
}

QImage AppIconPictures::requestImage(const QString& id, QSize* size, const QSize& requested) {
    const int wanted = requested.isValid() ? std::max(requested.width(), requested.height()) : 64;
    QImage image = find_ ? find_(QUrl::fromPercentEncoding(id.toUtf8()), wanted) : QImage();
    if (image.isNull()) {  // a null picture is an error to QML: one clear pixel tells it is there
        image = QImage(1, 1, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
    }
    if (size) *size = image.size();
    return image;
}

}  // namespace quillo
