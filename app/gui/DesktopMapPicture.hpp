// The picture of a saved desktop as an item of QML; DesktopMap.qml lays the choice of desktops over it.
#pragma once
#include <QElapsedTimer>
#include <QImage>
#include <QQuickPaintedItem>
#include <QTimer>
#include <QVariant>
#include <QVariantAnimation>
#include <map>
#include <string>

#include "app/gui/MapSource.hpp"
#include "app/gui/Theme.hpp"
#include "app/map/DesktopMapLayout.hpp"

namespace quillo {

/// The geometry is computed once for each snapshot, size, style and choice of desktops; states that only
/// change colours repaint alone. Nothing moves, and nothing is repainted, unless a window is landing.
class DesktopMapPicture : public QQuickPaintedItem {
    Q_OBJECT
    Q_PROPERTY(quillo::Theme* theme READ theme WRITE setTheme NOTIFY themeChanged)
    Q_PROPERTY(QVariant source READ source WRITE setSource NOTIFY sourceChanged)  // a MapSource
    Q_PROPERTY(QString colorName READ colorName WRITE setColorName NOTIFY lookChanged)
    Q_PROPERTY(QString style READ style WRITE setStyle NOTIFY lookChanged)  // MapStyle; else "card"
    /// By window key, the name of a TileState.
    Q_PROPERTY(QVariantMap states READ states WRITE setStates NOTIFY statesChanged)
    /// By display, the position of the desktop to show.
    Q_PROPERTY(
        QVariantMap shownDesktops READ shownDesktops WRITE setShownDesktops NOTIFY shownDesktopsChanged)
    /// Of large maps, one for each display: display, x, y, width, height, labels, positions, empty, current.
    Q_PROPERTY(QVariantList captions READ captions NOTIFY captionsChanged)
    /// Keys of the windows with an outline, a light one and a strong one.
    Q_PROPERTY(QStringList pointedKeys READ pointedKeys WRITE setPointedKeys NOTIFY outlinesChanged)
    Q_PROPERTY(QStringList pickedKeys READ pickedKeys WRITE setPickedKeys NOTIFY outlinesChanged)
    Q_PROPERTY(QString description READ description NOTIFY sourceChanged)  // "2 displays, 8 windows"
    Q_PROPERTY(QColor wall READ wall NOTIFY lookChanged)

  public:
    explicit DesktopMapPicture(QQuickItem* parent = nullptr);

    Theme* theme() const { return theme_; }
    void setTheme(Theme* theme);
    QVariant source() const { return QVariant::fromValue(source_); }
    void setSource(const QVariant& source);
    QString colorName() const { return colorName_; }
    void setColorName(const QString& name);
    QString style() const { return style_; }
    void setStyle(const QString& style);
    QVariantMap states() const { return states_; }
    void setStates(const QVariantMap& states);
    QVariantMap shownDesktops() const { return shown_; }
    void setShownDesktops(const QVariantMap& shown);
    QStringList pointedKeys() const { return pointed_; }
    void setPointedKeys(const QStringList& keys) { outline(pointed_, keys); }
    QStringList pickedKeys() const { return picked_; }
    void setPickedKeys(const QStringList& keys) { outline(picked_, keys); }
    QVariantList captions() const { return captions_; }
    QString description() const;
    QColor wall() const;

    const DesktopMapLayout& layout() const { return layout_; }
    /// How often the geometry was computed.
    int layoutCount() const { return layoutCount_; }
    /// The window that is drawn there, by its key; empty for none.
    Q_INVOKABLE QString keyAt(qreal x, qreal y) const;
    /// { display, position } of the desktop that the window stands on, where another one is shown; else
    /// empty.
    Q_INVOKABLE QVariantMap hiddenDesktop(const QString& key) const;

    void paint(QPainter* painter) override;

  Q_SIGNALS:
    void themeChanged();
    void sourceChanged();
    void lookChanged();
    void statesChanged();
    void shownDesktopsChanged();
    void outlinesChanged();
    void captionsChanged();

  protected:
    void geometryChange(const QRectF& now, const QRectF& before) override;
    void updatePolish() override;
    void itemChange(ItemChange change, const ItemChangeData& data) override;

  private:
    MapRequest request() const;
    void relayout();
    void updateCaptions();
    void applyStates();
    void outline(QStringList& those, const QStringList& keys);
    void crossFade();
    void land(const std::string& key);
    void updateMotion();
    void paintLayout(QPainter& painter);
    QImage icon(const QString& identifier, int size) const;
    double landed(const std::string& key) const;

    Theme* theme_ = nullptr;
    MapSource source_;
    QString colorName_, style_ = QStringLiteral("card");
    QVariantMap states_, shown_;
    QStringList pointed_, picked_;
    std::map<std::string, TileState> tileStates_;
    QVariantList captions_;

    DesktopMapLayout layout_;
    bool stale_ = true;  // the layout does not fit what is asked for
    int layoutCount_ = 0;

    QImage previous_;  // fades out over the new picture
    QVariantAnimation fade_;
    QElapsedTimer clock_;
    std::map<std::string, qint64> landings_;  // milliseconds of clock_ at which each window came to land
    QTimer motion_;
};

}  // namespace quillo
