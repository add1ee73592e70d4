// The desktop's leave to bring a window to the front on the person's behalf. It is good for one time, and any
// program of the session may hand us one: an environment that kept it would pass it to every application that
// is launched, and one of some size would keep the system from launching any.
#pragma once
#include <QString>

namespace quillo {

/// The token where it can be one: up to 1024 bytes of printable ASCII. Otherwise nothing.
QString usableActivationToken(const QString& token);

/// The one that this process was started with, usable, or nothing. Afterwards the environment holds none,
/// except that one under its older name, if usable, stays for Qt's connection to an X server, which takes it
/// out itself. To be called before there are other threads.
QString takeActivationToken();

/// In the environment, where Qt looks for it, as long as this lives.
class OfferedActivationToken {
  public:
    explicit OfferedActivationToken(const QString& token);
    OfferedActivationToken(const OfferedActivationToken&) = delete;
    OfferedActivationToken& operator=(const OfferedActivationToken&) = delete;
    ~OfferedActivationToken();
};

}  // namespace quillo
