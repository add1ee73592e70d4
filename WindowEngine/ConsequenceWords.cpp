#include "WindowEngine/ConsequenceWords.hpp"

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

}  // namespace

std::vector<ConsequenceGroup> consequenceGroups(const Consequences& consequences) {
    std::vector<ConsequenceGroup> groups;
    add(groups, "Quits", consequences.quit);
    add(groups, "Hides", consequences.hidden);
    add(groups, "Launches", consequences.launched);
    add(groups, "Opens", consequences.opened);
    if (consequences.desktops == 1) groups.push_back({"Makes 1 desktop", {}, 0});
    if (consequences.desktops > 1)
        groups.push_back({"Makes " + std::to_string(consequences.desktops) + " desktops", {}, 0});
    return groups;
}

}  // namespace quillo
