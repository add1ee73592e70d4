// One Quillo for each session: a second start hands over what it was started for, and ends.
#pragma once
#include <QLocalServer>
#include <QObject>
#include <QString>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include "WindowEngine/services/FileSystem.hpp"
#include "WindowEngine/support/Error.hpp"

namespace quillo {

enum class LaunchRequest { openWindow, saveDesktop, openSwitcher, stayInBackground, logIn, openAddress };

/// What a start of the program is for.
struct Launch {
    LaunchRequest request = LaunchRequest::openWindow;
    QString address = {};  // of openAddress: a link, as somebody else wrote it
};

/// By the arguments after the program's name: none, "--save", "--switcher", a link (quillo:...) or, as the
/// desktop starts it at login, "--background", and as the session bus does, "--service". Others are an error
/// that names them.
Result<Launch> launchOf(const QStringList& arguments);

/// By the name of an action as the desktop's entry and other starts give it; "" is openWindow, and a link is
/// its own name.
std::optional<Launch> launchOfAction(const QString& action);

/// The session bus holds the name app.quillo.Quillo for the first start, which others call through
/// org.freedesktop.Application. Without a session bus, the lock of a directory and a socket in it do the
/// same.
class SingleInstance final : public QObject {
    Q_OBJECT

  public:
    /// Another start asks for something; in a turn of Qt's loop, once this process is the first. The token
    /// lets a window come to the front on the person's behalf; empty where there is none that is usable.
    /// Never logIn: the session had begun before.
    using Requested = std::function<void(const Launch& launch, const QString& activationToken)>;

    /// `directory` is made when there is no bus; it must be for this and the person's alone. The locks of
    /// `files` should not wait. `files` outlives this.
    SingleInstance(Requested requested, FileSystem& files, std::filesystem::path directory,
                   QObject* parent = nullptr);
    ~SingleInstance() override;

    /// True: this process is the first. False: another one is, and has been handed the request. An error:
    /// another one is, and does not answer. May block for some seconds on the other.
    Result<bool> claim(const Launch& launch, const QString& activationToken);

  private:
    enum class Claim { first, taken, noBus };

    Claim claimName();
    Result<bool> handOverOnBus(const Launch& launch, const QString& token);
    Result<bool> claimLock(const Launch& launch, const QString& token);
    Result<bool> handOverOnSocket(const Launch& launch, const QString& token, const QString& place);
    void serveConnection();

    Requested requested_;
    bool ownsName_ = false;
    FileSystem& files_;
    std::filesystem::path directory_;
    std::unique_ptr<DirectoryLock> lock_;
    QLocalServer server_;
};

}  // namespace quillo
