#include "WindowEngine/WorkspaceMigration.hpp"

#include <utility>

#include "WindowEngine/NativeTabs.hpp"

namespace quillo::WorkspaceCoding {

Result<void> checkSchemaVersion(std::int64_t version) {
    if (version == 1 || version == Workspace::currentSchemaVersion) return {};
    return fail(ErrorKind::unsupportedSchema, "Unsupported workspace schema v" + std::to_string(version) +
                                                  "; this build supports v" +
                                                  std::to_string(Workspace::currentSchemaVersion) + ".");
}

Workspace migrated(Workspace workspace) {
    if (workspace.schemaVersion == 1) {
        auto& desktops = workspace.snapshot.desktops;
        if (!desktops) desktops.emplace();
        workspace.schemaVersion = Workspace::currentSchemaVersion;
    }
    for (ApplicationSnapshot& application : workspace.snapshot.applications) {
        application = NativeTabs::collapse(std::move(application));
    }
    // The addresses of Chromium-family context windows are decoded anew here, after the native tabs, by the
    // integration that recorded them.
    return workspace;
}

}  // namespace quillo::WorkspaceCoding
