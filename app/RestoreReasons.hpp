// Why something is not back, as a person would say it. The engine's own texts are exact, and the same in the
// command line, its JSON and the log.
#pragma once
#include <string>

#include "WindowEngine/restore/RestoreReport.hpp"

namespace quillo {

/// "No window of XTerm was left to place". Of a reason that nobody has words for, the engine's text; empty
/// where the item has none.
std::string reasonInWords(const RestoreReport::Item& item);

}  // namespace quillo
