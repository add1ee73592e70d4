#include "WindowEngine/support/Text.hpp"

#include <fmt/format.h>
#include <simdjson.h>
#include <unicode/coll.h>
#include <unicode/normlzr.h>
#include <unicode/regex.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <memory>
#include <stdexcept>

namespace quillo::text {
namespace {

icu::UnicodeString decoded(std::string_view s) {
    return icu::UnicodeString::fromUTF8(icu::StringPiece(s.data(), static_cast<std::int32_t>(s.size())));
}

std::string encoded(const icu::UnicodeString& s) {
    std::string bytes;
    return s.toUTF8String(bytes);
}

char lowered(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isBlank(UChar32 c) {
    return c == '\t' || u_charType(c) == U_SPACE_SEPARATOR;
}
bool isWhite(UChar32 c) {
    return u_isUWhiteSpace(c) != 0;
}

std::string spelledOut(UChar32 character) {
    if (character == '\n') return "\\n";
    if (character == '\t') return "\\t";
    const auto code = static_cast<std::uint32_t>(character);
    return code < 0x100 ? fmt::format("\\x{:02x}", code) : fmt::format("\\u{:04x}", code);
}

bool breaksLine(UChar32 c) {
    const auto type = u_charType(c);
    return type == U_CONTROL_CHAR || type == U_LINE_SEPARATOR || type == U_PARAGRAPH_SEPARATOR;
}
// Embeddings, overrides and isolates.
bool turnsDirection(UChar32 c) {
    return (c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069);
}

template <class Predicate>
std::string trimmed(std::string_view s, Predicate removed) {
    std::int32_t begin = 0, end = static_cast<std::int32_t>(s.size());
    for (std::int32_t next = begin; next < end; begin = next) {
        UChar32 c;
        U8_NEXT_OR_FFFD(s.data(), next, end, c);
        if (!removed(c)) break;
    }
    for (std::int32_t previous = end; previous > begin; end = previous) {
        UChar32 c;
        U8_PREV_OR_FFFD(s.data(), begin, previous, c);
        if (!removed(c)) break;
    }
    const std::string_view kept =
        s.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(end - begin));
    return repaired(kept);
}

// The POSIX locale ("C") would order by code point, capitals first; its people get the root order instead.
icu::Locale personLocale() {
    const icu::Locale locale = icu::Locale::getDefault();
    return std::string_view(locale.getVariant()) == "POSIX" ? icu::Locale::getRoot() : locale;
}

std::unique_ptr<icu::Collator> makeCollator(UColAttributeValue numbersByValue) {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> made(icu::Collator::createInstance(personLocale(), status));
    if (U_FAILURE(status)) return nullptr;
    made->setStrength(icu::Collator::SECONDARY);
    made->setAttribute(UCOL_NUMERIC_COLLATION, numbersByValue, status);
    return U_SUCCESS(status) ? std::move(made) : nullptr;
}

// Building a collator reads its rules; one serves every comparison of the program.
const icu::Collator* personCollator() {
    static const std::unique_ptr<icu::Collator> collator = makeCollator(UCOL_OFF);
    return collator.get();
}
const icu::Collator* nameCollator() {
    static const std::unique_ptr<icu::Collator> collator = makeCollator(UCOL_ON);
    return collator.get();
}

std::weak_ordering ordering(int comparison) {
    return comparison < 0   ? std::weak_ordering::less
           : comparison > 0 ? std::weak_ordering::greater
                            : std::weak_ordering::equivalent;
}

}  // namespace

// Without a way out of the loop, so that compilers take many bytes at once.
bool isAscii(std::string_view s) {
    unsigned char all = 0;
    for (const char c : s) all |= static_cast<unsigned char>(c);
    return all < 0x80;
}

int hexDigit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    const char low = lowered(c);
    return low >= 'a' && low <= 'f' ? low - 'a' + 10 : -1;
}

std::string lowercase(std::string_view s) {
    if (!isAscii(s)) return encoded(decoded(s).toLower(icu::Locale::getRoot()));
    std::string result(s);
    std::ranges::transform(result, result.begin(), lowered);
    return result;
}

std::string uppercase(std::string_view s) {
    return encoded(decoded(s).toUpper(icu::Locale::getRoot()));
}

bool equalIgnoringCase(std::string_view a, std::string_view b) {
    if (isAscii(a) && isAscii(b)) return std::ranges::equal(a, b, {}, lowered, lowered);
    // Composed and decomposed spellings of one character count as the same: people cannot tell them apart.
    UErrorCode status = U_ZERO_ERROR;
    const int comparison = icu::Normalizer::compare(decoded(a), decoded(b), U_COMPARE_IGNORE_CASE, status);
    return U_SUCCESS(status) && comparison == 0;
}

