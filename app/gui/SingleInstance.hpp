// One Quillo for each session: a second start hands over what it was started for, and ends.
#pragma once
#include <QLocalServer>
#include <QLockFile>
#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <optional>

#include "WindowEngine/support/Error.hpp"

namespace quillo {

/// What a start of the program is for.
enum class LaunchRequest { openWindow, saveDesktop, openSwitcher, stayInBackground };

/// By the arguments after the program's name: none, "--save", "--switcher" or, as the
/// desktop starts it at login, "--background". Others are an error that names
/// them.
Result<LaunchRequest> launchRequest(const QStringList& arguments);

/// By the name of an action as the desktop's entry and other starts give it; "" is openWindow.
std::optional<LaunchRequest> requestOfAction(const QString& action);

/// The session bus holds the name app.quillo.Quillo for the first start, which others call through
/// org.freedesktop.Application. Without a session bus, a lock and a socket in the runtime directory (or,
/// where there is none, in the person's data directory) do the same.
class SingleInstance final : public QObject {
    Q_OBJECT

  public:
    /// Another start asks for something; in a turn of Qt's loop, once this process is the first. The token
    /// lets a window come to the front on the person's behalf; empty where there is none.
    using Requested = std::function<void(LaunchRequest request, const QString& activationToken)>;

    explicit SingleInstance(Requested requested, QObject* parent = nullptr);
    ~SingleInstance() override;

    /// True: this process is the first. False: another one is, and has been handed the request. An error:
    /// another one is, and does not answer. May block for some seconds on the other.
    Result<bool> claim(LaunchRequest request);

  private:
    enum class Claim { first, taken, noBus };

    Claim claimName();
    Result<bool> handOverOnBus(LaunchRequest request);
    Result<bool> claimLock(LaunchRequest request);
    Result<bool> handOverOnSocket(LaunchRequest request, const QString& socket);
    void serveConnection();

    Requested requested_;
    bool ownsName_ = false;
    std::unique_ptr<QLockFile> lock_;
    QLocalServer server_;
};

}  // namespace quillo
