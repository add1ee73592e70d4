#include "WindowEngine/restore/RestoreWords.hpp"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

namespace quillo {
namespace {

constexpr auto inSummaries = [] {
    auto outcomes = restoreOutcomes;
    std::ranges::sort(outcomes, {}, &RestoreOutcome::place);
    return outcomes;
}();

std::string counted(std::int64_t count, std::string_view noun) {
    return fmt::format("{} {}{}", count, noun, count == 1 ? "" : "s");
}

std::string totalText(std::int64_t total, const RestoreOutcome& outcome) {
    const std::string number = outcome.nounInSummary ? counted(total, outcome.noun) : std::to_string(total);
    return fmt::format("{} {}", number, outcome.word);
}

std::string differingText(const RestoreTotals& totals) {
    std::string text;
    for (const RestoreOutcome& outcome : inSummaries) {
        if (outcome.verdict != Verdict::differs || !outcome.total || totals.*outcome.total == 0) continue;
        text += (text.empty() ? "" : ", ") + totalText(totals.*outcome.total, outcome);
    }
    return text.empty() ? text : " (" + text + ")";
}

}  // namespace

std::string restoreWords(const RestoreReport::Status& status) {
    const RestoreOutcome& outcome = outcomeOf(status);
    const RestoreDetail detail = detailOf(status);
    if (detail.count) return fmt::format("{} {}", outcome.word, counted(*detail.count, outcome.noun));
    const bool explained = !detail.textName.empty() || !outcome.reason.empty();
    const std::string_view colon = explained && !outcome.word.empty() ? ": " : "";
    return fmt::format("{}{}{}{}", outcome.word, colon, outcome.reason, detail.text);
}

std::string restoreWords(const RestoreReport::Item& item) {
    const bool late = item.late && !outcomeOf(item.status).trouble();
    return restoreWords(item.status) + (late ? ", late" : "");
}

std::string restoreSummary(const RestoreReport& report, bool tellsDiffering) {
    const RestoreTotals totals = report.totals();
    std::string text;
    for (const RestoreOutcome& outcome : inSummaries) {
        if (!outcome.total || outcome.verdict == Verdict::differs) continue;
        const bool first = text.empty();  // told even where it is none
        if (!first && totals.*outcome.total == 0) continue;
        text += (first ? "" : " · ") + totalText(totals.*outcome.total, outcome);
        if (outcome.total == &RestoreTotals::restored && tellsDiffering) text += differingText(totals);
    }
    return text;
}

}  // namespace quillo
