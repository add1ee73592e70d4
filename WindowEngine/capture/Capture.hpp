// The live desktop as one snapshot.
#pragma once
#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "WindowEngine/desktop/Accessibility.hpp"

namespace quillo::Capture {

struct Options {
    std::set<std::string> excludedBundleIdentifiers = {};
    std::set<std::string> excludedDomains = {};  // as people type them; their web addresses are left out
    std::set<std::string> enabledAdapters = {};  // integrations that may be asked
    /// Where applications did not tell their windows' documents in time: suspended for a second more. Not
    /// worth it where nobody asked for the capture.
    bool asksPatiently = true;
    bool recoverHidden = false;  // look by remote tokens for windows that accessibility does not list
};

/// Password and security applications that are never looked at.
const std::set<std::string>& alwaysExcluded();

/// Answers for an identifier whether applications of it are never saved with these options: the person's
/// exclusions, what keeps secrets, and this program.
std::function<bool(const std::string& bundleIdentifier)> neverSaved(Applications& applications,
                                                                    const Options& options);

/// The running applications whose windows a capture with these options reads, in the platform's order.
std::vector<RunningApplication> eligibleApplications(DesktopAccess& desktop, const Options& options);

/// A window as it was read, before any were left out or folded into one.
struct Seen {
    std::int64_t index = 0;  // WindowSnapshot::index
    WindowNumber number = 0;
    Rect frame;
};
using SeenWindows = std::map<std::string, std::vector<Seen>>;  // by the application's identifier

/// Never fails: what cannot be read is left out. All windows are read in one turn, integrations are asked one
/// after the other later. Two captures may overlap. `seen`, where given, outlives the task and is told of the
/// windows with a number.
Task<WorkspaceSnapshot> snapshot(DesktopAccess& desktop, Options options, SeenWindows* seen = nullptr);

}  // namespace quillo::Capture
