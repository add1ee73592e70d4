// Services of a desktop, as other processes on a session bus of the tests' own, and a connection that plays
// the desktop towards this program.
#pragma once
#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <vector>

#include "tests/platform/x11/PrivateDesktop.hpp"

namespace quillo::x11test {

/// Lets Qt's loop run until the condition holds, some seconds at most.
bool untilQt(const std::function<bool()>& condition);

/// Asks on a connection of its own, while this program's own services can answer; null, and the test fails,
/// where the answer is an error.
QVariantList ask(const QString& service, const QString& path, const QString& interface, const QString& method,
                 const QVariantList& arguments = {});

class MockedService {
  public:
    /// On the bus when this returns. `template`: of dbusmock's own, or none.
    MockedService(QString service, QString path, const char* dbusmockTemplate = nullptr);

    /// `code`: Python, of which `ret` is the answer.
    void addMethod(const QString& name, const QString& in, const QString& out, const QString& code);
    void addProperty(const QString& name, const QVariant& value);
    void emitSignal(const QString& name, const QString& signature, const QVariantList& arguments);
    /// The arguments of each call so far.
    std::vector<QVariantList> calls(const QString& method);

  private:
    QVariantList mock(const QString& method, const QVariantList& arguments);

    QString service_, path_;
    Process process_;
};

}  // namespace quillo::x11test
