// The icons of applications, for AppIconPictures and for maps.
#pragma once
#include <QCache>
#include <QImage>
#include <QString>
#include <QStringList>

namespace quillo {

/// Looks an identifier up as the name of a .desktop file, and its icon in the icon theme or as a picture
/// file. Each answer is kept, also that there is none. For the thread of the interface.
class AppIcons {
  public:
    AppIcons();
    /// For tests: `.desktop` files from these directories.
    explicit AppIcons(QStringList applicationDirectories);

    /// At most `size` pixels wide and high; null for an application without an icon.
    QImage find(const QString& identifier, int size);

  private:
    QString iconName(const QString& identifier) const;

    QStringList directories_;
    QCache<QString, QImage> found_{4096};  // by identifier and size; the cost is in kilobytes
};

}  // namespace quillo
