// What a restore would do, as a person is told before it is done.
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "WindowEngine/restore/RestorePreview.hpp"

namespace quillo {

/// One kind of consequence. The lines are harmless to show: control characters are spelt out, and the middle
/// of a long one is left out.
struct ConsequenceGroup {
    std::string heading;             // "Quits", "Makes 2 desktops"
    std::vector<std::string> lines;  // at most linesShown
    std::size_t more = 0;            // that are not among the lines

    static constexpr std::size_t linesShown = 200, charactersShown = 200;

    bool operator==(const ConsequenceGroup&) const = default;
};

/// What can do most harm comes first; kinds of which there is nothing are left out.
std::vector<ConsequenceGroup> consequenceGroups(const Consequences& consequences);

}  // namespace quillo
