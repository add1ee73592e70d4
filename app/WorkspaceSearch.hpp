// The library, made ready once at each reload so that a keystroke costs next to nothing.
#pragma once
#include <array>
#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/support/TextSearch.hpp"
#include "app/WorkspaceOrder.hpp"

namespace quillo {

/// Keeps no reference to the workspaces; all answers are places in that list as it was.
class WorkspaceSearch {
  public:
    explicit WorkspaceSearch(std::span<const Workspace> workspaces,
                             text::CaseRules rules = text::personCaseRules());

    /// The workspaces whose name, or the name of one of whose applications, contains the query, in the order
    /// of the list (of names and applications beyond any desktop's, the first ones count); all of them for a
    /// query of nothing but white space.
    std::vector<std::size_t> matches(std::string_view query) const;
    /// The same, sorted.
    std::vector<std::size_t> matches(std::string_view query, WorkspaceOrder order) const;

  private:
    std::vector<std::size_t> among(const std::vector<std::size_t>& places, std::string_view query) const;

    text::CaseRules rules_;
    std::vector<text::SearchableTexts> names_;
    std::vector<std::size_t> places_;                                           // as they are
    std::array<std::vector<std::size_t>, allWorkspaceOrders.size()> sorted_{};  // by WorkspaceOrder
};

}  // namespace quillo
