// Says where a text stops being JSON. Slow and thorough: for texts that the parser has refused.
#pragma once
#include <cstddef>
#include <string>
#include <string_view>

namespace quillo {

/// Objects and arrays within each other that a document may have.
inline constexpr std::size_t maximumJsonDepth = 64;

/// Before a document it is none of JSON's characters, whatever the parser's version makes of it: some skip
/// it.
inline constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// One line naming the field by its path, the line and what is wrong there:
/// "snapshot.applications[2].name: not valid JSON in line 31: the document ends here".
std::string describeJsonDamage(std::string_view bytes);

}  // namespace quillo
