// Some applications show native tabs to accessibility as separate windows that lie exactly on top of each
// other. Folding makes one saved window of such a stack, with the tabs listed in it. Pure.
#pragma once
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo::NativeTabs {

/// Identifiers of the applications whose windows are folded.
const std::set<std::string, std::less<>>& applications();

/// The first window of a stack keeps its place, index, geometry and state; its `tabs` lists itself first.
/// Folding again changes nothing. In n log n for n windows.
std::vector<WindowSnapshot> collapse(std::vector<WindowSnapshot> windows, std::string_view bundleIdentifier);
ApplicationSnapshot collapse(ApplicationSnapshot application);

}  // namespace quillo::NativeTabs
