// What a restore asks of the desktop, whatever the file says: each application once, each under its own name,
// and not without end. A workspace may come from a stranger, and one file must not start three hundred
// programs. Pure but for shownName().
#pragma once
#include <cstddef>
#include <string>
#include <vector>

#include "WindowEngine/records/Workspace.hpp"
#include "WindowEngine/restore/RestoreReport.hpp"
#include "WindowEngine/services/Applications.hpp"

namespace quillo::Restore {

/// Windows and documents that one application is asked for, and all of them together. A window counts once,
/// and once more for each further document in its native tabs; so does a window of an integration's context
/// that is more than the application's windows. An application counts at least once.
inline constexpr std::size_t mostOfOneApplication = 50;
inline constexpr std::size_t mostInAll = 200;

struct RestoreScope {
    WorkspaceSnapshot snapshot;
    std::vector<RestoreReport::Item>
        leftOut;  // what the limits cost, one item an application or for the rest
};

/// Entries of one identifier become one, in the place of the first: their windows follow each other, and the
/// first one's location and integration hold; of a second entry with the same integration the windows are
/// added. With `limited`, what goes beyond the limits is left out, from the end.
RestoreScope scopeOf(WorkspaceSnapshot snapshot, bool limited);

/// Whether the limits would leave anything out.
bool exceedsLimits(const WorkspaceSnapshot& snapshot);

/// The installed application's own name, with the saved one beside it where they differ; the saved one of
/// what is not installed.
std::string shownName(Applications& applications, const ApplicationSnapshot& application);

/// Gives every application of the scope its shown name, also in what was left out of it.
void giveShownNames(Applications& applications, RestoreScope& scope);

/// Items for the saved windows of which a report that ended early says nothing, but for those of applications
/// that could not come at all.
std::vector<RestoreReport::Item> notReached(const WorkspaceSnapshot& snapshot, const RestoreReport& report);

/// Leaves no more displays and desktops than a desk has: each is compared with each.
void boundDisplays(WorkspaceSnapshot& snapshot);

}  // namespace quillo::Restore
