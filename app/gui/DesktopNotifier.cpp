#include "app/gui/DesktopNotifier.hpp"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>

namespace quillo {
namespace {

constexpr auto service = "org.freedesktop.Notifications", path = "/org/freedesktop/Notifications";

QDBusMessage call(const QString& method) {
    return QDBusMessage::createMethodCall(service, path, service, method);
}

}  // namespace

DesktopNotifier::DesktopNotifier(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)) {
    bus_.connect(service, path, service, "ActionInvoked", this, SLOT(actionInvoked(uint, QString)));
}

void DesktopNotifier::notify(const QString& title, const QString& text) {
    if (markup_) return send(title, text, *markup_);
    auto* const asked = new QDBusPendingCallWatcher(bus_.asyncCall(call("GetCapabilities")), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this, asked, title, text] {
        const QDBusPendingReply<QStringList> capabilities = *asked;
        asked->deleteLater();
        if (!capabilities.isValid()) return;
        markup_ = capabilities.value().contains("body-markup");
        send(title, text, *markup_);
    });
}

void DesktopNotifier::send(const QString& title, const QString& text, bool markup) {
    constexpr int asLongAsTheDesktopLikes = -1;
    QDBusMessage message = call("Notify");
    message << "Quillo" << shown_ << "app.quillo.Quillo" << title << (markup ? text.toHtmlEscaped() : text)
            << QStringList{"default", "Open Quillo"} << QVariantMap{{"desktop-entry", "app.quillo.Quillo"}}
            << asLongAsTheDesktopLikes;
    auto* const sent = new QDBusPendingCallWatcher(bus_.asyncCall(message), this);
    connect(sent, &QDBusPendingCallWatcher::finished, this, [this, sent] {
        const QDBusPendingReply<uint> id = *sent;
        sent->deleteLater();
        if (id.isValid()) shown_ = id.value();
    });
}

void DesktopNotifier::actionInvoked(uint id, const QString&) {
    if (id == shown_ && clicked) clicked();
}

}  // namespace quillo
