#include "app/Schedule.hpp"

#include <QDateTime>
#include <chrono>

namespace quillo {
namespace {

using namespace std::chrono;

constexpr int secondsOfMinute = 60;

QDateTime timeOn(QDate day, int minute, const QTimeZone& zone) {
    const QTime time = QTime(0, 0).addSecs(minute * secondsOfMinute);
    QDateTime shown(day, time, zone);
    if (shown.isValid() && shown.date() == day && shown.time() == time) return shown;
    return day.startOfDay(zone).addSecs(static_cast<qint64>(minute) * secondsOfMinute);
}

}  // namespace

std::optional<Instant> nextDue(const WorkspaceAutomation& chosen, Instant after, const QTimeZone& zone) {
    if (chosen.days == Days::never || chosen.minute < 0 || chosen.minute >= minutesOfDay) return std::nullopt;
    const auto past = floor<milliseconds>(after).time_since_epoch().count();
    QDate day = QDateTime::fromMSecsSinceEpoch(past, zone).date();
    // Of a Friday evening the next is on Monday; one day more, as a day may begin in the middle of another.
    for (int tries = 0; tries < 5; ++tries, day = day.addDays(1)) {
        if (chosen.days == Days::weekdays && day.dayOfWeek() > Qt::Friday) continue;
        const qint64 due = timeOn(day, static_cast<int>(chosen.minute), zone).toMSecsSinceEpoch();
        if (due > past) return Instant(milliseconds(due));
    }
    return std::nullopt;
}

}  // namespace quillo
