// The model on the session bus, called by another connection.
#include <QDBusPendingCall>
#include <QDBusReply>
#include <QSignalSpy>

#include "app/gui/WorkspacesObject.hpp"
#include "platform/linux/BusRestoreEvents.hpp"
#include "tests/app/ModelFixture.hpp"
#include "tests/gui/session/MockedService.hpp"

namespace quillo::x11test {
namespace {

class WorkspacesObjectTest : public testing::Test {
  protected:
    WorkspacesObjectTest() { object.attach(automation); }
    QDBusMessage call(const QString& method, const QVariantList& arguments = {}) {
        QDBusMessage message =
            QDBusMessage::createMethodCall(QDBusConnection::sessionBus().baseService(),
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
    for (const char* name :
         {"RestoreStarted", "RestoreProgress", "RestoreEnded", "Saved", "Renamed", "Deleted"})
        EXPECT_TRUE(interface.contains(QString("<signal name=\"%1\">").arg(name))) << name;
}

TEST_F(WorkspacesObjectTest, ItsRestoresAreHeardByOtherProcesses) {
    ASSERT_TRUE(QDBusConnection::sessionBus().registerService("app.quillo.Quillo"));
    VirtualExecutor loop;
    std::vector<RestoreEvent> heard;
    const auto listening =
        listenOnSessionBus(loop, [&](const RestoreEvent& event) { heard.push_back(event); });
    ASSERT_TRUE(listening);
    ASSERT_TRUE(untilQt([&] {  // the bus knows it by then
        Q_EMIT object.RestoreStarted("probe", "", 0);
        loop.runFor({});
        return !heard.empty();
    }));
    Q_EMIT object.RestoreStarted("a", "Desk", 2);
    Q_EMIT object.RestoreProgress("a", 1, 2);
    Q_EMIT object.Saved("a", "Desk");
    Q_EMIT object.RestoreEnded("a", "Desk", {{"restored", qlonglong(2)}, {"odd", "text"}}, true);
    untilQt([&] {
        loop.runFor({});
        std::erase_if(heard, [](const RestoreEvent& event) { return event.id == "probe"; });
        return heard.size() >= 3;
    });
    using Kind = RestoreEvent::Kind;
    EXPECT_EQ(heard, (std::vector<RestoreEvent>{
                         {.kind = Kind::started, .id = "a", .name = "Desk", .windows = 2},
                         {.kind = Kind::progressed, .id = "a", .name = "", .windows = 2, .windowsDone = 1},
                         {.kind = Kind::ended,
                          .id = "a",
                          .name = "Desk",
                          .totals = {{"restored", 2}},
                          .cancelled = true}}));
    QDBusConnection::sessionBus().unregisterService("app.quillo.Quillo");
}

}  // namespace
}  // namespace quillo::x11test
