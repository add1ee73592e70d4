// Texts of other programs and other people, made harmless: what is shown is what is there.
#pragma once
#include <unicode/utf8.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quillo::text {

/// Calls `visit(code point, its bytes)`; bytes that are not UTF-8 come as U+FFFD.
template <class Visit>
void forEachCharacter(std::string_view text, Visit visit) {
    const auto length = static_cast<std::int32_t>(text.size());
    for (std::int32_t next = 0; next < length;) {
        const std::int32_t start = next;
        UChar32 character = 0;
        U8_NEXT(text.data(), next, length, character);
        visit(character < 0 ? UChar32{0xfffd} : character,
              text.substr(static_cast<std::size_t>(start), static_cast<std::size_t>(next - start)));
    }
}

/// Control characters and those that turn the writing direction are spelt out (\n, \x1b, \u202e), so that a
/// text can neither drive a terminal nor fake a line; invalid UTF-8 is replaced by U+FFFD.
std::string printable(std::string_view text);

/// Of more than `most` characters the middle is left out, with an ellipsis in its place: both ends of a path
/// or an address tell something.
std::string shortenedInMiddle(std::string_view text, std::size_t most);

}  // namespace quillo::text
