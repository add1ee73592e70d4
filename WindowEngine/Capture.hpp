// The live desktop as one snapshot.
#pragma once
#include <set>
#include <string>

#include "WindowEngine/Accessibility.hpp"

namespace quillo::Capture {

struct Options {
    std::set<std::string> excludedBundleIdentifiers;
    std::set<std::string> excludedDomains;
    std::set<std::string> enabledAdapters;
    bool recoverHidden = false;
};

/// Password and security applications that are never looked at.
const std::set<std::string>& alwaysExcluded();

/// Never fails: what cannot be read is left out. Two captures may overlap.
Task<WorkspaceSnapshot> snapshot(DesktopAccess& desktop, Options options);

}  // namespace quillo::Capture
