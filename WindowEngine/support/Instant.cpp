#include "WindowEngine/support/Instant.hpp"

#include <fmt/format.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <memory>

namespace quillo {
namespace {

using std::chrono::days;
using std::chrono::seconds;
using Seconds = std::chrono::sys_seconds;

constexpr std::string_view form = "0000-00-00T00:00:00Z";

// The form's digits and separators in their places.
bool hasForm(std::string_view text) {
    if (text.size() != form.size()) return false;
    for (std::size_t i = 0; i < form.size(); ++i) {
        const bool digit = text[i] >= '0' && text[i] <= '9';
        if (form[i] == '0' ? !digit : text[i] != form[i]) return false;
    }
    return true;
}

int number(std::string_view text, std::size_t from, std::size_t count) {
    int value = 0;
    for (const char c : text.substr(from, count)) value = value * 10 + (c - '0');
    return value;
}

}  // namespace

std::string formatInstant(Instant instant) {
    const Seconds whole = std::chrono::floor<seconds>(instant);
    const auto day = std::chrono::floor<days>(whole);
    const std::chrono::year_month_day date{day};
    const std::chrono::hh_mm_ss time{whole - day};
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}Z", static_cast<int>(date.year()),
                       static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                       time.hours().count(), time.minutes().count(), time.seconds().count());
}

std::optional<Instant> parseInstant(std::string_view text) {
    if (!hasForm(text)) return std::nullopt;
    const std::chrono::year_month_day date{std::chrono::year{number(text, 0, 4)},
                                           std::chrono::month{static_cast<unsigned>(number(text, 5, 2))},
                                           std::chrono::day{static_cast<unsigned>(number(text, 8, 2))}};
    const int hour = number(text, 11, 2), minute = number(text, 14, 2), second = number(text, 17, 2);
    if (!date.ok() || hour > 23 || minute > 59 || second > 59) return std::nullopt;
    const Seconds whole = std::chrono::sys_days{date} + std::chrono::hours{hour} +
                          std::chrono::minutes{minute} + seconds{second};
    // Nanoseconds in 64 bits reach from 1677 to 2262; the year 9999 must not wrap into the past.
    if (whole < std::chrono::ceil<seconds>(Instant::min()) ||
        whole > std::chrono::floor<seconds>(Instant::max())) {
        return std::nullopt;
    }
    return Instant{whole};
}

std::string formatTimeOfDay(Instant instant) {
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat format(icu::UnicodeString(u"HH:mm"), icu::Locale::getDefault(), status);
    if (U_FAILURE(status)) return formatInstant(instant).substr(11, 5);
    // ICU keeps the zone it saw first; people travel while the program runs.
    format.adoptTimeZone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString text;
    format.format(std::chrono::duration<double, std::milli>(instant.time_since_epoch()).count(), text);
    std::string result;
    return text.toUTF8String(result);
}

}  // namespace quillo
