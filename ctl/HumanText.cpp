#include "ctl/HumanText.hpp"

#include <fmt/format.h>
#include <unicode/datefmt.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <memory>

namespace quillo::ctl {
namespace {

std::size_t columnsOf(UChar32 character) {
    const int category = u_charType(character);
    if (category == U_NON_SPACING_MARK || category == U_ENCLOSING_MARK || category == U_FORMAT_CHAR) return 0;
    const int width = u_getIntPropertyValue(character, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

/// ICU's own default follows LC_MESSAGES; dates have a variable of their own.
icu::Locale dateLocale() {
    for (const char* variable : {"LC_ALL", "LC_TIME", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') return icu::Locale::createFromName(value);
    }
    return icu::Locale::getRoot();
}

std::string formatted(const icu::DateFormat* format, Instant instant) {
    if (format == nullptr) return formatInstant(instant);
    icu::UnicodeString text;
    format->format(std::chrono::duration<double, std::milli>(instant.time_since_epoch()).count(), text);
    std::string result;
    text.toUTF8String(result);
    return result;
}

}  // namespace

std::string listedName(std::string_view name) {
    const bool seen = !name.empty() && text::trim(name) == name && !name.contains('"');
    return seen ? printable(name) : quotedName(name);
}

std::string quotedName(std::string_view name) {
    std::string shown = printable(name);
    if (!name.empty() && name.find_first_of(" \t\n\"") == name.npos && text::trim(name) == name) return shown;
    for (std::size_t mark = 0; (mark = shown.find('"', mark)) != std::string::npos; mark += 2)
        shown.insert(mark, 1, '\\');
    return '"' + shown + '"';
}

std::size_t columns(std::string_view text) {
    std::size_t total = 0;
    text::forEachCharacter(text, [&](UChar32 character, std::string_view) { total += columnsOf(character); });
    return total;
}

std::string fitted(std::string_view text, std::size_t width) {
    if (width == 0 || columns(text) <= width) return std::string(text);
    std::string result;
    std::size_t used = 1;  // the ellipsis
    bool full = false;
    text::forEachCharacter(text, [&](UChar32 character, std::string_view bytes) {
        used += columnsOf(character);
        full = full || used > width;
        if (!full) result += bytes;
    });
    return result + "…";
}

std::string padded(std::string_view text, std::size_t width) {
    const std::size_t used = columns(text);
    return std::string(text) + std::string(used < width ? width - used : 0, ' ');
}

std::string counted(std::int64_t count, std::string_view noun, std::string_view plural) {
    if (count == 1) return fmt::format("1 {}", noun);
    return plural.empty() ? fmt::format("{} {}s", count, noun) : fmt::format("{} {}", count, plural);
}

std::string dateText(Instant instant) {
    static const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        icu::DateFormat::kMediumRelative, icu::DateFormat::kShort, dateLocale()));
    return formatted(format.get(), instant);
}

std::string dayText(Instant instant) {
    static const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createDateInstance(icu::DateFormat::kShort, dateLocale()));
    return formatted(format.get(), instant);
}

std::string frameText(const Rect& frame) {
    return fmt::format("{:.0f} × {:.0f} at {:.0f}, {:.0f}", frame.width, frame.height,
                       std::round(frame.x) + 0.0, std::round(frame.y) + 0.0);
}

std::string windowLabel(const WindowSnapshot& window) {
    std::string label = window.title.value_or(window.isFullscreen ? "Full screen" : "Untitled");
    if (window.tabs) label += " · " + counted(static_cast<std::int64_t>(window.tabs->size()), "tab");
    return printable(label);
}

}  // namespace quillo::ctl
