// A live desktop, and the workspace that a restore of it is about, as a scene in which the same decisions are
// taken and nothing is called by its name: for a report that may be given away.
#pragma once
#include "WindowEngine/restore/Pseudonyms.hpp"
#include "WindowEngine/restore/RestorePreview.hpp"
#include "platform/simulated/Scene.hpp"

namespace quillo::simulated {

struct ReportScene {
    Workspace workspace;  // with the preview's applications, windows, documents and addresses
    Scene scene;
};

/// Titles, paths, addresses, and the names of the workspace, of displays (with their models and connectors)
/// and desktops, and of applications that not everybody knows, are replaced; remarks, times and what was left
/// out are dropped. Of applications that the workspace does not hold the scene has no windows. `preview` is
/// of `workspace` with these options, and was made a moment ago; the integrations are asked once more.
Task<ReportScene> reportScene(DesktopAccess& desktop, Workspace workspace, const RestorePreview& preview,
                              Restore::Options options, Pseudonyms& names);

}  // namespace quillo::simulated
