// Clears the screen of other applications before a workspace is brought back.
#pragma once
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "WindowEngine/restore/ItemSink.hpp"

namespace quillo {

namespace CleanSlatePolicy {

/// Whether a clean slate touches a running application: not what has no windows of its own, not what is about
/// to be restored (`saved`), not Finder, not this program under its own or the given identifier.
bool shouldAffect(std::string_view bundleIdentifier, bool isRegular, const std::set<std::string>& saved,
                  const std::optional<std::string>& ownBundleIdentifier);

}  // namespace CleanSlatePolicy

namespace Restore {

/// Of all that a workspace holds.
std::set<std::string> identifiersOf(const Workspace& workspace);

/// The running applications that a clean slate for what holds these applications touches, in the system's
/// order. The application this program was started from (a terminal) is not among them, nor one without an
/// identifier.
std::vector<RunningApplication> cleanSlateTargets(Applications& applications,
                                                  const std::set<std::string>& held);

/// Hides them, or asks them to quit, as the options say: all at once, each with 3 s from its own request.
/// What the workspace holds, and what the options keep, stays. Nothing is forced; one item for each, a
/// running application being named as the system names it. Cancelled, what was asked for stays asked for.
Task<void> cleanSlate(DesktopAccess& desktop, const Workspace& workspace, const Options& options,
                      const ItemSink& sink);

}  // namespace Restore
}  // namespace quillo
