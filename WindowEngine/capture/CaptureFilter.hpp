// What never enters a saved workspace: excluded web domains, and what the person unticked in the review.
// Pure.
#pragma once
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo::CaptureFilter {

/// com.example.editor#window#2
std::string windowKey(std::string_view bundleIdentifier, std::int64_t index);
/// com.example.browser#context#0#3: context window 0 (its source index, else its place), URL 3.
std::string contextURLKey(std::string_view bundleIdentifier, std::int64_t windowIndex, std::int64_t urlIndex);

/// Applications, windows (by windowKey) and context locations (by contextURLKey) removed; everything else
/// keeps its order and its index. An application stays when all its windows went.
WorkspaceSnapshot apply(WorkspaceSnapshot snapshot, const std::set<std::string>& excludedApps,
                        const std::set<std::string>& excludedWindows,
                        const std::set<std::string>& excludedContextURLs);

/// Addresses on a domain or a subdomain of it removed, context windows without addresses too; absent when
/// none remains. Folders ("finder") are never filtered. `domains` are as people type them (ExcludedDomains).
std::optional<AppContext> removingDomains(const std::set<std::string>& domains,
                                          std::optional<AppContext> context);
/// Windows and their native tabs without the web addresses (http, https) among their documents that are on
/// such a domain. The windows themselves stay, with their titles; documents of any other kind too.
std::vector<WindowSnapshot> removingWebDocuments(const std::set<std::string>& domains,
                                                 std::vector<WindowSnapshot> windows);

}  // namespace quillo::CaptureFilter
