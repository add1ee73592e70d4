// Text as people read it, through ICU. All input is UTF-8; invalid sequences are replaced by U+FFFD.
#pragma once
#include <unicode/utf8.h>

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quillo::text {

std::string lowercase(std::string_view s);                       // full Unicode lower-casing, root locale
std::string uppercase(std::string_view s);                       // full Unicode upper-casing, root locale
bool equalIgnoringCase(std::string_view a, std::string_view b);  // Unicode case folding
/// White space and line breaks (Unicode) removed at both ends.
std::string trim(std::string_view s);
/// Blanks and tabs (Unicode space separators and U+0009) removed at both ends; line breaks stay.
std::string trimBlanks(std::string_view s);
bool isAscii(std::string_view s);
/// The value of a hexadecimal digit; -1 for anything else.
int hexDigit(char c);
bool isValidUtf8(std::string_view s);
/// Invalid sequences replaced by U+FFFD.
std::string repaired(std::string_view s);
/// At most so many bytes from the start, cut between two characters.
std::string_view beginning(std::string_view s, std::size_t bytes);
/// A text from a stranger as one line of at most so many characters, the last of them an ellipsis where more
/// follow. Line breaks and control characters become blanks, and what would turn the direction of the words
/// around it goes.
std::string clipped(std::string_view s, std::size_t characters);

/// For terminals and logs. Names and titles come from elsewhere: control characters, those that turn the
/// writing direction or break a line, and bytes that are not UTF-8 are spelt out (\n, \x1b, \u202e, \xff), so
/// that they can neither drive a terminal nor fake a line.
std::string printable(std::string_view s);

/// Of more than `most` characters the middle is left out, with an ellipsis in its place: both ends of a path
/// or an address tell something.
std::string shortenedInMiddle(std::string_view text, std::size_t most);

/// Calls `visit(code point, its bytes)`; bytes that are not UTF-8 come as U+FFFD.
template <class Visit>
void forEachCharacter(std::string_view text, Visit visit) {
    const auto length = static_cast<std::int32_t>(text.size());
    for (std::int32_t next = 0; next < length;) {
        const std::int32_t start = next;
        UChar32 character = 0;
        U8_NEXT_OR_FFFD(text.data(), next, length, character);
        visit(character,
              text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(next - start)));
    }
}

/// Case-insensitive comparison in the person's locale (ICU collation, secondary strength).
std::weak_ordering compareLocalized(std::string_view a, std::string_view b);
/// Bytes whose order is that of the names as a file browser lists them in the person's locale: without regard
/// to case, numbers by value, diacritics only between names that are equal without them.
std::string nameSortKey(std::string_view name);

/// A compiled regular expression with Unicode-aware classes; compile once, use often.
class Pattern {
  public:
    explicit Pattern(
        std::string_view expression);  // a bad expression is a programming error (throws std::logic_error)
    ~Pattern();
    Pattern(const Pattern&) = delete;
    Pattern& operator=(const Pattern&) = delete;
    std::string replaceAll(std::string_view subject, std::string_view replacement) const;

  private:
    struct Impl;
    Impl* impl_;
};

}  // namespace quillo::text
