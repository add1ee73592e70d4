// What a restore would do, window by window, as a person is told before it begins. Pure; no Qt.
#pragma once
#include <string>
#include <vector>

#include "WindowEngine/restore/RestorePreview.hpp"

namespace quillo::PreviewWords {

/// A short word or two beside a title; `reason` is a sentence, where there is one to be told.
struct Forecast {
    std::string word;
    std::string reason;

    bool operator==(const Forecast&) const = default;
};

/// "stays", "moves, to Desktop 2", "opens", "can't come back". `notInstalled` says why an application that is
/// not there cannot be launched.
Forecast of(const RestorePreview& preview, const PlannedApplication& application, const WindowPlan& plan,
            const std::string& notInstalled);
/// "is launched, opens 2 items"; empty for one of which there is nothing to say beside its windows.
Forecast of(const PlannedApplication& application, const std::string& notInstalled);

/// Sentences: "3 windows move or change", "1 app is launched". `others`: applications that a clean slate
/// touches.
std::vector<std::string> totals(const PlanTotals& totals, CleanSlateMode mode, std::int64_t others);

/// What cannot come back or be done, and why: "Letter: No window of Editor was left to place".
std::vector<std::string> troubles(const RestorePreview& preview, const std::string& notInstalled);

}  // namespace quillo::PreviewWords
