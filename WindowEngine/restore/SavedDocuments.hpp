// The documents of a saved application, and which of them its windows show now. Pure.
#pragma once
#include <optional>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo {

struct SavedDocument {
    Url url;                                   // a file: address
    std::optional<std::string> title;          // of the window or native tab that showed it
    std::optional<Url> target = std::nullopt;  // what is opened for it, once judged: links are resolved
    std::string refusal = {};                  // why nothing is
};

namespace SavedDocuments {

/// Files of the windows and their tabs, each once, in saved order, less `elsewhere`: locations, standardized,
/// that an integration brings back.
std::vector<SavedDocument> of(const ApplicationSnapshot& application, const std::set<std::string>& elsewhere);

/// Whether the window or one of its native tabs shows a file.
bool isIn(const WindowSnapshot& window);

/// Locations of a context, standardized.
std::set<std::string> locations(const AppContext& context);

/// Those that no window shows: under its address, or, where a window names no document, under its title.
std::vector<SavedDocument> missing(std::vector<SavedDocument> documents,
                                   std::span<const LiveWindowInfo> live);

}  // namespace SavedDocuments
}  // namespace quillo
