#include "app/gui/AppIcons.hpp"

#include <QDir>
#include <QFile>
#include <QIcon>
#include <QPixmap>
#include <QStandardPaths>
#include <algorithm>

namespace quillo {
namespace {

/// The main group's "Icon"; what follows it are the groups of actions, which have icons of their own.
QString iconEntry(QFile& file) {
    bool inMainGroup = false;
    while (!file.atEnd()) {
        const QByteArray line = file.readLine(4096).trimmed();
        if (line.startsWith('[')) inMainGroup = line == "[Desktop Entry]";
        if (inMainGroup && line.startsWith("Icon=")) return QString::fromUtf8(line.mid(5));
    }
    return {};
}

/// An identifier comes from a file that anybody may have written.
bool isFileName(const QString& identifier) {
    return !identifier.isEmpty() && identifier.size() < 200 && !identifier.contains('/') &&
           !identifier.startsWith('.');
}

QString iconName(const QStringList& directories, const QString& identifier) {
    for (const QString& directory : directories) {
        QFile file(directory + '/' + identifier + ".desktop");
        if (file.open(QIODevice::ReadOnly)) return iconEntry(file);
    }
    return {};
}

}  // namespace

AppIcons::Source desktopFileIcons(QStringList directories) {
    return [directories = std::move(directories)](const QString& identifier, int size) {
        if (!isFileName(identifier)) return QImage();
        const QString name = iconName(directories, identifier);
        const QIcon icon = QDir::isAbsolutePath(name) ? QIcon(name) : QIcon::fromTheme(name);
        return icon.isNull() ? QImage() : icon.pixmap(QSize(size, size), 1.0).toImage();
    };
}

AppIcons::Source desktopFileIcons() {
    return desktopFileIcons(QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation));
}

AppIcons::Source systemIcons(FindIcon find) {
    return [find = std::move(find)](const QString& identifier, int size) {
        const std::optional<IconPixels> icon = find(identifier.toStdString(), size);
        if (!icon || icon->bytes.size() != 4 * std::size_t(icon->size) * std::size_t(icon->size))
            return QImage();
        return QImage(icon->bytes.data(), icon->size, icon->size, 4 * icon->size,
                      QImage::Format_RGBA8888_Premultiplied)
            .copy();  // the bytes go with this call
    };
}

QImage AppIcons::find(const QString& identifier, int size) {
    if (identifier.isEmpty() || size <= 0) return {};
    const QString key = identifier + '/' + QString::number(size);
    if (const QImage* known = found_.object(key)) return *known;
    QImage image = source_(identifier, size);
    found_.insert(key, new QImage(image), 1 + std::max<qsizetype>(0, image.sizeInBytes() / 1024));
    return image;
}

}  // namespace quillo
