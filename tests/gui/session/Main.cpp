// The tests in this folder have a display and a session bus of their own. "--start [ARGUMENT]" makes this
// program a start of the application as others see it: see SingleInstanceTest.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTextStream>

#include "app/gui/ActivationToken.hpp"
#include "app/gui/SingleInstance.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "platform/posix/StandardDirectories.hpp"
#include "tests/platform/x11/PrivateDesktop.hpp"

namespace {

using namespace quillo;

int say(const QString& text, int status) {
    QTextStream(stdout) << text << Qt::endl;
    return status;
}

int start(int argumentCount, char** arguments) {
    const QString token = takeActivationToken();
    const QCoreApplication application(argumentCount, arguments);
    const auto requested = [](const Launch& launch, const QString& token) {
        const char* const names[] = {"open", "save", "switcher", "service", "background", ""};
        say(names[static_cast<int>(launch.request)] + launch.address + " " + token, 0);
    };
    PosixFileSystem files(std::chrono::milliseconds(0));
    SingleInstance instance(requested, files, StandardDirectories::find()->runtime);
    const auto request = launchOf(QCoreApplication::arguments().mid(2));
    if (!request) return say(QString::fromStdString(request.error().text), 2);
    const auto first = instance.claim(*request, token);
    if (!first) return say(QString::fromStdString(first.error().text), 1);
    say(*first ? "first" : "handed over", 0);
    return *first ? QCoreApplication::exec() : 0;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount > 1 && std::string_view(arguments[1]) == "--start")
        return start(argumentCount, arguments);
    testing::InitGoogleTest(&argumentCount, arguments);
    if (testing::GTEST_FLAG(list_tests)) return RUN_ALL_TESTS();
    const x11test::PrivateDesktop desktop;
    const x11test::SessionBus bus;
    qputenv("QT_QPA_PLATFORM", "xcb");
    const QApplication application(argumentCount, arguments);
    return RUN_ALL_TESTS();
}
