#include "WindowEngine/restore/ConsequenceWords.hpp"

#include <algorithm>
#include <utility>

#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

std::string shown(const std::string& text) {
    return text::shortenedInMiddle(text::printable(text), ConsequenceGroup::charactersShown);
}

std::string line(const std::string& application) {
    return shown(application);
}

std::string line(const Consequences::Opening& opening) {
    return shown(opening.location) + " — " + shown(opening.application);
}

template <class What>
void add(std::vector<ConsequenceGroup>& groups, std::string heading, const std::vector<What>& all) {
    if (all.empty()) return;
    ConsequenceGroup& group = groups.emplace_back(std::move(heading));
    const std::size_t count = std::min(all.size(), ConsequenceGroup::linesShown);
    for (std::size_t i = 0; i < count; ++i) group.lines.push_back(line(all[i]));
    group.more = all.size() - count;
}

/// What is chosen holds for whatever runs when the workspace comes back, now or another time: it is said also
/// where nothing else runs at the moment.
void addOthers(std::vector<ConsequenceGroup>& groups, const Consequences& consequences) {
    if (consequences.others == CleanSlateMode::keep) return;
    const bool quits = consequences.others == CleanSlateMode::quit;
    const auto& names = quits ? consequences.quit : consequences.hidden;
    add(groups, quits ? "Quits all other apps" : "Hides all other apps", names);
    if (names.empty())
        groups.push_back({quits ? "Quits all other apps" : "Hides all other apps", {"None runs now"}, 0});
}

}  // namespace

std::vector<ConsequenceGroup> consequenceGroups(const Consequences& consequences) {
    std::vector<ConsequenceGroup> groups;
    addOthers(groups, consequences);
    add(groups, "Launches", consequences.launched);
    add(groups, "Launches another time (open now)", consequences.launchedLater);
    add(groups, "Opens", consequences.opened);
    if (consequences.desktops == 1) groups.push_back({"Makes 1 desktop", {}, 0});
    if (consequences.desktops > 1)
        groups.push_back({"Makes " + std::to_string(consequences.desktops) + " desktops", {}, 0});
    return groups;
}

}  // namespace quillo
