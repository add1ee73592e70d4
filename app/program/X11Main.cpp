// The application on a Linux desktop.
#include <QQuickWindow>
#include <cmath>

#include "app/QtExecutor.hpp"
#include "app/gui/ActivationToken.hpp"
#include "app/gui/WorkspacesObject.hpp"
#include "app/program/Program.hpp"
#include "app/program/ProgramArguments.hpp"
#include "platform/linux/AutostartEntry.hpp"
#include "platform/linux/LogindPowerEvents.hpp"
#include "platform/linux/PackageUpdater.hpp"
#include "platform/linux/Sha256.hpp"
#include "platform/posix/FileDefaults.hpp"
#include "platform/posix/FileLog.hpp"
#include "platform/posix/FreeMemory.hpp"
#include "platform/posix/PosixFileSystem.hpp"
#include "platform/posix/StandardDirectories.hpp"
#include "platform/x11/PanelBackdrop.hpp"
#include "platform/x11/SystemTray.hpp"
#include "platform/x11/X11Desktop.hpp"
#include "platform/x11/X11HotKeys.hpp"
#include "platform/x11/X11KeyboardLayout.hpp"
#include "settings/Launchers.hpp"

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

    SystemServices list() {
        return {.desktop = access,
                .files = files,
                .defaults = defaults,
                .hotKeys = hotKeys,
                .keyboard = keyboard,
                .loginItem = loginItem,
                .updater = updater,
                .power = power,
                .nativeShell = nullptr};
    }

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

/// Through the connection that made the window: on another one the server may not know it yet.
void declareShadow(const QWindow& window, const QMargins& shadow) {
    const auto* qt = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (!qt) return;
    const auto pixels = [ratio = window.devicePixelRatio()](int points) {
        return static_cast<std::uint32_t>(std::lround(points * ratio));
    };
    x11::declareShadow(
        qt->connection(), static_cast<xcb_window_t>(window.winId()), pixels(window.width()),
        pixels(window.height()),
        {pixels(shadow.left()), pixels(shadow.right()), pixels(shadow.top()), pixels(shadow.bottom())});
}

int run(QApplication& application, const Launch& launch, const QString& token) {
    const Result<StandardDirectories> directories = StandardDirectories::find();
    if (!directories) return refuse(directories.error().text);
    Program* running = nullptr;
    const auto carryOut = [&running](const Launch& asked, const QString& activationToken) {
        const OfferedActivationToken offered(activationToken);
        if (running) running->carryOut(asked);
    };
    WorkspacesObject workspaces(QDBusConnection::sessionBus());  // before the name by which it is found
    PosixFileSystem lockedAtOnce(std::chrono::milliseconds(0));
    SingleInstance instance(carryOut, lockedAtOnce, directories->runtime);
    const Result<bool> first = instance.claim(launch, token);
    if (!first) return refuse(first.error().text);
    if (!*first) return 0;

    QtExecutor executor;
    PosixFileSystem settingsFiles;
    FileDefaults commandSettings(settingsFiles, directories->config / "defaults.json");
    const auto commandOf = [launchers = Launchers(commandSettings)](std::string_view identifier) {
        return launchers.find(identifier);
    };
    const auto desktop = X11Desktop::create(executor, {.commandOf = commandOf});
    if (!desktop) return refuse(desktop.error().text);
    const auto connection = x11::X11Connection::open({});
    if (!connection) return refuse(connection.error().text);
    LinuxServices services(executor, *directories, **desktop, **connection);
    Program program({.services = services.list(),
                     .data = directories->data,
                     .digest = sha256,
                     .nativeKeys = NativeKeys::x11,
                     .variant = TextVariant::onLinux,
                     .icon = nullptr,
                     .olderTrayIsThere = [&] { return x11::hasSystemTray(**connection); },
                     .panels = {.translucent = [&] { return x11::isComposited(**connection); },
                                .declareShadow = declareShadow},
                     .releaseFreeMemory = releaseFreeMemory});
    workspaces.attach(program.automation());
    running = &program;
    carryOut(launch, token);
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
    const QString token = quillo::takeActivationToken();
    QApplication application(argumentCount, arguments);
    QApplication::setApplicationName("Quillo");
    QApplication::setDesktopFileName("app.quillo.Quillo");
    QApplication::setWindowIcon(quillo::applicationIcon());
    QApplication::setQuitOnLastWindowClosed(false);
    return quillo::run(application, *quillo::launchOf(given), token);
}
