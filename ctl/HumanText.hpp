// Values as people read them in a terminal: dates in their locale, counts with the right number, texts of
// other programs made harmless and cut to fit.
#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/support/Instant.hpp"
#include "WindowEngine/support/Rect.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo::ctl {

/// Names and titles come from elsewhere.
using text::printable;

/// A name within a sentence: printable, and in quotation marks where it would not be seen as one (empty, of
/// several words, or with quotation marks of its own).
std::string quotedName(std::string_view name);
/// A name by itself, as in a column: blanks within it need no quotation marks.
std::string listedName(std::string_view name);

/// Columns that printable text takes in a terminal: wide characters two, combining ones none.
std::size_t columns(std::string_view text);
/// Cut to at most `width` columns, with an ellipsis where something was cut; 0 means no limit.
std::string fitted(std::string_view text, std::size_t width);
/// Filled with blanks up to `width` columns.
std::string padded(std::string_view text, std::size_t width);

/// "1 window", "3 windows"; `plural` where an s will not do.
std::string counted(std::int64_t count, std::string_view noun, std::string_view plural = {});
/// "today, 9:26 AM" in the locale of LC_ALL, LC_TIME or LANG.
std::string dateText(Instant instant);
/// "3/14/25", as short as that locale has it.
std::string dayText(Instant instant);
/// "800 × 600 at 10, 20", rounded to whole points.
std::string frameText(const Rect& frame);
/// The window's title, or what stands for it, and how many tabs it holds.
std::string windowLabel(const WindowSnapshot& window);

}  // namespace quillo::ctl
