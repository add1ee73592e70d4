#include "app/gui/SystemAppearance.hpp"

#include <QDBusArgument>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QEvent>
#include <QGuiApplication>
#include <QPalette>

namespace quillo {
namespace {

constexpr auto portal = "org.freedesktop.portal.Desktop", portalPath = "/org/freedesktop/portal/desktop",
               interface = "org.freedesktop.portal.Settings";
constexpr auto appearance = "org.freedesktop.appearance", gnome = "org.gnome.desktop.interface";

using Settings = QMap<QString, QVariantMap>;  // by group, in each by key

}  // namespace

SystemAppearance::SystemAppearance(QDBusConnection bus, QObject* parent) : QObject(parent) {
    qDBusRegisterMetaType<Settings>();
    qGuiApp->installEventFilter(this);
    bus.connect(portal, portalPath, interface, "SettingChanged", this,
                SLOT(settingChanged(QString, QString, QDBusVariant)));
    QDBusMessage question = QDBusMessage::createMethodCall(portal, portalPath, interface, "ReadAll");
    question << QStringList{appearance, gnome};
    auto* const asked = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this, asked] {
        const QDBusPendingReply<Settings> answer = *asked;
        asked->deleteLater();
        if (!answer.isValid()) return;
        const Settings settings = answer.value();
        for (auto group = settings.begin(); group != settings.end(); ++group) {
            for (auto one = group->begin(); one != group->end(); ++one) take(group.key(), one.key(), *one);
        }
    });
}

bool SystemAppearance::dark() const {
    if (preferred_) return *preferred_;
    const QPalette palette = QGuiApplication::palette();
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

bool SystemAppearance::eventFilter(QObject* object, QEvent* event) {
    if (event->type() == QEvent::ApplicationPaletteChange && object == qGuiApp && !preferred_) {
        Q_EMIT changed();
    }
    return false;
}

void SystemAppearance::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
    take(group, key, value.variant());
}

void SystemAppearance::take(const QString& group, const QString& key, const QVariant& value) {
    constexpr uint preferDark = 1, preferLight = 2;
    if (group == QLatin1String(appearance) && key == "color-scheme") {
        const uint scheme = value.toUInt();
        preferred_.reset();
        if (scheme == preferDark || scheme == preferLight) preferred_ = scheme == preferDark;
    } else if (group == QLatin1String(gnome) && key == "enable-animations") {
        reducedMotion_ = !value.toBool();
    } else {
        return;
    }
    Q_EMIT changed();
}

}  // namespace quillo
