// Whether two plans of one workspace come to the same, whatever things are called. Pure.
#pragma once
#include <string>
#include <vector>

#include "WindowEngine/restore/RestorePreview.hpp"

namespace quillo::Restore {

/// One line for each decision that `other` takes otherwise: "application 2, window 0: liveIndex 1, not none".
/// They name places, never names, titles or addresses; reasons are compared, but not told. None where all
/// decisions are the same.
std::vector<std::string> planDifferences(const RestorePreview& one, const RestorePreview& other);

}  // namespace quillo::Restore
