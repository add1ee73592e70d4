// The icons of applications: from their .desktop files, and never from anywhere else.
#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <array>

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
    AppIcons icons(desktopFileIcons(QStringList{directory.filePath("missing"), directory.path()}));
    EXPECT_EQ(icons.find("good", 24).size(), QSize(24, 24));
    EXPECT_EQ(icons.find("good", 24).pixelColor(12, 12), QColor(Qt::red));
    for (const char* identifier : {"action", "none", "unknown", "sub/other", "../good", "", ".."})
        EXPECT_TRUE(icons.find(identifier, 24).isNull()) << identifier;
}

TEST(AppIcons, OfTheSystemAreTakenAsTheirPixelsSayAndAskedForOnce) {
    int asked = 0;
    AppIcons icons(systemIcons([&](const std::string& identifier, int size) -> std::optional<IconPixels> {
        ++asked;
        if (identifier == "none") return std::nullopt;
        std::vector<std::uint8_t> bytes(identifier == "short" ? 3
                                                              : 4 * std::size_t(size) * std::size_t(size));
        const std::array<std::uint8_t, 4> halfBlue{0, 0, 128, 128};  // the second pixel of the first row
        if (bytes.size() > 8) std::ranges::copy(halfBlue, bytes.begin() + 4);
        return IconPixels{.size = size, .bytes = std::move(bytes)};
    }));
    for (int again = 0; again < 2; ++again) {
        const QImage image = icons.find("com.apple.Safari", 2);
        ASSERT_EQ(image.size(), QSize(2, 2));
        EXPECT_EQ(image.pixelColor(1, 0), QColor(0, 0, 255, 128));
        EXPECT_EQ(image.pixelColor(0, 1).alpha(), 0);
        for (const char* identifier : {"none", "short"}) EXPECT_TRUE(icons.find(identifier, 2).isNull());
    }
    EXPECT_EQ(asked, 3);
}

}  // namespace
}  // namespace quillo
