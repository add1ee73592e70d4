#include "WindowEngine/restore/RestoreReport.hpp"

#include <algorithm>
#include <utility>

namespace quillo {

RestoreReport::Totals RestoreReport::totals() const {
    Totals totals;
    for (const Item& item : items) {
        const RestoreOutcome& outcome = outcomeOf(item.status);
        const std::int64_t count = detailOf(item.status).count.value_or(1);
        if (outcome.total) totals.*outcome.total += count;
        if (outcome.verdict == Verdict::differs) totals.restored += count;
    }
    return totals;
}

bool RestoreReport::clean() const {
    return !cancelled &&
           std::ranges::none_of(items, [](const Item& item) { return outcomeOf(item.status).trouble(); });
}

void RestoreReport::amend(Item item) {
    const auto before = std::ranges::find_if(items, [&](const Item& one) {
        return one.savedIndex && one.savedIndex == item.savedIndex &&
               one.bundleIdentifier == item.bundleIdentifier;
    });
    if (before == items.end()) return items.push_back(std::move(item));
    item.id = before->id;
    *before = std::move(item);
}

const RestoreOutcome& outcomeOf(const RestoreReport::Status& status) {
    return std::visit([](const auto& one) -> const RestoreOutcome& { return one.outcome; }, status);
}

RestoreDetail detailOf(const RestoreReport::Status& status) {
    return std::visit(
        []<class Case>(const Case& one) -> RestoreDetail {
            if constexpr (requires { one.count; })
                return {.count = one.count, .textName = {}, .text = {}};
            else if constexpr (requires { one.text; })
                return {.count = {}, .textName = "text", .text = one.text};
            else if constexpr (requires { one.reason; })
                return {.count = {}, .textName = "reason", .text = one.reason};
            else
                static_assert(std::is_empty_v<Case>, "a detail that nobody would show");
            return {};
        },
        status);
}

}  // namespace quillo
