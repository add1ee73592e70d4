// The application on a Mac.
#include <QQuickWindow>

#include "app/QtExecutor.hpp"
#include "app/gui/OpenedAddresses.hpp"
#include "app/program/Program.hpp"
#include "app/program/ProgramArguments.hpp"
#include "platform/macos/MacDefaults.hpp"
#include "platform/macos/MacHotKeys.hpp"
#include "platform/macos/MacKeyboardLayout.hpp"
#include "platform/macos/MacLog.hpp"
#include "platform/macos/MacSha256.hpp"
#include "platform/macos/shell/MacActivity.hpp"
#include "platform/macos/shell/MacApplicationEvents.hpp"
#include "platform/macos/shell/MacDesktop.hpp"
#include "platform/macos/shell/MacIcons.hpp"
#include "platform/macos/shell/MacLoginItem.hpp"
#include "platform/macos/shell/MacPowerEvents.hpp"
#include "platform/macos/shell/MacShell.hpp"
#include "platform/macos/shell/MacUpdater.hpp"
#include "platform/posix/FreeMemory.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "platform/posix/StandardDirectories.hpp"

namespace quillo {
namespace {

/// The services, in the order in which they need each other.
struct MacServices {
    explicit MacServices(Executor& executor) : desktop(executor), power(executor) {}

    SystemServices list() {
        return {.desktop = access,
                .files = files,
                .defaults = defaults,
                .hotKeys = hotKeys,
                .keyboard = keyboard,
                .loginItem = loginItem,
                .updater = updater,
                .power = power,
                .nativeShell = &shell};
    }

    PosixFileSystem files;
    MacLog log;
    MacDefaults defaults;
    WindowHandleCache handles;
    MacDesktop desktop;
    DesktopAccess access{desktop.platform(log), handles};
    MacHotKeys hotKeys;
    MacKeyboardLayout keyboard;
    MacLoginItem loginItem;
    MacUpdater updater;
    MacPowerEvents power;
    MacShell shell;
    MacActivity activity;
};

int run(QApplication& application, const Launch& launch) {
    const Result<StandardDirectories> directories = StandardDirectories::find();
    if (!directories) return refuse(directories.error().text);
    Program* running = nullptr;
    const auto carryOut = [&running](const Launch& asked, const QString&) {
        if (running) running->carryOut(asked);
    };
    PosixFileSystem lockedAtOnce(std::chrono::milliseconds(0));
    SingleInstance instance(carryOut, lockedAtOnce, directories->runtime);
    const Result<bool> first = instance.claim(launch, {});
    if (!first) return refuse(first.error().text);
    if (!*first) return 0;

    QtExecutor executor;
    MacServices services(executor);
    Program program({.services = services.list(),
                     .data = directories->data,
                     .digest = macSha256,
                     .nativeKeys = NativeKeys::mac,
                     .variant = TextVariant::onMac,
                     .icon = macIcon,
                     .olderTrayIsThere = nullptr,  // the menu bar always is
                     .panels = {.translucent = [] { return true; }, .declareShadow = nullptr},
                     .releaseFreeMemory = releaseFreeMemory});
    running = &program;
    QObject::connect(&program.model(), &AppModel::busyChanged,
                     [&] { services.activity.set(program.model().busy()); });
    // The login item brings no arguments: only the system knows that nobody asked for a window.
    const MacApplicationEvents events(
        {.started = [&](bool atLogin) { program.carryOut(atLogin ? Launch{LaunchRequest::logIn} : launch); },
         .reopened = [&] { program.carryOut({}); }});
    const OpenedAddresses addresses(application, [&](const Launch& opened) { program.carryOut(opened); });
    const int status = application.exec();
    running = nullptr;
    return status;
}

}  // namespace
}  // namespace quillo

int main(int argumentCount, char** arguments) {
    QStringList given;
    for (int i = 1; i < argumentCount; ++i) {
        const QString argument = QString::fromLocal8Bit(arguments[i]);
        // The Finder names the process to the program that it starts, at the first start of a download at
        // least: nobody's wish, and no reason to refuse to start.
        if (!argument.startsWith(QLatin1String("-psn_"))) given << argument;
    }
    if (const std::optional<int> status = quillo::printed(given)) return *status;
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argumentCount, arguments);
    QApplication::setApplicationName("Quillo");
    QApplication::setQuitOnLastWindowClosed(false);
    return quillo::run(application, *quillo::launchOf(given));
}
