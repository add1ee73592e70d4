#include "app/QtExecutor.hpp"

#include <QCoreApplication>
#include <QEventLoop>
#include <algorithm>

namespace quillo {
namespace {

constexpr Duration longestDispatch = std::chrono::milliseconds(5);

QEvent::Type wakeType() {
    static const auto type = static_cast<QEvent::Type>(QEvent::registerEventType());
    return type;
}

int millisecondsUntil(TimePoint time, TimePoint now) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(time - now).count();
    return static_cast<int>(std::clamp<decltype(left)>(left, 0, 86'400'000));
}

}  // namespace

void QtExecutor::wake() noexcept {
    if (woken_.exchange(true)) return;
    // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): without memory for an event Qt cannot go on either
    QCoreApplication::postEvent(this, new QEvent(wakeType()));
}

bool QtExecutor::event(QEvent* event) {
    if (event->type() == wakeType()) {
        woken_ = false;
    } else if (event->type() == QEvent::Timer) {
        timer_.stop();  // Qt's timers repeat, and may have fired early: armTimer() asks again
        armedFor_ = TimePoint::max();
    } else {
        return QObject::event(event);
    }
    dispatch();
    return true;
}

void QtExecutor::dispatch() {
    collectDueTimers();
    armTimer();
    // Before the turns run: one of them may open a nested loop, which must find an event to go on with.
    if (!ready().empty()) wake();
    // A turn may wait for an application that hangs: then what was typed meanwhile comes before the next one.
    const TimePoint enough = now() + longestDispatch;
    for (int turns = 0; turns < turnsAtOnce_ && runTurn() && now() < enough; ++turns) {
    }
}

void QtExecutor::armTimer() {
    const TimePoint next = nextTimer();
    if (next == armedFor_) return;
    armedFor_ = next;
    if (next == TimePoint::max()) {
        timer_.stop();
    } else {
        timer_.start(millisecondsUntil(next, now()), Qt::PreciseTimer, this);
    }
}

bool QtExecutor::advance(TimePoint deadline) {
    if (now() >= deadline) return false;
    QBasicTimer limit;
    if (deadline != TimePoint::max()) limit.start(millisecondsUntil(deadline, now()), Qt::PreciseTimer, this);
    const int turnsAtOnce = std::exchange(turnsAtOnce_, 1);
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    turnsAtOnce_ = turnsAtOnce;
    return true;
}

}  // namespace quillo
