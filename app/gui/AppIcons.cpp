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

}  // namespace

AppIcons::AppIcons() : AppIcons(QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation)) {}

AppIcons::AppIcons(QStringList applicationDirectories) : directories_(std::move(applicationDirectories)) {}

QString AppIcons::iconName(const QString& identifier) const {
    for (const QString& directory : directories_) {
        QFile file(directory + '/' + identifier + ".desktop");
        if (file.open(QIODevice::ReadOnly)) return iconEntry(file);
    }
    return {};
}

QImage AppIcons::find(const QString& identifier, int size) {
    if (!isFileName(identifier) || size <= 0) return {};
    const QString key = identifier + '/' + QString::number(size);
    if (const QImage* known = found_.object(key)) return *known;
    const QString name = iconName(identifier);
    const QIcon icon = QDir::isAbsolutePath(name) ? QIcon(name) : QIcon::fromTheme(name);
    QImage image = icon.isNull() ? QImage() : icon.pixmap(QSize(size, size), 1.0).toImage();
    found_.insert(key, new QImage(image), 1 + std::max<qsizetype>(0, image.sizeInBytes() / 1024));
    return image;
}

}  // namespace quillo
