#include "app/gui/OpenedAddresses.hpp"

#include <QFileOpenEvent>
#include <QUrl>

namespace quillo {

OpenedAddresses::OpenedAddresses(QObject& application, std::function<void(const Launch&)> opened)
    : opened_(std::move(opened)) {
    application.installEventFilter(this);
}

bool OpenedAddresses::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FileOpen) {
        const QString address = static_cast<const QFileOpenEvent*>(event)->url().toString(QUrl::FullyEncoded);
        const auto launch = launchOfAction(address);
        if (launch && launch->request == LaunchRequest::openAddress) {
            opened_(*launch);
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace quillo
