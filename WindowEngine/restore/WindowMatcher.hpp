// Which live window stands for which saved window of one application. Pure.
#pragma once
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo::WindowMatcher {

enum class Confidence { high, medium, low };

struct Match {
    std::int64_t savedIndex = 0;  // position in the `saved` list
    std::int64_t liveIndex = 0;   // position in the `live` list
    double score = 0;             // capped at 1.0

    Confidence confidence() const;
    bool operator==(const Match&) const = default;
};

/// What made a pair's score, for people who ask why.
struct Evidence {
    bool document = false;       // same document
    double title = 0;            // 0.6 equal, 0.35 one contains the other, 0.2 both without, 0 otherwise
    bool titleConflict = false;  // both titled, nothing in common
    bool subrole = false;
    double size = 0;        // up to 0.25
    bool order = false;     // same place in the window list
    std::int64_t tab = -1;  // the saved tab that scored best, -1 for the window itself
    double score = 0;       // unbounded
};

std::string normalize(std::string_view title);
Evidence evidence(const WindowSnapshot& saved, const LiveWindowInfo& live);

/// Greedy one-to-one assignment, best score first; sorted by savedIndex. Beyond 250,000 pairs a window is
/// compared with a few only: those with its document or title, and those about its place in the list.
std::vector<Match> match(std::span<const WindowSnapshot> saved, std::span<const LiveWindowInfo> live);

}  // namespace quillo::WindowMatcher
