// What the browser integrations share: which addresses they open, and how many at once.
#pragma once
#include <cstddef>
#include <span>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo::BrowserScripts {

/// So many tabs are opened by one script, which keeps each well within its time limit.
inline constexpr std::size_t tabsPerScript = 40;
/// So long are their addresses together: a script is handed to its interpreter as one argument of a command.
inline constexpr std::size_t bytesPerScript = std::size_t{64} * 1024;

/// The addresses in portions that keep to both limits; an address that alone is longer makes one by itself.
std::vector<std::span<const Url>> portions(std::span<const Url> urls, std::size_t mostTabs = tabsPerScript,
                                           std::size_t mostBytes = bytesPerScript);

/// Whether every address of the windows may be opened; one that may not comes from a stranger's file.
bool allWeb(const std::vector<ContextWindow>& windows);

}  // namespace quillo::BrowserScripts
