#include "WindowEngine/restore/DisplayTwins.hpp"

#include <algorithm>
#include <limits>
#include <optional>
#include <set>

namespace quillo::DisplayTwins {
namespace {

using DisplayMapper::DisplayList;
using Displays = std::vector<const DisplaySnapshot*>;  // none is null

/// Places are compared in all orders only up to this many twins.
constexpr std::size_t mostCompared = 6;
constexpr std::size_t mostDisplays = 64;  // of a file that a stranger may have made
/// Two orders whose places differ by less (squared, in sizes of the primary display) are not told apart.
constexpr double tie = 0.01;

bool knowsModels(DisplayList displays) {
    return std::ranges::any_of(displays, [](const DisplaySnapshot& one) { return one.model.has_value(); });
}

Displays ofModel(DisplayList displays, const std::string& model) {
    Displays found;
    for (const DisplaySnapshot& one : displays)
        if (one.model == model) found.push_back(&one);
    return found;
}

std::optional<Point> place(const DisplaySnapshot& display, DisplayList all) {
    const auto primary = std::ranges::find(all, true, &DisplaySnapshot::isPrimary);
    if (primary == all.end()) return std::nullopt;
    return DisplayMapper::offset(display, *primary);
}

/// One model's displays that are not paired yet, and how they get to be.
class Group {
  public:
    Group(Displays saved, Displays current, Matching& matching)
        : saved_(std::move(saved)), current_(std::move(current)), matching_(matching) {}

    template <class Belong>
    void pair(const Belong& belong) {
        const Displays left = saved_;
        for (const DisplaySnapshot* saved : left) {
            const auto found = std::ranges::find_if(
                current_, [&](const DisplaySnapshot* current) { return belong(*saved, *current); });
            if (found != current_.end()) take(saved, *found);
        }
    }
    void pairByPlace(DisplayList saved, DisplayList current);

  private:
    void take(const DisplaySnapshot* saved, const DisplaySnapshot* current) {
        matching_.pairs[saved->id] = current->id;
        std::erase(saved_, saved);
        std::erase(current_, current);
    }
    std::vector<std::vector<double>> distances(DisplayList saved, DisplayList current) const;
    void pairInOrder();

    Displays saved_, current_;
    Matching& matching_;
};

/// Empty where nobody knows the primary display.
std::vector<std::vector<double>> Group::distances(DisplayList saved, DisplayList current) const {
    std::vector<std::vector<double>> all;
    for (const DisplaySnapshot* one : saved_) {
        auto& row = all.emplace_back();
        for (const DisplaySnapshot* other : current_) {
            const auto from = place(*one, saved), to = place(*other, current);
            if (!from || !to) return {};
            row.push_back(DisplayMapper::squaredDistance(*from, *to));
        }
    }
    return all;
}

void Group::pairInOrder() {
    while (!saved_.empty() && !current_.empty()) take(saved_.front(), current_.front());
}

/// Of all ways to pair as many as there are, the one that moves the displays least, if there is but one.
void Group::pairByPlace(DisplayList saved, DisplayList current) {
    if (saved_.empty() || current_.empty()) return;
    const Displays unclear = saved_, choices = current_;
    const auto distance = distances(saved, current);
    double best = std::numeric_limits<double>::max(), second = best;
    std::vector<std::size_t> order(std::max(saved_.size(), current_.size())), chosen;
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
    const bool comparable = !distance.empty() && order.size() <= mostCompared;
    // Places beyond either list stand for nothing: the same pairs come more than once then, as one way.
    std::set<std::vector<std::size_t>> seen;
    do {
        if (!comparable) break;
        std::vector<std::size_t> partners(saved_.size(), current_.size());
        double sum = 0;
        for (std::size_t i = 0; i < saved_.size(); ++i) {
            if (order[i] >= current_.size()) continue;
            partners[i] = order[i];
            sum += distance[i][order[i]];
        }
        if (!seen.insert(partners).second) continue;
        if (sum < best) {
            second = best;
            best = sum;
            chosen = partners;
        } else {
            second = std::min(second, sum);
        }
    } while (std::ranges::next_permutation(order).found);
    const bool clear = comparable && second - best >= tie;
    if (!clear) {
        pairInOrder();
        // Nothing to choose, or another model is: one question at a time.
        if (choices.size() < 2 || !matching_.unclear.empty()) return;
        for (const DisplaySnapshot* one : unclear) matching_.unclear.push_back(one->id);
        for (const DisplaySnapshot* one : choices) matching_.choices.push_back(one->id);
        return;
    }
    for (std::size_t i = 0; i < unclear.size(); ++i)
        if (chosen[i] < choices.size()) take(unclear[i], choices[chosen[i]]);
}

}  // namespace

Matching match(DisplayList saved, DisplayList current, const Pairs& answers) {
    saved = saved.first(std::min(saved.size(), mostDisplays));
    Matching matching;
    std::set<std::string> models;
    for (const DisplaySnapshot& one : saved)
        if (one.model) models.insert(*one.model);
    for (const std::string& model : models) {
        Group group(ofModel(saved, model), ofModel(current, model), matching);
        group.pair([&](const DisplaySnapshot& one, const DisplaySnapshot& other) {
            const auto answer = answers.find(one.id);
            return answer != answers.end() && answer->second == other.id;
        });
        group.pair([](const DisplaySnapshot& one, const DisplaySnapshot& other) {
            return one.connector && one.connector == other.connector;
        });
        group.pair([](const DisplaySnapshot& one, const DisplaySnapshot& other) {
            return !one.connector && one.id == other.id;
        });
        group.pairByPlace(saved, current);
    }
    return matching;
}

void rename(WorkspaceSnapshot& snapshot, DisplayList current, const Pairs& pairs) {
    std::set<std::string> taken;
    for (const auto& [saved, present] : pairs) taken.insert(present);
    Pairs names;
    for (const DisplaySnapshot& one : snapshot.displays) {
        const auto pair = pairs.find(one.id);
        if (pair != pairs.end()) {
            names[one.id] = pair->second;
        } else if (taken.contains(one.id)) {
            std::string free = one.id + "#gone";
            while (std::ranges::find(current, free, &DisplaySnapshot::id) != current.end()) free += '#';
            names[one.id] = free;
        }
    }
    const auto named = [&names](std::string& id) {
        if (const auto found = names.find(id); found != names.end()) id = found->second;
    };
    for (DisplaySnapshot& one : snapshot.displays) named(one.id);
    if (snapshot.desktops)
        for (DesktopSnapshot& desktop : *snapshot.desktops) named(desktop.displayID);
    for (ApplicationSnapshot& application : snapshot.applications) {
        for (WindowSnapshot& window : application.windows) {
            if (window.displayID) named(*window.displayID);
            if (window.desktop) named(window.desktop->displayID);
        }
    }
}

bool sameSet(DisplayList one, DisplayList other) {
    if (one.size() != other.size()) return false;
    const bool byModel = knowsModels(one) && knowsModels(other);
    const auto keys = [byModel](DisplayList displays) {
        std::multiset<std::string> all;
        for (const DisplaySnapshot& display : displays)
            all.insert(byModel ? display.model.value_or(display.id) : display.id);
        return all;
    };
    return keys(one) == keys(other);
}

}  // namespace quillo::DisplayTwins
