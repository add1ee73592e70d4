#include "app/gui/ApplicationObject.hpp"

#include <QDBusVariant>
#include <algorithm>

#include "app/WorkspaceAddress.hpp"

namespace quillo {
namespace {

QString textOf(const QVariant& parameter) {
    return parameter.canConvert<QDBusVariant>() ? parameter.value<QDBusVariant>().variant().toString()
                                                : parameter.toString();
}

}  // namespace

void ApplicationObject::Open(const QStringList& addresses, const QVariantMap& platformData) {
    const auto link = std::ranges::find_if(
        addresses, [](const QString& one) { return isWorkspaceAddress(one.toStdString()); });
    ActivateAction(link != addresses.end() ? *link : QString(), {}, platformData);
}

/// Desktops of some age hand over the token under its older name.
void ApplicationObject::ActivateAction(const QString& name, const QVariantList& parameters,
                                       const QVariantMap& platformData) {
    const QString action =
        name == "restore" && !parameters.isEmpty()
            ? QString::fromStdString(addressOfWorkspace(textOf(parameters[0]).toStdString()))
            : name;
    const auto launch = launchOfAction(action);
    if (!launch) return;
    const QString token = platformData.value("activation-token").toString();
    requested_(*launch, token.isEmpty() ? platformData.value("desktop-startup-id").toString() : token);
}

}  // namespace quillo
