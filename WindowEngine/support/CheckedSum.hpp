// Sums of counts that must not wrap.
#pragma once
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace quillo {

/// a + b; an overflow ends the program, for no real record can hold so many entries.
inline std::int64_t checkedSum(std::int64_t a, std::int64_t b) {
    std::int64_t sum;
    if (__builtin_add_overflow(a, b, &sum)) {
        std::fputs("fatal: a count of a workspace exceeds 64 bits\n", stderr);
        std::abort();
    }
    return sum;
}

}  // namespace quillo
