// The model on the session bus, called by another connection.
#include "app/gui/WorkspacesObject.hpp"

#include <QDBusPendingCall>
#include <QDBusReply>
#include <QSignalSpy>

#include "tests/app/ModelFixture.hpp"
#include "tests/gui/session/MockedService.hpp"

namespace quillo::x11test {
namespace {

class WorkspacesObjectTest : public testing::Test {
  protected:
    WorkspacesObjectTest() { object.attach(automation); }
    QDBusMessage call(const QString& method, const QVariantList& arguments = {}) {
        QDBusMessage message = QDBusMessage::createMethodCall(QDBusConnection::sessionBus().baseService(),
                                                              WorkspacesObject::path, "app.quillo.Workspaces1", method);
        message.setArguments(arguments);
        const QDBusPendingCall pending = other.asyncCall(message);
        untilQt([&] {
            model.run(std::chrono::milliseconds(20));
            return pending.isFinished();
        });
        return pending.reply();
    }

    QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "another program");
    samples::Model model;
    Automation automation{*model.model};
    WorkspacesObject object{QDBusConnection::sessionBus()};
};

TEST_F(WorkspacesObjectTest, AnswersAndSignals) {
    const QDBusMessage saved = call("Save", {"Desk"});
    ASSERT_EQ(saved.signature(), "s") << saved.errorMessage().toStdString();
    const QString id = saved.arguments()[0].toString();
    EXPECT_EQ(call("List").signature(), "a(ss)");
    const QDBusReply<QVariantMap> plan = call("Plan", {"desk"});
    EXPECT_EQ(plan.value().value("inPlace").toLongLong(), 2);
    EXPECT_EQ(call("Restore", {id}).arguments(), QVariantList{"waiting"});
    EXPECT_EQ(call("Restore", {"Nothing"}).errorName(), "app.quillo.Error.NotFound");
    EXPECT_EQ(call("Save", {""}).errorName(), "org.freedesktop.DBus.Error.InvalidArgs");
    model.disk.createFailure = Error{ErrorKind::noSpace, "/home/ada/.local is full"};
    EXPECT_FALSE(call("Save", {"Other"}).errorMessage().contains("/home")) << "paths are not for others";
    model.disk.createFailure.reset();

    QSignalSpy ended(&object, &WorkspacesObject::RestoreEnded);
    model->answerQuestion(true);
    model.finishRestore();
    ASSERT_EQ(ended.size(), 1);
    EXPECT_EQ(ended[0][1], "Desk");
    EXPECT_EQ(ended[0][2].toMap().value("restored").toLongLong(), 2);
    const QString interface = ask(QDBusConnection::sessionBus().baseService(), WorkspacesObject::path,
                                  "org.freedesktop.DBus.Introspectable", "Introspect")[0]
                                  .toString();
    for (const char* name : {"RestoreStarted", "RestoreProgress", "RestoreEnded", "Saved", "Renamed", "Deleted"})
        EXPECT_TRUE(interface.contains(QString("<signal name=\"%1\">").arg(name))) << name;
}

}  // namespace
}  // namespace quillo::x11test
