#include "app/WorkspaceSearch.hpp"

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

/// A stranger's workspace may hold any number of names of any length: nobody types further.
constexpr std::size_t mostApplications = 1000, mostBytes = 400;

}  // namespace

WorkspaceSearch::WorkspaceSearch(std::span<const Workspace> workspaces, text::CaseRules rules)
    : rules_(rules) {
    names_.reserve(workspaces.size());
    for (const Workspace& workspace : workspaces) {
        places_.push_back(names_.size());
        text::SearchableTexts& names = names_.emplace_back(rules);
        names.add(text::beginning(workspace.name, mostBytes));
        for (const ApplicationSnapshot& application :
             workspace.snapshot.applications | std::views::take(mostApplications))
            names.add(text::beginning(application.name, mostBytes));
    }
    for (const WorkspaceOrder order : allWorkspaceOrders)
        sorted_[std::to_underlying(order)] = sortedPlaces(workspaces, order);
}

std::vector<std::size_t> WorkspaceSearch::matches(std::string_view query) const {
    return among(places_, query);
}

std::vector<std::size_t> WorkspaceSearch::matches(std::string_view query, WorkspaceOrder order) const {
    return among(sorted_[std::to_underlying(order)], query);
}

std::vector<std::size_t> WorkspaceSearch::among(const std::vector<std::size_t>& places,
                                                std::string_view query) const {
    const text::TypedQuery typed(query, rules_);
    std::vector<std::size_t> found;
    std::ranges::copy_if(places, std::back_inserter(found),
                         [&](std::size_t place) { return typed.isIn(names_[place]); });
    return found;
}

}  // namespace quillo
