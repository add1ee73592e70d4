// What happened to a window or an application, and to all of them, in the words that the panel and the
// command line share.
#pragma once
#include <string>

#include "WindowEngine/restore/RestoreReport.hpp"

namespace quillo {

/// "restored", "skipped: not installed", "reopened 3 items"; never a title, a path or an address.
std::string restoreWords(const RestoreReport::Status& status);
/// The same; of a window that came back after the run: "restored, late".
std::string restoreWords(const RestoreReport::Item& item);

/// The report's totals: "3 restored · 1 desktop created · 2 skipped"; with `tellsDiffering`, of those that
/// are back how many differ: "3 restored (1 adjusted) · 2 skipped".
std::string restoreSummary(const RestoreReport& report, bool tellsDiffering);

}  // namespace quillo
