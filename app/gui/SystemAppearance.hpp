// How the person has set the desktop to look.
#pragma once
#include <QDBusConnection>
#include <QDBusVariant>
#include <QObject>
#include <optional>

namespace quillo {

/// From org.freedesktop.portal.Settings, followed live; where nothing answers there, or the person has no
/// preference, dark is what the palette's window colour says.
class SystemAppearance final : public QObject {
    Q_OBJECT

  public:
    /// Asks, and does not wait for the answer.
    explicit SystemAppearance(QDBusConnection bus = QDBusConnection::sessionBus(), QObject* parent = nullptr);

    bool dark() const;
    /// Whether the desktop's animations are switched off; false until the portal has answered.
    bool reducedMotion() const { return reducedMotion_; }

  Q_SIGNALS:
    void changed();

  private:
    bool eventFilter(QObject* object, QEvent* event) override;
    void take(const QString& group, const QString& key, const QVariant& value);
    Q_SLOT void settingChanged(const QString& group, const QString& key, const QDBusVariant& value);

    std::optional<bool> preferred_;  // dark or light; absent without a preference
    bool reducedMotion_ = false;
};

}  // namespace quillo
