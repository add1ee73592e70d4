// Which present display is which saved one where displays are of one make: a display's identifier may be
// another one each time they are plugged in. Pure.
#pragma once
#include <map>
#include <string>
#include <vector>

#include "WindowEngine/restore/DisplayMapper.hpp"

namespace quillo::DisplayTwins {

/// Identifiers of present displays by those of saved ones.
using Pairs = std::map<std::string, std::string>;

struct Matching {
    Pairs pairs;  // of all displays whose model is known on both sides, as far as there are enough
    /// Twins that neither answers nor connectors nor places told apart: paired in their order, for want of
    /// better. Identifiers of saved and of present displays of one model; empty where all is clear.
    std::vector<std::string> unclear, choices;

    bool operator==(const Matching&) const = default;
};

/// Displays of one model are told apart by the person's `answers`, else by where they are plugged in, else by
/// where they stand, seen from the primary display.
Matching match(DisplayMapper::DisplayList saved, DisplayMapper::DisplayList current, const Pairs& answers);

/// Gives saved displays the identifiers of the present ones that they are; DisplayMapper then finds them.
/// What is not there gets one that no present display has.
void rename(WorkspaceSnapshot& snapshot, DisplayMapper::DisplayList current, const Pairs& pairs);

/// Whether two lists are of the same displays, wherever these stand: the same models as often, where models
/// are known on both sides, else the same identifiers.
bool sameSet(DisplayMapper::DisplayList one, DisplayMapper::DisplayList other);

}  // namespace quillo::DisplayTwins
