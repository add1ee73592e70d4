#include "WindowEngine/services/WindowServer.hpp"

#include <algorithm>

#include "WindowEngine/services/Stamp.hpp"

namespace quillo {

std::optional<WindowNumber> WindowServer::windowInFront() {
    const std::vector<WindowListEntry> all = windowList();
    const auto first = std::ranges::find(all, 0, &WindowListEntry::layer);
    return first == all.end() ? std::nullopt : std::optional(first->number);
}

std::uint64_t WindowServer::stamp() {
    Stamp stamp;
    for (const WindowListEntry& window : windowList()) {
        stamp.add(window.number);
        stamp.add(window.bounds);
    }
    return stamp.value();
}

}  // namespace quillo
