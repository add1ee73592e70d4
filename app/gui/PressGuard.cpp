#include "app/gui/PressGuard.hpp"

#include <QGuiApplication>
#include <QPointerEvent>
#include <QQuickWindow>
#include <QStyleHints>
#include <utility>

namespace quillo {

void PressGuard::pageCame() {
    until_.setRemainingTime(QGuiApplication::styleHints()->mouseDoubleClickInterval());
}

bool PressGuard::eventFilter(QObject* watched, QEvent* event) {
    if (!qobject_cast<QQuickWindow*>(watched) || !event->isPointerEvent() || event->type() == QEvent::Wheel)
        return false;
    const auto& pointer = static_cast<const QPointerEvent&>(*event);  // NOLINT: Qt's own downcast
    if (pointer.isBeginEvent()) swallowing_ = holding();
    return pointer.isEndEvent() ? std::exchange(swallowing_, false) : swallowing_;
}

}  // namespace quillo
