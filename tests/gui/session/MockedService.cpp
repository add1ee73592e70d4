#include "tests/gui/session/MockedService.hpp"

#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusPendingCall>
#include <QTest>
#include <stdexcept>

namespace quillo::x11test {
namespace {

QDBusConnection desktop() {
    return QDBusConnection::connectToBus(QDBusConnection::SessionBus, "the tests' desktop");
}

std::vector<std::string> command(const QString& service, const QString& path, const char* dbusmockTemplate) {
    // The system's own Python, whatever PATH has: the mock is one of its packages.
    std::vector<std::string> words{"/usr/bin/python3", "-m", "dbusmock", "--session"};
    if (dbusmockTemplate) {
        words.insert(words.end(), {"--template", dbusmockTemplate});
    } else {
        words.insert(words.end(), {service.toStdString(), path.toStdString(), service.toStdString()});
    }
    return words;
}

}  // namespace

bool untilQt(const std::function<bool()>& condition) {
    return QTest::qWaitFor(condition, 10'000);
}

QVariantList ask(const QString& service, const QString& path, const QString& interface, const QString& method,
                 const QVariantList& arguments) {
    QDBusMessage question = QDBusMessage::createMethodCall(service, path, interface, method);
    question.setArguments(arguments);
    const QDBusPendingCall call = desktop().asyncCall(question);
    untilQt([&] { return call.isFinished(); });
    if (call.reply().type() == QDBusMessage::ReplyMessage) return call.reply().arguments();
    ADD_FAILURE() << method.toStdString() << ": " << call.error().message().toStdString();
    return {};
}

MockedService::MockedService(QString service, QString path, const char* dbusmockTemplate)
    : service_(std::move(service)),
      path_(std::move(path)),
      process_(command(service_, path_, dbusmockTemplate)) {
    if (!untilQt([&] { return desktop().interface()->isServiceRegistered(service_).value(); })) {
        throw std::runtime_error("no mocked service");
    }
}

QVariantList MockedService::mock(const QString& method, const QVariantList& arguments) {
    return ask(service_, path_, "org.freedesktop.DBus.Mock", method, arguments);
}

void MockedService::addMethod(const QString& name, const QString& in, const QString& out,
                              const QString& code) {
    mock("AddMethod", {service_, name, in, out, code});
}

void MockedService::addProperty(const QString& name, const QVariant& value) {
    mock("AddProperty", {service_, name, QVariant::fromValue(QDBusVariant(value))});
}

void MockedService::emitSignal(const QString& name, const QString& signature, const QVariantList& arguments) {
    mock("EmitSignal", {service_, name, signature, arguments});
}

std::vector<QVariantList> MockedService::calls(const QString& method) {
    std::vector<QVariantList> calls;
    const auto list = mock("GetMethodCalls", {method}).value(0).value<QDBusArgument>();
    for (list.beginArray(); !list.atEnd();) {
        qulonglong time = 0;
        QVariantList arguments;
        list.beginStructure();
        list >> time >> arguments;
        list.endStructure();
        calls.push_back(arguments);
    }
    list.endArray();
    return calls;
}

}  // namespace quillo::x11test
