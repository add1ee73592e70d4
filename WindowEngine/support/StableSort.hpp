// Sorting in which equal ones keep their order. std::stable_sort is no choice: libstdc++ 12 asks for its
// memory by a function that is deprecated, of which the compiler warns at every use.
#pragma once
#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>
#include <vector>

namespace quillo {

/// The places 0 to `count` - 1, sorted by `compare(place, place)`, which answers as <=> does.
std::vector<std::size_t> stablySortedPlaces(std::size_t count, auto compare) {
    std::vector<std::size_t> places(count);
    std::iota(places.begin(), places.end(), std::size_t{0});
    std::ranges::sort(places, [&](std::size_t a, std::size_t b) {
        const auto order = compare(a, b);
        return order == 0 ? a < b : order < 0;
    });
    return places;
}

/// Each value moves once: they may be large.
template <class T>
void arrange(std::vector<T>& values, const std::vector<std::size_t>& places) {
    std::vector<T> arranged;
    arranged.reserve(places.size());
    for (const std::size_t place : places) arranged.push_back(std::move(values[place]));
    values = std::move(arranged);
}

template <class T>
void sortStably(std::vector<T>& values, auto compare) {
    arrange(values, stablySortedPlaces(values.size(), [&](std::size_t a, std::size_t b) {
                return compare(values[a], values[b]);
            }));
}

/// By what `keyOf(value)` gives, which is asked once for each.
template <class T>
void sortStablyByKey(std::vector<T>& values, auto keyOf) {
    std::vector<decltype(keyOf(values.front()))> keys;
    keys.reserve(values.size());
    for (const T& value : values) keys.push_back(keyOf(value));
    arrange(values, stablySortedPlaces(keys.size(),
                                       [&](std::size_t a, std::size_t b) { return keys[a] <=> keys[b]; }));
}

}  // namespace quillo
