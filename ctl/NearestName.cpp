#include "ctl/NearestName.hpp"

#include <unicode/umachine.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "WindowEngine/support/Text.hpp"
#include "ctl/HumanText.hpp"

namespace quillo::ctl {
namespace {

constexpr std::size_t longest = 100;  // letters of a name that is compared

std::vector<UChar32> letters(std::string_view name) {
    std::vector<UChar32> letters;
    text::forEachCharacter(text::lowercase(name), [&](UChar32 letter, std::string_view) {
        if (letters.size() < longest) letters.push_back(letter);
    });
    return letters;
}

/// Row by row, of which the last two are kept.
std::size_t distance(const std::vector<UChar32>& a, const std::vector<UChar32>& b) {
    std::vector<std::size_t> beforeLast, last(b.size() + 1), row(b.size() + 1);
    for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= a.size(); ++i) {
        beforeLast = std::exchange(last, row);
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t changed = last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            row[j] = std::min({changed, last[j] + 1, row[j - 1] + 1});
            const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
            if (swapped) row[j] = std::min(row[j], beforeLast[j - 2] + 1);
        }
    }
    return row[b.size()];
}

}  // namespace

std::optional<std::string> nearestName(std::string_view typed, std::span<const std::string> names) {
    const std::vector<UChar32> wanted = letters(typed);
    std::optional<std::string> nearest;
    std::size_t least = std::max<std::size_t>(2, (wanted.size() + 2) / 3);  // no longer near
    for (const std::string& name : names) {
        const std::size_t away = distance(wanted, letters(name));
        if (away >= std::min(least, wanted.size())) continue;
        least = away;
        nearest = name;
    }
    return nearest;
}

std::string suggestion(std::string_view typed, std::span<const std::string> names) {
    const std::optional<std::string> nearest = nearestName(typed, names);
    return nearest ? "; did you mean " + quotedName(*nearest) + "?" : "";
}

}  // namespace quillo::ctl
