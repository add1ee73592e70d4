#include "app/gui/TrayIcon.hpp"

#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QFile>
#include <QGuiApplication>

namespace quillo {
namespace {

constexpr auto notifierWatcher = "org.kde.StatusNotifierWatcher";
constexpr auto notifierPath = "/StatusNotifierWatcher";

QIcon iconNamed(const QString& name) {
    QIcon drawn;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        drawn.addFile(QStringLiteral(":/icons/app.quillo.Quillo-%1.png").arg(size), QSize(size, size));
    }
    return QIcon::fromTheme(name, drawn);
}

/// A picture that the system colours itself, where the build has one; else the desktop's own.
QIcon trayIcon() {
    const QString drawn = QStringLiteral(":/icons/tray-mask.png");
    if (!QFile::exists(drawn)) return iconNamed("app.quillo.Quillo-symbolic");
    QIcon mask(drawn);
    mask.setIsMask(true);
    return mask;
}

}  // namespace

QIcon applicationIcon() {
    return iconNamed("app.quillo.Quillo");
}

TrayIcon::TrayIcon(TrayMenu& menu, std::function<bool()> olderTrayIsThere, QObject* parent)
    : QObject(parent),
      menu_(menu),
      olderTrayIsThere_(std::move(olderTrayIsThere)),
      watcher_(notifierWatcher, bus_, QDBusServiceWatcher::WatchForRegistration) {
    patience_.setSingleShot(true);
    connect(&patience_, &QTimer::timeout, this, &TrayIcon::show);
    lookForTray();
}

bool TrayIcon::shown() const {
    return icon_ && QSystemTrayIcon::isSystemTrayAvailable();
}

void TrayIcon::lookForTray() {
    if (!olderTrayIsThere_ || !bus_.isConnected()) return show();
    bus_.connect(notifierWatcher, notifierPath, notifierWatcher, "StatusNotifierHostRegistered", this,
                 SLOT(hostRegistered()));
    connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, this, &TrayIcon::askForHost);
    if (bus_.interface()->isServiceRegistered(notifierWatcher)) {
        askForHost();
    } else if (olderTrayIsThere_()) {
        return show();
    }
    patience_.start(patience);
}

/// Qt takes StatusNotifier only where a host, which draws the icons, is registered with the watcher.
void TrayIcon::askForHost() {
    QDBusMessage question = QDBusMessage::createMethodCall(notifierWatcher, notifierPath,
                                                           "org.freedesktop.DBus.Properties", "Get");
    question << notifierWatcher << "IsStatusNotifierHostRegistered";
    auto* const call = new QDBusPendingCallWatcher(bus_.asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        const QDBusPendingReply<QDBusVariant> answer = *call;
        call->deleteLater();
        if ((answer.isValid() && answer.value().variant().toBool()) || olderTrayIsThere_()) show();
    });
}

void TrayIcon::show() {
    if (icon_) return;
    patience_.stop();
    icon_ = std::make_unique<QSystemTrayIcon>(trayIcon());
    icon_->setToolTip("Quillo");
    icon_->setContextMenu(&menu_.menu());
    const bool inMenuBar = !olderTrayIsThere_;
    menu_.setDrawnBy(menu_.menu().platformMenu() && !inMenuBar ? MenuDrawnBy::desktop : MenuDrawnBy::qt);
    if (inMenuBar) return icon_->show();  // a click opens the menu, and is told of all the same
    connect(icon_.get(), &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) menu_.model().openMain();
    });
    icon_->show();
}

}  // namespace quillo
