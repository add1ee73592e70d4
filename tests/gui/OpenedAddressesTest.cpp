#include <gtest/gtest.h>

#include <QApplication>
#include <QFileOpenEvent>

#include "app/gui/OpenedAddresses.hpp"

namespace quillo {
namespace {

TEST(OpenedAddresses, LinksAreHandedOnAndFilesAreNot) {
    std::vector<QString> opened;
    const OpenedAddresses addresses(*qApp, [&](const Launch& launch) { opened.push_back(launch.address); });
    for (const char* const one : {"quillo:restore?name=a%20b", "file:///tmp/a", "https://quillo.app/"}) {
        QFileOpenEvent event{QUrl(one)};
        QCoreApplication::sendEvent(qApp, &event);
    }
    EXPECT_EQ(opened, std::vector<QString>{"quillo:restore?name=a%20b"});
}

}  // namespace
}  // namespace quillo