std::string trim(std::string_view s) {
    return trimmed(s, isWhite);
}

std::string trimBlanks(std::string_view s) {
    return trimmed(s, isBlank);
}

bool isValidUtf8(std::string_view s) {
    return isAscii(s) || simdjson::validate_utf8(s.data(), s.size());
}

std::string repaired(std::string_view s) {
    return isValidUtf8(s) ? std::string(s) : encoded(decoded(s));
}

std::string printable(std::string_view s) {
    std::string result;
    const auto end = static_cast<std::int32_t>(s.size());
    for (std::int32_t next = 0; next < end;) {
        const auto start = static_cast<std::size_t>(next);
        UChar32 character = 0;
        U8_NEXT(s.data(), next, end, character);
        const std::string_view bytes = s.substr(start, static_cast<std::size_t>(next) - start);
        if (character < 0) {
            for (const char byte : bytes) result += spelledOut(static_cast<unsigned char>(byte));
        } else if (u_iscntrl(character)) {  // also those that turn the direction, and line separators
            result += spelledOut(character);
        } else {
            result += bytes;
        }
    }
    return result;
}

std::string_view beginning(std::string_view s, std::size_t bytes) {
    if (s.size() <= bytes) return s;
    while (bytes > 0 && U8_IS_TRAIL(s[bytes])) --bytes;
    return s.substr(0, bytes);
}

std::string clipped(std::string_view s, std::size_t characters) {
    icu::UnicodeString line;
    std::int32_t lastBegin = 0;  // of the last character, which an ellipsis may replace
    std::size_t count = 0;
    const auto end = static_cast<std::int32_t>(s.size());
    for (std::int32_t at = 0; at < end;) {
        UChar32 c;
        U8_NEXT_OR_FFFD(s.data(), at, end, c);
        if (turnsDirection(c)) continue;
        if (count++ == characters) return encoded(line.tempSubString(0, lastBegin)) + "…";
        if (!u_hasBinaryProperty(c, UCHAR_GRAPHEME_EXTEND)) lastBegin = line.length();
        line.append(breaksLine(c) ? UChar32{' '} : c);
    }
    return encoded(line);
}

std::string shortenedInMiddle(std::string_view text, std::size_t most) {
    std::vector<std::size_t> starts;  // of the characters
    std::size_t at = 0;
    forEachCharacter(text, [&](UChar32, std::string_view bytes) {
        starts.push_back(at);
        at += bytes.size();
    });
    if (starts.size() <= most || most < 3) return std::string(text);
    const std::size_t head = most / 2, tail = most - 1 - head;
    return std::string(text.substr(0, starts[head])) + "…" +
           std::string(text.substr(starts[starts.size() - tail]));
}

std::weak_ordering compareLocalized(std::string_view a, std::string_view b) {
    const icu::Collator* collator = personCollator();
    if (!collator) return ordering(decoded(a).caseCompare(decoded(b), U_FOLD_CASE_DEFAULT));
    UErrorCode status = U_ZERO_ERROR;
    return ordering(collator->compare(decoded(a), decoded(b), status));
}

std::string nameSortKey(std::string_view name) {
    const icu::Collator* collator = nameCollator();
    if (!collator) return lowercase(name);
    const icu::UnicodeString text = decoded(name);
    std::string key(64, '\0');
    const auto bytes = [&key] { return reinterpret_cast<std::uint8_t*>(key.data()); };
    const auto written = [&] {
        return static_cast<std::size_t>(
            collator->getSortKey(text, bytes(), static_cast<std::int32_t>(key.size())));
    };
    std::size_t size = written();
    if (size > key.size()) {
        key.resize(size);
        size = written();
    }
    key.resize(size);
    return key;
}

struct Pattern::Impl {
    std::unique_ptr<icu::RegexPattern> expression;
};

Pattern::Pattern(std::string_view expression) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError where{};
    std::unique_ptr<icu::RegexPattern> compiled(
        icu::RegexPattern::compile(decoded(expression), where, status));
    if (U_FAILURE(status)) throw std::logic_error("bad regular expression: " + std::string(expression));
    impl_ = new Impl{std::move(compiled)};
}

Pattern::~Pattern() {
    delete impl_;
}

std::string Pattern::replaceAll(std::string_view subject, std::string_view replacement) const {
    UErrorCode status = U_ZERO_ERROR;
    const icu::UnicodeString input = decoded(subject);
    const std::unique_ptr<icu::RegexMatcher> matcher(impl_->expression->matcher(input, status));
    if (U_FAILURE(status)) return encoded(input);
    const icu::UnicodeString replaced = matcher->replaceAll(decoded(replacement), status);
    return encoded(U_SUCCESS(status) ? replaced : input);
}

}  // namespace quillo::text
