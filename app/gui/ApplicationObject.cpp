#include "app/gui/ApplicationObject.hpp"

namespace quillo {

/// Desktops of some age hand over the token under its older name.
void ApplicationObject::ActivateAction(const QString& name, const QVariantList&,
                                       const QVariantMap& platformData) {
    const auto request = requestOfAction(name);
    if (!request) return;
    const QString token = platformData.value("activation-token").toString();
    requested_(*request, token.isEmpty() ? platformData.value("desktop-startup-id").toString() : token);
}

}  // namespace quillo
