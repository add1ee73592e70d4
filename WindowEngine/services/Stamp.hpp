// A number that stands for much that was read, to notice by one comparison that something of it has changed.
#pragma once
#include <bit>
#include <cstdint>

#include "WindowEngine/support/Rect.hpp"

namespace quillo {

/// In the order of adding. Meant for one run of the program: what it gives is nothing to be stored.
class Stamp {
  public:
    void add(std::uint64_t word) { value_ = (std::rotl(value_, 23) ^ word) * 0x9E3779B97F4A7C15U; }
    void add(const Rect& rect) {
        for (const double part : {rect.x, rect.y, rect.width, rect.height})
            add(std::bit_cast<std::uint64_t>(part));
    }
    std::uint64_t value() const { return value_; }

  private:
    std::uint64_t value_ = 1;
};

}  // namespace quillo
