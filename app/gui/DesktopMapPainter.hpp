// Draws a laid-out desktop map in the colours of an appearance.
#pragma once
#include <QImage>
#include <QPainter>
#include <functional>

#include "app/gui/Theme.hpp"
#include "app/map/DesktopMapLayout.hpp"

namespace quillo {

/// What a map looks like, beside its geometry.
struct MapLook {
    const Theme& theme;
    const WorkspaceColors& colors;
    /// Null for an application without an icon: its first letter stands for it.
    std::function<QImage(const QString& identifier, int size)> icon;
    /// How far the window of this key has landed, from 0 to 1; 1 for all that stand still.
    std::function<double(const std::string& key)> landed;
    /// How strong the outline of the window is that is pointed at or picked, from 0 to 1.
    std::function<double(const std::string& key)> outlined;
    double spinnerTurn = 0;  // of a full one
    double pixelRatio = 1;
};

/// The fonts of maps: as measured for the layout and as drawn.
QFont mapFont(const Theme& theme, MapText text);

class DesktopMapPainter {
  public:
    DesktopMapPainter(QPainter& painter, const MapLook& look) : painter_(painter), look_(look) {}

    void paint(const DesktopMapLayout& layout);

  private:
    void paintDisplay(const MapDisplay& display, bool icons);
    void paintTile(const MapTile& tile, const MapDisplay& display);
    void paintBody(const MapTile& tile);
    void paintBand(const MapTile& tile);
    void paintContent(const MapTile& tile);
    void paintApplication(const MapWindow& window, const QRectF& place);
    void paintLetter(const MapWindow& window, const QRectF& place);
    void paintSpinner(const QRectF& place);
    void paintMark(const MapTile& tile);
    void paintOutline(const MapWindow& window, const QRectF& place, double radius);
    void paintDock(const MapDock& dock);
    void paintMore(const MapDisplay& display);
    void paintPips(const MapDisplay& display);
    void text(const QRectF& place, const std::string& words, const QFont& font, const QColor& color,
              Qt::Alignment alignment);
    bool dark() const { return look_.theme.dark(); }

    QPainter& painter_;
    const MapLook& look_;
};

}  // namespace quillo
