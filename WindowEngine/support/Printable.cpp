#include "WindowEngine/support/Printable.hpp"

#include <fmt/format.h>
#include <unicode/uchar.h>

#include <vector>

namespace quillo::text {
namespace {

constexpr UChar32 replacement = 0xfffd;

bool turnsDirection(UChar32 character) {
    return (character >= 0x202a && character <= 0x202e) || (character >= 0x2066 && character <= 0x2069) ||
           character == 0x200e || character == 0x200f || character == 0x061c;
}

std::string spelledOut(UChar32 character) {
    if (character == '\n') return "\\n";
    if (character == '\t') return "\\t";
    const auto code = static_cast<std::uint32_t>(character);
    return code < 0x100 ? fmt::format("\\x{:02x}", code) : fmt::format("\\u{:04x}", code);
}

}  // namespace

std::string printable(std::string_view text) {
    std::string result;
    forEachCharacter(text, [&](UChar32 character, std::string_view bytes) {
        if (character == replacement) {
            result += "\xef\xbf\xbd";
        } else if (u_iscntrl(character) || turnsDirection(character) || character == 0x2028 ||
                   character == 0x2029) {
            result += spelledOut(character);
        } else {
            result += bytes;
        }
    });
    return result;
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

}  // namespace quillo::text
