#include "app/gui/Words.hpp"

#include <QDateTime>
#include <QLocale>
#include <QStringList>
#include <chrono>
#include <ranges>

#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

QDateTime dateTime(Instant instant) {
    return QDateTime::fromMSecsSinceEpoch(
        std::chrono::duration_cast<std::chrono::milliseconds>(instant.time_since_epoch()).count());
}

/// All sentences are English: names of days, digits and marks of other languages would only mix with them.
const QLocale& english() {
    static const QLocale locale(QLocale::English, QLocale::UnitedStates);
    return locale;
}

/// Whether a day has two halves is the person's own habit.
QString time(const QDateTime& when) {
    const bool halves = QLocale().timeFormat(QLocale::ShortFormat).contains('a', Qt::CaseInsensitive);
    return english().toString(when.time(), halves ? QStringLiteral("h:mm AP") : QStringLiteral("HH:mm"));
}

QString day(const QDate& date, bool withYear) {
    return english().toString(date, withYear ? QStringLiteral("d MMM yyyy") : QStringLiteral("d MMM"));
}

}  // namespace

QString qt(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

QString line(std::string_view utf8) {
    return qt(text::clipped(utf8, 400));
}

QString number(std::int64_t count) {
    return english().toString(static_cast<qlonglong>(count));
}

QString counted(std::int64_t count, const QString& noun) {
    return number(count) + QChar(QChar::Nbsp) + noun + (count == 1 ? "" : "s");
}

QString shortDate(Instant instant, Instant now) {
    const QDateTime when = dateTime(instant), today = dateTime(now);
    const qint64 days = when.date().daysTo(today.date());
    if (days == 0) return time(when);
    if (days == 1) return QStringLiteral("Yesterday");
    if (days > 1 && days < 7) return english().dayName(when.date().dayOfWeek());
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

QString andMore(std::int64_t count) {
    return count > 0 ? "and " + number(count) + " more" : QString();
}

QString applicationNames(const WorkspaceSnapshot& snapshot) {
    constexpr std::size_t most = 30, mostCharacters = 80;
    const auto& all = snapshot.applications;
    QStringList names;
    for (const ApplicationSnapshot& application : all | std::views::take(most))
        names << qt(text::clipped(application.name, mostCharacters));
    if (all.size() > most) names << andMore(static_cast<std::int64_t>(all.size() - most));
    return names.join(", ");
}

QString joined(const QStringList& parts) {
    return parts.join(QChar(QChar::Nbsp) + QStringLiteral("· "));
}

QString snapshotCounts(const WorkspaceSnapshot& snapshot) {
    QStringList parts{counted(static_cast<std::int64_t>(snapshot.applications.size()), "app"),
                      counted(snapshot.windowCount(), "window"),
                      counted(static_cast<std::int64_t>(snapshot.displays.size()), "display")};
    if (snapshot.desktops) parts << counted(snapshot.desktopCount(), "desktop");
    return joined(parts);
}

}  // namespace quillo
