#include "app/WorkspaceOrder.hpp"

#include <algorithm>
#include <string>

#include "WindowEngine/support/StableSort.hpp"
#include "WindowEngine/support/Text.hpp"

namespace quillo {
namespace {

std::vector<std::size_t> byName(std::span<const Workspace> workspaces) {
    std::vector<std::string> keys;  // comparing names themselves would read each of them a dozen times
    keys.reserve(workspaces.size());
    for (const Workspace& workspace : workspaces)
        keys.push_back(text::nameSortKey(text::beginning(workspace.name, 400)));
    return stablySortedPlaces(keys.size(), [&](std::size_t a, std::size_t b) { return keys[a] <=> keys[b]; });
}

std::vector<std::size_t> newestFirst(std::span<const Workspace> workspaces, auto moment) {
    return stablySortedPlaces(workspaces.size(), [&](std::size_t a, std::size_t b) {
        return moment(workspaces[b]) <=> moment(workspaces[a]);
    });
}

}  // namespace

std::string_view label(WorkspaceOrder order) {
    switch (order) {
        case WorkspaceOrder::recent:
            return "Recently used";
        case WorkspaceOrder::name:
            return "Name";
        case WorkspaceOrder::saved:
            return "Last saved";
    }
    return {};
}

std::vector<std::size_t> sortedPlaces(std::span<const Workspace> workspaces, WorkspaceOrder order) {
    switch (order) {
        case WorkspaceOrder::recent:
            return newestFirst(workspaces, [](const Workspace& workspace) {
                return workspace.lastRestoredAt.value_or(workspace.updatedAt);
            });
        case WorkspaceOrder::name:
            return byName(workspaces);
        case WorkspaceOrder::saved:
            return newestFirst(workspaces, [](const Workspace& workspace) { return workspace.updatedAt; });
    }
    return {};
}

}  // namespace quillo
