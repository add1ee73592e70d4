// Pictures that QML asks for by address: shadows, drawn once for each kind, and icons of applications.
#pragma once
#include <QImage>
#include <QQuickImageProvider>
#include <functional>

namespace quillo {

/// image://shadow/LEVEL/RADIUS/THEME: a 9-slice; levels 1 to 3 spread 4, 28 and 72 pixels.
class ShadowPictures final : public QQuickImageProvider {
  public:
    ShadowPictures() : QQuickImageProvider(Image) {}
    QImage requestImage(const QString& id, QSize* size, const QSize& requested) override;
};

/// image://appicon/IDENTIFIER: a single clear pixel where the application has no icon.
class AppIconPictures final : public QQuickImageProvider {
  public:
    /// Gives the icon of an application in about the size wanted.
    using Find = std::function<QImage(const QString& identifier, int size)>;

    explicit AppIconPictures(Find find) : QQuickImageProvider(Image), find_(std::move(find)) {}
    QImage requestImage(const QString& id, QSize* size, const QSize& requested) override;

  private:
    Find find_;
};

}  // namespace quillo
