// The part of a window tile that nothing in front covers.
#pragma once
#include <functional>
#include <span>

#include "WindowEngine/support/Rect.hpp"

namespace quillo {

/// `rect` less whatever lies outside of `bounds`; empty where they share nothing.
Rect intersection(const Rect& rect, const Rect& bounds);
/// By `by` larger to all sides; smaller for a negative one.
Rect grown(const Rect& rect, double by);

/// The free rectangle of `tile` with the best score, the larger one of two equal ones; empty when all of it
/// is covered. `score` must not fall when a rectangle grows to the right or downwards. Candidates are the
/// cells between all edges of the covers, so that time grows with the cube of their number.
Rect bestVisibleRectangle(const Rect& tile, std::span<const Rect> covers,
                          const std::function<double(const Rect&)>& score);

}  // namespace quillo
