// Icons of applications as the system draws them.
#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillo {

/// A square picture from the top left, row by row without gaps: a byte each for red, green, blue and alpha,
/// the colours multiplied with alpha.
struct IconPixels {
    int size = 0;                     // of a side
    std::vector<std::uint8_t> bytes;  // 4 * size * size of them
};

/// The icon of an installed application; absent where the system knows of none. Main thread.
using FindIcon = std::function<std::optional<IconPixels>(const std::string& identifier, int size)>;

}  // namespace quillo
