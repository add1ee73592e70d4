// The live desktop as one snapshot.
#pragma once
#include <set>
#include <string>

#include "WindowEngine/Accessibility.hpp"

namespace quillo::Capture {

/// Excluded domains and enabled adapters join these together with the adapters: no option is taken and
/// ignored.
struct Options {
    std::set<std::string> excludedBundleIdentifiers;
    bool recoverHidden = false;  // look by remote tokens for windows that accessibility does not list
};

/// Password and security applications that are never looked at.
const std::set<std::string>& alwaysExcluded();

/// Never fails: what cannot be read is left out. Two captures may overlap.
Task<WorkspaceSnapshot> snapshot(DesktopAccess& desktop, Options options);

}  // namespace quillo::Capture
