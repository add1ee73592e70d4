// What a person left out of a saved workspace: it stays in the record, apart from what is restored, and can
// be brought back. Pure.
#pragma once
#include <functional>
#include <set>
#include <string>

#include "WindowEngine/records/Workspace.hpp"

namespace quillo::LeftOut {

/// By the keys of CaptureFilter. What belongs to something excluded is gone with it, and keeps its own
/// choice.
struct Exclusions {
    std::set<std::string> apps;         // identifiers
    std::set<std::string> windows;      // windowKey
    std::set<std::string> contextURLs;  // contextURLKey

    bool empty() const { return apps.empty() && windows.empty() && contextURLs.empty(); }
    bool operator==(const Exclusions&) const = default;
};

/// A snapshot of which nothing is left out, and what would be.
struct Whole {
    WorkspaceSnapshot snapshot;
    Exclusions excluded;

    bool operator==(const Whole&) const = default;
};

/// Everything in the place where it was. Of places that there are none of in a changed record the nearest.
Whole whole(WorkspaceSnapshot snapshot);
/// The way back: whole(without(w)) is w, as long as each application stands in the list once and each context
/// window names its window.
WorkspaceSnapshot without(Whole whole);

/// A new capture of a workspace that had something left out: what of it is that again, by an application's
/// identifier, a window's title and document, and an address.
Exclusions recognised(const WorkspaceSnapshot& before, const WorkspaceSnapshot& captured);
/// What the person keeps out of every workspace.
struct Policy {
    std::function<bool(const std::string& bundleIdentifier)> isNeverSaved;
    std::set<std::string> excludedDomains;  // as people type them
};
/// The same capture as it is to be saved: what `before` had left out and is not in it stays left out, less
/// what the policy keeps out by now.
WorkspaceSnapshot carriedOver(const WorkspaceSnapshot& before, WorkspaceSnapshot saved, const Policy& policy);

}  // namespace quillo::LeftOut
