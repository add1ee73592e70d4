// The icons of applications: from their .desktop files, and never from anywhere else.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include "app/gui/AppIcons.hpp"

namespace quillo {
namespace {

void write(const QString& path, const QByteArray& content) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
}

TEST(AppIcons, ComeFromTheMainGroupOfTheDesktopFile) {
    const QTemporaryDir directory;
    QImage picture(64, 64, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    const QString file = directory.filePath("picture.png");
    ASSERT_TRUE(picture.save(file));
    ASSERT_TRUE(QDir(directory.path()).mkdir("sub"));
    const QByteArray icon = "Icon=" + file.toUtf8() + "\n";
    write(directory.filePath("good.desktop"), "[Desktop Entry]\nName=Good\n" + icon);
    write(directory.filePath("action.desktop"), "[Desktop Entry]\n[Desktop Action new]\n" + icon);
    write(directory.filePath("none.desktop"), "[Desktop Entry]\nIcon=there-is-no-such-icon\n");
    write(directory.filePath("sub/other.desktop"), "[Desktop Entry]\n" + icon);
    AppIcons icons(QStringList{directory.filePath("missing"), directory.path()});
    EXPECT_EQ(icons.find("good", 24).size(), QSize(24, 24));
    EXPECT_EQ(icons.find("good", 24).pixelColor(12, 12), QColor(Qt::red));
    for (const char* identifier : {"action", "none", "unknown", "sub/other", "../good", "", ".."})
        EXPECT_TRUE(icons.find(identifier, 24).isNull()) << identifier;
}

}  // namespace
}  // namespace quillo
