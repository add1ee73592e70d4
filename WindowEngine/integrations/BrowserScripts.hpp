// What the browser integrations share in writing their scripts.
#pragma once
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo::BrowserScripts {

/// So many tabs are opened by one script, which keeps each well within its time limit.
inline constexpr std::size_t tabsPerScript = 40;

/// `tell application "..."`, with the name as a literal.
std::string tell(std::string_view application);

/// The lines, each with this indent, that open the addresses as further tabs of `window`, a reference in the
/// script's own words.
std::vector<std::string> newTabs(std::string_view indent, std::string_view window, std::span<const Url> urls);

/// The addresses in portions of at most `tabsPerScript`.
std::vector<std::span<const Url>> portions(std::span<const Url> urls);

/// Whether every address of the windows may be opened; one that may not comes from a stranger's file.
bool allWeb(const std::vector<ContextWindow>& windows);

}  // namespace quillo::BrowserScripts
