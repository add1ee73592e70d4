// What happened to a window or an application, in the words that the panel and the command line share.
#pragma once
#include <string>

#include "WindowEngine/restore/RestoreReport.hpp"

namespace quillo {

/// "restored", "skipped: not installed", "reopened 3 items"; never a title, a path or an address.
std::string restoreWords(const RestoreReport::Status& status);

}  // namespace quillo
