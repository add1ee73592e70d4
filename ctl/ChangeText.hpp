// What bringing a window back changes, or changed, on it.
#pragma once
#include <string>

#include "WindowEngine/restore/WindowChange.hpp"
#include "ctl/JsonLine.hpp"

namespace quillo::ctl {

/// "in place", or each thing that differs: "300 × 200 at 0, 0 → 600 × 400 at 100, 100, minimized → shown".
std::string changeText(const WindowChange& change);

/// `inPlace`, and a from... and a to... for each thing that differs.
void addChange(JsonLine& line, const WindowChange& change);

}  // namespace quillo::ctl
