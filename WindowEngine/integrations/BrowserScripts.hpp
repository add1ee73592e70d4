// What the browser integrations share: which addresses they open, and how many at once.
#pragma once
#include <cstddef>
#include <span>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo::BrowserScripts {

/// So many tabs are opened by one script, which keeps each well within its time limit.
inline constexpr std::size_t tabsPerScript = 40;

/// The addresses in portions of at most `tabsPerScript`.
std::vector<std::span<const Url>> portions(std::span<const Url> urls);

/// Whether every address of the windows may be opened; one that may not comes from a stranger's file.
bool allWeb(const std::vector<ContextWindow>& windows);

}  // namespace quillo::BrowserScripts
