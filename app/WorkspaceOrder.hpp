// In which order the library shows its workspaces.
#pragma once
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo {

enum class WorkspaceOrder : std::uint8_t {
    recent,  // restored or, where never restored, saved: newest first
    name,    // as a file browser sorts names, ascending
    saved,   // saved: newest first
};
inline constexpr std::array allWorkspaceOrders{WorkspaceOrder::recent, WorkspaceOrder::name,
                                               WorkspaceOrder::saved};

/// As it is shown: "Recently used", "Name", "Last saved".
std::string_view label(WorkspaceOrder order);

/// The places in `workspaces`, sorted; of equal ones the earlier comes first.
std::vector<std::size_t> sortedPlaces(std::span<const Workspace> workspaces, WorkspaceOrder order);

}  // namespace quillo
