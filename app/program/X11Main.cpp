// The application on a Linux desktop.
#include <QQuickWindow>

#include "app/QtExecutor.hpp"
#include "app/program/Program.hpp"
#include "app/program/ProgramArguments.hpp"
#include "platform/posix/FileDefaults.hpp"
#include "platform/posix/FileLog.hpp"
#include "platform/posix/FreeMemory.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "platform/posix/StandardDirectories.hpp"
#include "platform/x11/AutostartEntry.hpp"
#include "platform/x11/LogindPowerEvents.hpp"
#include "platform/x11/PackageUpdater.hpp"
#include "platform/x11/Sha256.hpp"
#include "platform/x11/SystemTray.hpp"
#include "platform/x11/X11Desktop.hpp"
#include "platform/x11/X11HotKeys.hpp"
#include "platform/x11/X11KeyboardLayout.hpp"

namespace quillo {
namespace {

/// The services, in the order in which they need each other.
struct LinuxServices {
    LinuxServices(Executor& executor, const StandardDirectories& directories, X11Desktop& desktop,
                  const x11::X11Connection& connection)
        : log(directories.state / "quillo.log"),
          defaults(files, directories.config / "defaults.json"),
          access{desktop.platform(log), handles},
          hotKeys(executor),
          keyboard(connection),
          loginItem(files),
          power(executor) {}

    PosixFileSystem files;
    FileLog log;
    FileDefaults defaults;
    WindowHandleCache handles;
    DesktopAccess access;
    X11HotKeys hotKeys;
    X11KeyboardLayout keyboard;
    AutostartEntry loginItem;
    PackageUpdater updater;
    LogindPowerEvents power;
};

int run(QApplication& application, LaunchRequest request) {
    const Result<StandardDirectories> directories = StandardDirectories::find();
    if (!directories) return refuse(directories.error().text);
    Program* running = nullptr;
    SingleInstance instance([&running](LaunchRequest asked, const QString& token) {
        if (!token.isEmpty()) qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
        if (running) running->carryOut(asked);
    });
    const Result<bool> first = instance.claim(request);
    if (!first) return refuse(first.error().text);
    if (!*first) return 0;

    QtExecutor executor;
    const auto desktop = X11Desktop::create(executor, {});
    if (!desktop) return refuse(desktop.error().text);
    const auto connection = x11::X11Connection::open({});
    if (!connection) return refuse(connection.error().text);
    LinuxServices services(executor, *directories, **desktop, **connection);
    Program program({.desktop = services.access,
                     .files = services.files,
                     .data = directories->data,
                     .defaults = services.defaults,
                     .digest = x11::sha256,
                     .hotKeys = services.hotKeys,
                     .keyboard = services.keyboard,
                     .nativeKeys = NativeKeys::x11,
                     .loginItem = services.loginItem,
                     .updater = services.updater,
                     .power = services.power,
                     .shell = nullptr,
                     .variant = TextVariant::onLinux,
                     .icon = nullptr,
                     .olderTrayIsThere = [&] { return x11::hasSystemTray(**connection); },
                     .releaseFreeMemory = releaseFreeMemory});
    running = &program;
    program.carryOut(request);
    const int status = application.exec();
    running = nullptr;
    return status;
}

}  // namespace
}  // namespace quillo

int main(int argumentCount, char** arguments) {
    QStringList given;
    for (int i = 1; i < argumentCount; ++i) given << QString::fromLocal8Bit(arguments[i]);
    if (const std::optional<int> status = quillo::printed(given)) return *status;
    // Windows of others are moved through the X server, and the global shortcuts are its own.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "xcb");
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QApplication application(argumentCount, arguments);
    QApplication::setApplicationName("Quillo");
    QApplication::setDesktopFileName("app.quillo.Quillo");
    QApplication::setWindowIcon(quillo::applicationIcon());
    QApplication::setQuitOnLastWindowClosed(false);
    return quillo::run(application, *quillo::launchRequest(given));
}
