// Messages of the desktop's own, outside any window.
#pragma once
#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <functional>
#include <optional>

namespace quillo {

/// Over org.freedesktop.Notifications; where nothing answers there, nothing is shown and nothing is said. A
/// newer message takes the place of the one before.
class DesktopNotifier final : public QObject {
    Q_OBJECT

  public:
    explicit DesktopNotifier(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    /// Plain texts. Returns at once.
    void notify(const QString& title, const QString& text) { offer(title, text, {}, {}); }
    /// With a button, where one is named, that does `taken`.
    void offer(const QString& title, const QString& text, const QString& button, std::function<void()> taken);
    /// The person clicked on the message.
    std::function<void()> clicked;

  private:
    struct Message {
        QString title, text, button;
    };
    void send(const Message& message, bool markup);
    Q_SLOT void actionInvoked(uint id, const QString& action);

    QDBusConnection bus_;
    std::optional<bool> markup_;  // whether the desktop reads texts as markup; asked once
    uint shown_ = 0;
    std::function<void()> taken_;  // of the latest message; empty where it has no button
};

}  // namespace quillo
