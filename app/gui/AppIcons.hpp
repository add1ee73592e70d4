// The icons of applications, for AppIconPictures and for maps.
#pragma once
#include <QCache>
#include <QImage>
#include <QString>
#include <QStringList>
#include <functional>

#include "platform/services/IconPixels.hpp"

namespace quillo {

/// Each answer is kept, also that there is none. For the thread of the interface.
class AppIcons {
  public:
    /// Where icons come from; as `find` below.
    using Source = std::function<QImage(const QString& identifier, int size)>;

    explicit AppIcons(Source source) : source_(std::move(source)) {}

    /// At most `size` pixels wide and high; null for an application without an icon.
    QImage find(const QString& identifier, int size);

  private:
    Source source_;
    QCache<QString, QImage> found_{4096};  // by identifier and size; the cost is in kilobytes
};

/// Looks an identifier up as the name of a .desktop file in these directories, and its icon in the icon theme
/// or as a picture file.
AppIcons::Source desktopFileIcons(QStringList directories);
/// In the directories of the desktop's standard.
AppIcons::Source desktopFileIcons();
AppIcons::Source systemIcons(FindIcon find);

}  // namespace quillo
