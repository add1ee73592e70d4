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
    void notify(const QString& title, const QString& text);
    /// The person clicked on the message.
    std::function<void()> clicked;

  private:
    void send(const QString& title, const QString& text, bool markup);
    Q_SLOT void actionInvoked(uint id, const QString& action);

    QDBusConnection bus_;
    std::optional<bool> markup_;  // whether the desktop reads texts as markup; asked once
    uint shown_ = 0;
};

}  // namespace quillo
