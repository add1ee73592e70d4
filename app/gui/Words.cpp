#include "app/gui/Words.hpp"

#include <QDateTime>
#include <QLocale>
#include <QStringList>
#include <chrono>

namespace quillo {
namespace {

QDateTime dateTime(Instant instant) {
    return QDateTime::fromMSecsSinceEpoch(
        std::chrono::duration_cast<std::chrono::milliseconds>(instant.time_since_epoch()).count());
}

QString time(const QDateTime& when) {
    const QLocale locale;  // the plain C locale's short form has seconds
    return locale.language() == QLocale::C ? when.time().toString("HH:mm")
                                           : locale.toString(when.time(), QLocale::ShortFormat);
}

QString day(const QDate& date, bool withYear) {
    return QLocale().toString(date, withYear ? QStringLiteral("d MMM yyyy") : QStringLiteral("d MMM"));
}

}  // namespace

QString qt(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString counted(std::int64_t count, const QString& noun) {
    return QLocale().toString(static_cast<qlonglong>(count)) + QChar(QChar::Nbsp) + noun +
           (count == 1 ? "" : "s");
}

QString shortDate(Instant instant, Instant now) {
    const QDateTime when = dateTime(instant), today = dateTime(now);
    const qint64 days = when.date().daysTo(today.date());
    if (days == 0) return time(when);
    if (days == 1) return QStringLiteral("Yesterday");
    if (days > 1 && days < 7) return QLocale().dayName(when.date().dayOfWeek());
    return day(when.date(), when.date().year() != today.date().year());
}

QString longDate(Instant instant, Instant now) {
    const QDateTime when = dateTime(instant);
    const qint64 days = when.date().daysTo(dateTime(now).date());
    const QString date = days == 0   ? QStringLiteral("today")
                         : days == 1 ? QStringLiteral("yesterday")
                                     : day(when.date(), true);
    return date + " at " + time(when);
}

QString applicationNames(const WorkspaceSnapshot& snapshot) {
    QStringList names;
    for (const ApplicationSnapshot& application : snapshot.applications) names << qt(application.name);
    return names.join(", ");
}

QString snapshotCounts(const WorkspaceSnapshot& snapshot) {
    QStringList parts{counted(static_cast<std::int64_t>(snapshot.applications.size()), "app"),
                      counted(snapshot.windowCount(), "window"),
                      counted(static_cast<std::int64_t>(snapshot.displays.size()), "display")};
    if (snapshot.desktops) parts << counted(snapshot.desktopCount(), "desktop");
    return parts.join(QStringLiteral(" · "));
}

}  // namespace quillo
