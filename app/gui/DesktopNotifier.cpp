#include "app/gui/DesktopNotifier.hpp"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QVariantMap>
#include <utility>

namespace quillo {
namespace {

constexpr auto take = "take";  // the button
constexpr auto service = "org.freedesktop.Notifications", path = "/org/freedesktop/Notifications";

QDBusMessage call(const QString& method) {
    return QDBusMessage::createMethodCall(service, path, service, method);
}

}  // namespace

DesktopNotifier::DesktopNotifier(QDBusConnection bus, QObject* parent)
    : QObject(parent), bus_(std::move(bus)) {
    bus_.connect(service, path, service, "ActionInvoked", this, SLOT(actionInvoked(uint, QString)));
}

void DesktopNotifier::offer(const QString& title, const QString& text, const QString& button,
                            std::function<void()> taken) {
    taken_ = std::move(taken);
    const Message message{title, text, button};
    if (markup_) return send(message, *markup_);
    auto* const asked = new QDBusPendingCallWatcher(bus_.asyncCall(call("GetCapabilities")), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this, asked, message] {
        const QDBusPendingReply<QStringList> capabilities = *asked;
        asked->deleteLater();
        if (!capabilities.isValid()) return;
        markup_ = capabilities.value().contains("body-markup");
        send(message, *markup_);
    });
}

void DesktopNotifier::send(const Message& message, bool markup) {
    constexpr int asLongAsTheDesktopLikes = -1;
    QStringList actions{"default", "Open Quillo"};
    if (!message.button.isEmpty()) actions << take << message.button;
    QDBusMessage request = call("Notify");
    request << "Quillo" << shown_ << "app.quillo.Quillo" << message.title
            << (markup ? message.text.toHtmlEscaped() : message.text) << actions
            << QVariantMap{{"desktop-entry", "app.quillo.Quillo"}} << asLongAsTheDesktopLikes;
    auto* const sent = new QDBusPendingCallWatcher(bus_.asyncCall(request), this);
    connect(sent, &QDBusPendingCallWatcher::finished, this, [this, sent] {
        const QDBusPendingReply<uint> id = *sent;
        sent->deleteLater();
        if (id.isValid()) shown_ = id.value();
    });
}

void DesktopNotifier::actionInvoked(uint id, const QString& action) {
    if (id != shown_) return;
    if (action != take && clicked) return clicked();
    if (const auto taken = std::exchange(taken_, nullptr); action == take && taken) taken();
}

}  // namespace quillo
