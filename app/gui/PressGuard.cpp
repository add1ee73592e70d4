#include "app/gui/PressGuard.hpp"

#include <QGuiApplication>
#include <QPointerEvent>
#include <QQuickWindow>
#include <QStyleHints>
#include <utility>

namespace quillo {

void PressGuard::pageCame() {
    until_.setRemainingTime(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    pressBefore_ = lastPress_;
}

bool PressGuard::holds(const QPointerEvent& press) const {
    const auto time = static_cast<quint64>(QGuiApplication::styleHints()->mouseDoubleClickInterval());
    return holding() || (pressBefore_ != 0 && press.timestamp() - pressBefore_ < time);
}

bool PressGuard::eventFilter(QObject* watched, QEvent* event) {
    if (!qobject_cast<QQuickWindow*>(watched) || !event->isPointerEvent() || event->type() == QEvent::Wheel)
        return false;
    const auto& pointer = static_cast<const QPointerEvent&>(*event);  // NOLINT: Qt's own downcast
    if (pointer.isBeginEvent()) {
        swallowing_ = holds(pointer);
        lastPress_ = pointer.timestamp();
    }
    return pointer.isEndEvent() ? std::exchange(swallowing_, false) : swallowing_;
}

}  // namespace quillo
