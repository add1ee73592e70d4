#include "app/gui/SingleInstance.hpp"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDeadlineTimer>
#include <QFile>
#include <QLocalSocket>
#include <QStringList>
#include <QThread>
#include <algorithm>
#include <array>

#include "app/WorkspaceAddress.hpp"
#include "app/gui/ActivationToken.hpp"
#include "app/gui/ApplicationObject.hpp"

namespace quillo {

namespace {

constexpr auto serviceName = "app.quillo.Quillo", objectPath = "/app/quillo/Quillo",
               interfaceName = "org.freedesktop.Application";
constexpr int answerMilliseconds = 5000;
constexpr qint64 longestMessage = 4096;

struct RequestName {
    LaunchRequest request;
    const char *argument, *action;  // none: what happens without
};
constexpr std::array requestNames{RequestName{LaunchRequest::openWindow, "", ""},
                                  RequestName{LaunchRequest::saveDesktop, "--save", "save"},
                                  RequestName{LaunchRequest::openSwitcher, "--switcher", "switcher"},
                                  RequestName{LaunchRequest::stayInBackground, "--service", "service"},
                                  RequestName{LaunchRequest::logIn, "--background", "background"}};

QString actionOf(const Launch& launch) {
    if (launch.request == LaunchRequest::openAddress) return launch.address;
    return QString::fromLatin1(
        std::ranges::find(requestNames, launch.request, &RequestName::request)->action);
}

/// One that goes through a line of the socket.
std::optional<Launch> launchOfAddress(const QString& text) {
    if (!isWorkspaceAddress(text.toStdString()) || text.contains('\n')) return std::nullopt;
    return Launch{LaunchRequest::openAddress, text};
}

std::unexpected<Error> noAnswer() {
    return fail(ErrorKind::timedOut, "Quillo is running already, but does not answer.");
}

}  // namespace

std::optional<Launch> launchOfAction(const QString& action) {
    const auto found = std::ranges::find_if(
        requestNames, [&](const RequestName& one) { return action == QLatin1String(one.action); });
    return found != requestNames.end() ? std::optional(Launch{found->request}) : launchOfAddress(action);
}

Result<Launch> launchOf(const QStringList& arguments) {
    if (arguments.isEmpty()) return Launch{};
    for (const RequestName& one : requestNames) {
        if (arguments.size() == 1 && *one.argument && arguments.first() == QLatin1String(one.argument))
            return Launch{one.request};
    }
    if (arguments.size() == 1) {
        if (const auto launch = launchOfAddress(arguments.first())) return *launch;
    }
    return fail(ErrorKind::invalidArgument,
                "unknown argument: " + arguments.value(arguments.size() == 1 ? 0 : 1).toStdString());
}

SingleInstance::SingleInstance(Requested requested, FileSystem& files, std::filesystem::path directory,
                               QObject* parent)
    : QObject(parent),
      requested_([given = std::move(requested)](const Launch& launch, const QString& token) {
          const bool late = launch.request == LaunchRequest::logIn;
          given(late ? Launch{LaunchRequest::stayInBackground} : launch, usableActivationToken(token));
      }),
      files_(files),
      directory_(std::move(directory)) {
    connect(&server_, &QLocalServer::newConnection, this, &SingleInstance::serveConnection);
}

SingleInstance::~SingleInstance() {
    if (!ownsName_) return;
    QDBusConnection::sessionBus().unregisterService(serviceName);
    QDBusConnection::sessionBus().unregisterObject(objectPath);
}

Result<bool> SingleInstance::claim(const Launch& launch, const QString& activationToken) {
    switch (claimName()) {
        case Claim::first:
            return true;
        case Claim::taken:
            return handOverOnBus(launch, activationToken);
        case Claim::noBus:
            break;
    }
    return claimLock(launch, activationToken);
}

/// The object is there before the name is: whoever finds the name is answered.
SingleInstance::Claim SingleInstance::claimName() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) return Claim::noBus;
    bus.registerObject(objectPath, new ApplicationObject(requested_, this), QDBusConnection::ExportAllSlots);
    ownsName_ =
        bus.interface()->registerService(serviceName).value() == QDBusConnectionInterface::ServiceRegistered;
    return ownsName_ ? Claim::first : Claim::taken;
}

Result<bool> SingleInstance::handOverOnBus(const Launch& launch, const QString& token) {
    const bool plain = launch.request == LaunchRequest::openWindow;
    const bool address = launch.request == LaunchRequest::openAddress;
    const char* const method = plain ? "Activate" : address ? "Open" : "ActivateAction";
    QDBusMessage message = QDBusMessage::createMethodCall(serviceName, objectPath, interfaceName, method);
    const QVariantMap platformData{{"activation-token", token}, {"desktop-startup-id", token}};
    if (address) message << QStringList{launch.address};
    if (!plain && !address) message << actionOf(launch) << QVariantList();
    message << platformData;
    message.setAutoStartService(false);
    const QDBusMessage answer = QDBusConnection::sessionBus().call(message, QDBus::Block, answerMilliseconds);
    if (answer.type() == QDBusMessage::ReplyMessage) return false;
    return noAnswer();
}

/// The directory lets nobody else in, so that the socket needs no guarding while it is made.
Result<bool> SingleInstance::claimLock(const Launch& launch, const QString& token) {
    if (const auto created = files_.createDirectories(directory_); !created)
        return std::unexpected(created.error());
    const QString socket = QString::fromStdString((directory_ / "socket").string());
    auto lock = files_.lock(directory_);
    if (!lock && lock.error().kind == ErrorKind::locked) return handOverOnSocket(launch, token, socket);
    if (!lock) return std::unexpected(lock.error());
    lock_ = *std::move(lock);
    QLocalServer::removeServer(socket);  // of a process that ended without tidying up
    server_.listen(socket);
    QFile::setPermissions(socket, QFile::ReadOwner | QFile::WriteOwner);
    return true;
}

/// One line with the action and one with the token; the answer tells that they have arrived.
Result<bool> SingleInstance::handOverOnSocket(const Launch& launch, const QString& token,
                                              const QString& place) {
    const QDeadlineTimer deadline(answerMilliseconds);
    QLocalSocket socket;
    for (;; QThread::msleep(20)) {  // the first may hold the lock, and not listen yet
        socket.connectToServer(place);
        if (socket.waitForConnected(200)) break;
        if (deadline.hasExpired()) return noAnswer();
    }
    socket.write((actionOf(launch) + '\n' + token + '\n').toUtf8());
    socket.flush();
    if (!socket.waitForReadyRead(static_cast<int>(deadline.remainingTime()))) return noAnswer();
    return false;
}

void SingleInstance::serveConnection() {
    while (QLocalSocket* const socket = server_.nextPendingConnection()) {
        connect(socket, &QLocalSocket::disconnected, socket, &QObject::deleteLater);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] {
            const QStringList lines = QString::fromUtf8(socket->peek(longestMessage)).split('\n');
            if (lines.size() < 3) {
                if (socket->bytesAvailable() >= longestMessage) socket->abort();
                return;
            }
            socket->readAll();
            socket->write("taken\n");
            socket->flush();
            if (const auto launch = launchOfAction(lines[0])) requested_(*launch, lines[1]);
        });
    }
}

}  // namespace quillo
